#pragma once

#include "Math/Color.h"
#include "Math/Rotator.h"
#include "Math/Vector.h"
#include "Math/Vector2D.h"
#include "UObject/SoftObjectPath.h"
#include "UObject/StructTraits.h"

/** The reflected twins of struct types that carry no GENERATED_BODY. */
#define DECLARE_CORE_STRUCT(TStruct) \
	template <>                      \
	struct TBaseStructure<TStruct>   \
	{                                \
		static UScriptStruct* Get(); \
	};

DECLARE_CORE_STRUCT(FVector)
DECLARE_CORE_STRUCT(FVector2D)
DECLARE_CORE_STRUCT(FRotator)
DECLARE_CORE_STRUCT(FLinearColor)
DECLARE_CORE_STRUCT(FColor)
DECLARE_CORE_STRUCT(FSoftObjectPath)
DECLARE_CORE_STRUCT(FSoftClassPath)

#undef DECLARE_CORE_STRUCT

template <>
struct TStructOpsTypeTraits<FSoftObjectPath> : TStructOpsTypeTraitsBase
{
	static constexpr bool WithImportTextItem = true;
	static constexpr bool WithExportTextItem = true;
};

template <>
struct TStructOpsTypeTraits<FSoftClassPath> : TStructOpsTypeTraits<FSoftObjectPath>
{
};
