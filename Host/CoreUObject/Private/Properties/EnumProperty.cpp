#include "UObject/EnumProperty.h"

#include "PropertyText.h"
#include "UObject/Enum.h"

namespace
{
/** The entry's short name, or the number of a value that no entry has. */
FString EnumText(const UEnum* Enum, int64 Value)
{
	const int32 Index = Enum->GetIndexByValue(Value);
	return Index == INDEX_NONE ? LexToString(Value) : Enum->GetNameStringByIndex(Index);
}

/** Reads an entry's name, short or full, or a number. */
const TCHAR* ReadEnum(
	const FProperty* Property, const UEnum* Enum, const TCHAR* Buffer, int64& Out, FOutputDevice* Error)
{
	FString Name;
	const TCHAR* Behind = PropertyText::ReadQuotedOrBare(Buffer, Name);
	const int32 Index = Behind ? Enum->GetIndexByNameString(Name) : INDEX_NONE;
	if (Index != INDEX_NONE)
	{
		Out = Enum->GetValueByIndex(Index);
		return Behind;
	}
	PropertyText::FWideInteger Integer;
	const TCHAR* BehindNumber = Behind ? PropertyText::ReadInteger(*Name, Integer) : nullptr;
	if (BehindNumber && *BehindNumber == 0)
	{
		Out = Integer.bNegative ? -(int64)Integer.Magnitude : (int64)Integer.Magnitude;
		return Behind;
	}
	PropertyText::Report(
		Error, FString::Printf(TEXT("%s: '%s' is no value of %s"), *Property->GetName(), *Name, *Enum->GetName()));
	return nullptr;
}
} // namespace

bool FByteProperty::SameType(const FProperty* Other) const
{
	return Super::SameType(Other) && ((const FByteProperty*)Other)->Enum == Enum;
}

FString FByteProperty::GetTypeText(FString* ExtendedTypeText) const
{
	return Enum ? FString::Printf(TEXT("TEnumAsByte<%s>"), *Enum->CppType)
				: TNumericProperty<uint8>::GetTypeText(ExtendedTypeText);
}

void FByteProperty::ExportValue(FString& ValueStr, const void* Data, const void* Default, UObject* Parent,
	int32 PortFlags, UObject* ExportRootScope) const
{
	if (Enum)
	{
		ValueStr += EnumText(Enum, *(const uint8*)Data);
		return;
	}
	TNumericProperty<uint8>::ExportValue(ValueStr, Data, Default, Parent, PortFlags, ExportRootScope);
}

const TCHAR* FByteProperty::ImportValue(
	const TCHAR* Buffer, void* Data, UObject* OwnerObject, int32 PortFlags, FOutputDevice* ErrorText) const
{
	if (!Enum)
	{
		return TNumericProperty<uint8>::ImportValue(Buffer, Data, OwnerObject, PortFlags, ErrorText);
	}
	int64 Value = 0;
	const TCHAR* Behind = ReadEnum(this, Enum, Buffer, Value, ErrorText);
	if (!Behind || !CanHoldValue(Value))
	{
		return nullptr;
	}
	*(uint8*)Data = (uint8)Value;
	return Behind;
}

FEnumProperty::~FEnumProperty()
{
	delete Underlying;
}

void FEnumProperty::AddCppProperty(FProperty* Property)
{
	check(!Underlying && Property && Property->IsA<FNumericProperty>());
	Underlying = (FNumericProperty*)Property;
	LinkType();
}

void FEnumProperty::LinkType()
{
	check(Underlying);
	ElementSize = Underlying->GetElementSize();
	Alignment = Underlying->GetMinAlignment();
	SetPropertyFlags(CPF_IsPlainOldData | CPF_NoDestructor | CPF_ZeroConstructor);
}

uint32 FEnumProperty::GetValueTypeHash(const void* Data) const
{
	return Underlying->GetValueTypeHash(Data);
}

bool FEnumProperty::SameType(const FProperty* Other) const
{
	return Super::SameType(Other) && ((const FEnumProperty*)Other)->Enum == Enum;
}

FString FEnumProperty::GetTypeText(FString*) const
{
	return Enum->CppType;
}

void FEnumProperty::InitializeOne(void* Dest) const
{
	Underlying->SetIntPropertyValue(Dest, (int64)0);
}

void FEnumProperty::CopyValue(void* Dest, const void* Source) const
{
	FMemory::Memcpy(Dest, Source, (SIZE_T)ElementSize);
}

bool FEnumProperty::IdenticalValues(const void* A, const void* B, uint32 PortFlags) const
{
	return Underlying->Identical(A, B, PortFlags);
}

void FEnumProperty::ExportValue(FString& ValueStr, const void* Data, const void*, UObject*, int32, UObject*) const
{
	ValueStr += EnumText(Enum, Underlying->GetSignedIntPropertyValue(Data));
}

const TCHAR* FEnumProperty::ImportValue(
	const TCHAR* Buffer, void* Data, UObject*, int32, FOutputDevice* ErrorText) const
{
	int64 Value = 0;
	const TCHAR* Behind = ReadEnum(this, Enum, Buffer, Value, ErrorText);
	if (!Behind || (!Underlying->CanHoldValue(Value) && ElementSize < 8))
	{
		return nullptr;
	}
	Underlying->SetIntPropertyValue(Data, Value);
	return Behind;
}
