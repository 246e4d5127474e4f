#pragma once

#include "UObject/ReflectionTables.h"
#include "UObject/UnrealType.h"

/** Makes properties of their tables. */
namespace PropertyBuilder
{
/** The property that a row describes, given to the owner: a struct's, or the part of a container's. */
FProperty* Build(FFieldVariant Owner, const Reflection::FPropertyTable& Row);

template <typename OwnerType>
void AddMetaData(OwnerType& Owner, const Reflection::TTable<Reflection::FMetaDataTable>& Rows)
{
	for (const Reflection::FMetaDataTable& Row : Rows)
	{
		Owner.SetMetaData(FName(FString(Row.Key)), FString(Row.Value));
	}
}
} // namespace PropertyBuilder
