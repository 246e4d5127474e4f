#include "UObject/StructProperty.h"

#include "UObject/Class.h"

void FStructProperty::LinkType()
{
	check(Struct);
	ElementSize = Struct->GetStructureSize();
	Alignment = Struct->GetMinAlignment();
	if (IsPlainOldData())
	{
		SetPropertyFlags(CPF_IsPlainOldData | CPF_NoDestructor);
	}
}

bool FStructProperty::IsPlainOldData() const
{
	return (Struct->StructFlags & STRUCT_IsPlainOldData) != STRUCT_NoFlags;
}

bool FStructProperty::CanBeKey() const
{
	return Struct->HasTypeHash();
}

uint32 FStructProperty::GetValueTypeHash(const void* Data) const
{
	return Struct->GetStructTypeHash(Data);
}

bool FStructProperty::SameType(const FProperty* Other) const
{
	return Super::SameType(Other) && ((const FStructProperty*)Other)->Struct == Struct;
}

bool FStructProperty::ContainsObjectReference() const
{
	const FCppStructOps* Ops = Struct->GetCppStructOps();
	if (Ops && Ops->AddStructReferencedObjects)
	{
		return true;
	}
	for (const FProperty* Each = Struct->PropertyLink; Each; Each = Each->PropertyLinkNext)
	{
		if (Each->ContainsObjectReference())
		{
			return true;
		}
	}
	return false;
}

void FStructProperty::CollectReferences(void* Data, FReferenceCollector& Collector) const
{
	Struct->CollectReferences(Data, Collector);
}

FString FStructProperty::GetTypeText(FString*) const
{
	return Struct->GetStructCPPName();
}

void FStructProperty::InitializeOne(void* Dest) const
{
	Struct->InitializeStruct(Dest);
}

void FStructProperty::DestroyOne(void* Dest) const
{
	Struct->DestroyStruct(Dest);
}

void FStructProperty::CopyValue(void* Dest, const void* Source) const
{
	Struct->CopyScriptStruct(Dest, Source);
}

bool FStructProperty::IdenticalValues(const void* A, const void* B, uint32 PortFlags) const
{
	return Struct->CompareScriptStruct(A, B, PortFlags);
}

void FStructProperty::ExportValue(FString& ValueStr, const void* Data, const void* Default, UObject* Parent,
	int32 PortFlags, UObject* ExportRootScope) const
{
	Struct->ExportText(ValueStr, Data, Default, Parent, PortFlags, ExportRootScope);
}

const TCHAR* FStructProperty::ImportValue(
	const TCHAR* Buffer, void* Data, UObject* OwnerObject, int32 PortFlags, FOutputDevice* ErrorText) const
{
	return Struct->ImportText(Buffer, Data, OwnerObject, PortFlags, ErrorText, Struct->GetName());
}
