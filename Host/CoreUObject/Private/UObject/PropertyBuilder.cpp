#include "PropertyBuilder.h"

using Reflection::FPropertyTable;

namespace
{
template <typename PropertyType>
PropertyType* Make(FFieldVariant Owner, const FPropertyTable& Row)
{
	return new PropertyType(Owner, FName(FString(Row.Name)), RF_Public);
}

FProperty* MakeEnum(FFieldVariant Owner, const FPropertyTable& Row)
{
	FEnumProperty* Property = Make<FEnumProperty>(Owner, Row);
	FPropertyTable Underlying;
	Underlying.Name = "UnderlyingType";
	Underlying.Kind = Row.Underlying;
	Property->SetEnum((UEnum*)Row.Type());
	Property->AddCppProperty(PropertyBuilder::Build(Property, Underlying));
	return Property;
}

template <typename PropertyType>
FProperty* MakeReference(FFieldVariant Owner, const FPropertyTable& Row)
{
	PropertyType* Property = Make<PropertyType>(Owner, Row);
	Property->PropertyClass = (UClass*)Row.Type();
	return Property;
}

template <typename PropertyType>
FProperty* MakeClassReference(FFieldVariant Owner, const FPropertyTable& Row)
{
	PropertyType* Property = Make<PropertyType>(Owner, Row);
	Property->PropertyClass = UClass::StaticClass();
	Property->MetaClass = (UClass*)Row.Type();
	return Property;
}

FProperty* MakeInterface(FFieldVariant Owner, const FPropertyTable& Row)
{
	FInterfaceProperty* Property = Make<FInterfaceProperty>(Owner, Row);
	Property->PropertyClass = UObject::StaticClass();
	Property->InterfaceClass = (UClass*)Row.Type();
	return Property;
}

template <typename PropertyType>
FProperty* MakeContainer(FFieldVariant Owner, const FPropertyTable& Row)
{
	PropertyType* Property = Make<PropertyType>(Owner, Row);
	for (const FPropertyTable* Part : {Row.Inner, Row.Value})
	{
		if (Part)
		{
			Property->AddCppProperty(PropertyBuilder::Build(Property, *Part));
		}
	}
	return Property;
}

template <typename PropertyType>
FProperty* MakeDelegate(FFieldVariant Owner, const FPropertyTable& Row)
{
	PropertyType* Property = Make<PropertyType>(Owner, Row);
	Property->SignatureFunction = (UFunction*)Row.Type();
	return Property;
}

FProperty* MakeByte(FFieldVariant Owner, const FPropertyTable& Row)
{
	FByteProperty* Property = Make<FByteProperty>(Owner, Row);
	Property->Enum = Row.Type ? (UEnum*)Row.Type() : nullptr;
	return Property;
}

FProperty* MakeStruct(FFieldVariant Owner, const FPropertyTable& Row)
{
	FStructProperty* Property = Make<FStructProperty>(Owner, Row);
	Property->Struct = (UScriptStruct*)Row.Type();
	return Property;
}

/** Finds the bit by setting it in zeroed memory. */
FProperty* MakeBool(FFieldVariant Owner, const FPropertyTable& Row)
{
	FBoolProperty* Property = Make<FBoolProperty>(Owner, Row);
	Property->SetOffset_Internal((int32)Row.Offset);
	if (Row.SetBit)
	{
		uint8* Memory = (uint8*)FMemory::Malloc(Row.OwnerSize);
		FMemory::Memzero(Memory, Row.OwnerSize);
		Row.SetBit(Memory);
		int32 Offset = 0;
		while (!Memory[Offset])
		{
			++Offset;
		}
		Property->SetOffset_Internal(Offset);
		Property->SetBitMask(Memory[Offset]);
		FMemory::Free(Memory);
	}
	return Property;
}

using FMaker = FProperty* (*)(FFieldVariant, const FPropertyTable&);

template <typename PropertyType>
FProperty* MakePlain(FFieldVariant Owner, const FPropertyTable& Row)
{
	return Make<PropertyType>(Owner, Row);
}

/** In the order of EPropertyKind. */
constexpr FMaker Makers[] = {&MakePlain<FInt8Property>, &MakePlain<FInt16Property>, &MakePlain<FIntProperty>,
	&MakePlain<FInt64Property>, &MakeByte, &MakePlain<FUInt16Property>, &MakePlain<FUInt32Property>,
	&MakePlain<FUInt64Property>, &MakePlain<FFloatProperty>, &MakePlain<FDoubleProperty>, &MakeBool, &MakeEnum,
	&MakePlain<FStrProperty>, &MakePlain<FNameProperty>, &MakePlain<FTextProperty>, &MakeStruct,
	&MakeReference<FObjectProperty>, &MakeClassReference<FClassProperty>, &MakeReference<FWeakObjectProperty>,
	&MakeReference<FSoftObjectProperty>, &MakeClassReference<FSoftClassProperty>, &MakeInterface,
	&MakeContainer<FArrayProperty>, &MakeContainer<FSetProperty>, &MakeContainer<FMapProperty>,
	&MakeDelegate<FDelegateProperty>, &MakeDelegate<FMulticastDelegateProperty>};
static_assert(UE_ARRAY_COUNT(Makers) == (int32)EPropertyKind::MulticastDelegate + 1);
} // namespace

FProperty* PropertyBuilder::Build(FFieldVariant Owner, const FPropertyTable& Row)
{
	FProperty* Property = Makers[(int32)Row.Kind](Owner, Row);
	if (!Row.SetBit)
	{
		Property->SetOffset_Internal((int32)Row.Offset);
	}
	Property->ArrayDim = Row.ArrayDim;
	Property->SetPropertyFlags(Row.Flags);
	AddMetaData(*Property, Row.MetaData);
	return Property;
}
