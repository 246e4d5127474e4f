#include "UObject/Property.h"

#include "ScratchValue.h"
#include "UObject/Class.h"

FString FProperty::GetCPPType(FString* ExtendedTypeText, uint32) const
{
	FString Extended;
	const FString Type = GetTypeText(&Extended);
	if (!ExtendedTypeText)
	{
		return Type + Extended;
	}
	*ExtendedTypeText = Extended;
	return Type;
}

void FProperty::InitializeValue(void* Dest) const
{
	for (int32 Index = 0; Index < ArrayDim; ++Index)
	{
		InitializeOne((uint8*)Dest + ElementSize * Index);
	}
}

void FProperty::DestroyValue(void* Dest) const
{
	for (int32 Index = 0; Index < ArrayDim; ++Index)
	{
		DestroyOne((uint8*)Dest + ElementSize * Index);
	}
}

void FProperty::ClearValue(void* Data) const
{
	DestroyOne(Data);
	InitializeOne(Data);
}

void FProperty::CopyCompleteValue(void* Dest, const void* Source) const
{
	if (Dest == Source)
	{
		return;
	}
	for (int32 Index = 0; Index < ArrayDim; ++Index)
	{
		CopyValue((uint8*)Dest + ElementSize * Index, (const uint8*)Source + ElementSize * Index);
	}
}

bool FProperty::Identical(const void* A, const void* B, uint32 PortFlags) const
{
	if (A == B)
	{
		return true;
	}
	if (A && B)
	{
		return IdenticalValues(A, B, PortFlags);
	}
	const FScratchValue Default(this);
	return IdenticalValues(A ? A : B, Default.Get(), PortFlags);
}

bool FProperty::Identical_InContainer(const void* A, const void* B, int32 ArrayIndex, uint32 PortFlags) const
{
	return Identical(
		A ? ValueAt((void*)A, ArrayIndex) : nullptr, B ? ValueAt((void*)B, ArrayIndex) : nullptr, PortFlags);
}

uint32 FProperty::GetValueTypeHash(const void*) const
{
	checkf(false, TEXT("%s can't be a key"), *GetPathName());
	return 0;
}

const TCHAR* FProperty::ImportText_Direct(
	const TCHAR* Buffer, void* Data, UObject* OwnerObject, int32 PortFlags, FOutputDevice* ErrorText) const
{
	if (!Buffer || !Data)
	{
		return nullptr;
	}
	if (!ImportsInSteps())
	{
		return ImportValue(Buffer, Data, OwnerObject, PortFlags, ErrorText);
	}
	const FScratchValue Scratch(this);
	CopyValue(Scratch.Get(), Data);
	const TCHAR* Behind = ImportValue(Buffer, Scratch.Get(), OwnerObject, PortFlags, ErrorText);
	if (Behind)
	{
		CopyValue(Data, Scratch.Get());
	}
	return Behind;
}

bool FProperty::ExportText_Direct(FString& ValueStr, const void* Data, const void* Delta, UObject* Parent,
	int32 PortFlags, UObject* ExportRootScope) const
{
	if (Data != Delta && Delta && IdenticalValues(Data, Delta, (uint32)PortFlags))
	{
		return false;
	}
	ExportValue(ValueStr, Data, Delta == Data ? nullptr : Delta, Parent, PortFlags, ExportRootScope);
	return true;
}

bool FProperty::ExportText_InContainer(int32 Index, FString& ValueStr, const void* Container,
	const void* DefaultContainer, UObject* Parent, int32 PortFlags, UObject* ExportRootScope) const
{
	const void* Delta = DefaultContainer ? ValueAt((void*)DefaultContainer, Index) : nullptr;
	return ExportText_Direct(ValueStr, ValueAt((void*)Container, Index), Delta, Parent, PortFlags, ExportRootScope);
}

void FProperty::ExportTextItem_Direct(FString& ValueStr, const void* Data, const void* Default, UObject* Parent,
	int32 PortFlags, UObject* ExportRootScope) const
{
	ExportValue(ValueStr, Data, Default == Data ? nullptr : Default, Parent, PortFlags, ExportRootScope);
}

void FProperty::ExportTextItem_InContainer(FString& ValueStr, const void* Container, const void* DefaultContainer,
	UObject* Parent, int32 PortFlags, UObject* ExportRootScope) const
{
	const void* Default = DefaultContainer ? ValueAt((void*)DefaultContainer, 0) : nullptr;
	ExportTextItem_Direct(ValueStr, ValueAt((void*)Container, 0), Default, Parent, PortFlags, ExportRootScope);
}

void FProperty::CollectReferences_InContainer(void* Container, FReferenceCollector& Collector) const
{
	for (int32 Index = 0; Index < ArrayDim && ContainsObjectReference(); ++Index)
	{
		CollectReferences(ValueAt(Container, Index), Collector);
	}
}

void FProperty::AddCppProperty(FProperty*)
{
	checkf(false, TEXT("%s holds no other properties"), *GetPathName());
}
