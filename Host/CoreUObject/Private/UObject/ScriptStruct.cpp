#include "UObject/ScriptStruct.h"

#include "UObject/Property.h"

void UScriptStruct::StaticLink(bool bRelinkExistingProperties)
{
	if (CppStructOps)
	{
		PropertiesSize = CppStructOps->Size;
		MinAlignment = CppStructOps->Alignment;
	}
	Super::StaticLink(bRelinkExistingProperties);
	bool bPlain = CppStructOps ? CppStructOps->bIsPlainOldData : true;
	for (const FProperty* Property = PropertyLink; Property && !CppStructOps; Property = Property->PropertyLinkNext)
	{
		bPlain &= Property->IsPlainOldData();
	}
	StructFlags |= bPlain ? STRUCT_IsPlainOldData | STRUCT_NoDestructor : STRUCT_NoFlags;
}

void UScriptStruct::InitializeStruct(void* Dest, int32 ArrayDim) const
{
	if (!CppStructOps)
	{
		Super::InitializeStruct(Dest, ArrayDim);
		return;
	}
	FMemory::Memzero(Dest, (SIZE_T)ArrayDim * (SIZE_T)GetStructureSize());
	for (int32 Index = 0; Index < ArrayDim; ++Index)
	{
		CppStructOps->Construct((uint8*)Dest + Index * GetStructureSize());
	}
}

void UScriptStruct::DestroyStruct(void* Dest, int32 ArrayDim) const
{
	if (!CppStructOps)
	{
		Super::DestroyStruct(Dest, ArrayDim);
		return;
	}
	for (int32 Index = 0; Index < ArrayDim; ++Index)
	{
		CppStructOps->Destruct((uint8*)Dest + Index * GetStructureSize());
	}
}

void UScriptStruct::ClearScriptStruct(void* Dest, int32 ArrayDim) const
{
	DestroyStruct(Dest, ArrayDim);
	InitializeStruct(Dest, ArrayDim);
}

void UScriptStruct::CopyScriptStruct(void* Dest, const void* Source, int32 ArrayDim) const
{
	for (int32 Index = 0; Index < ArrayDim && Dest != Source; ++Index)
	{
		uint8* To = (uint8*)Dest + Index * GetStructureSize();
		const uint8* From = (const uint8*)Source + Index * GetStructureSize();
		if (CppStructOps)
		{
			CppStructOps->Copy(To, From);
			continue;
		}
		for (const FProperty* Property = PropertyLink; Property; Property = Property->PropertyLinkNext)
		{
			Property->CopyCompleteValue_InContainer(To, From);
		}
	}
}

bool UScriptStruct::CompareScriptStruct(const void* A, const void* B, uint32 PortFlags) const
{
	if (CppStructOps && CppStructOps->Identical)
	{
		return CppStructOps->Identical(A, B);
	}
	for (const FProperty* Property = PropertyLink; Property; Property = Property->PropertyLinkNext)
	{
		for (int32 Index = 0; Index < Property->ArrayDim; ++Index)
		{
			if (!Property->Identical_InContainer(A, B, Index, PortFlags))
			{
				return false;
			}
		}
	}
	return true;
}

bool UScriptStruct::HasTypeHash() const
{
	return CppStructOps && CppStructOps->GetTypeHash;
}

uint32 UScriptStruct::GetStructTypeHash(const void* Source) const
{
	checkf(HasTypeHash(), TEXT("%s has no hash"), *GetPathName());
	return CppStructOps->GetTypeHash(Source);
}
