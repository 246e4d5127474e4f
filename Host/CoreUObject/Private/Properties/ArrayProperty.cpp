#include "PropertyText.h"
#include "UObject/ScriptContainers.h"

FArrayProperty::FArrayProperty(FFieldVariant InOwner, FName InName, EObjectFlags InFlags)
	: FContainerProperty(InOwner, InName, InFlags)
{
	ElementSize = (int32)sizeof(FScriptArray);
	Alignment = (int32)alignof(FScriptArray);
}

FArrayProperty::~FArrayProperty()
{
	delete Inner;
}

void FArrayProperty::AddCppProperty(FProperty* Property)
{
	check(!Inner && Property);
	Inner = Property;
}

void FArrayProperty::LinkType()
{
	check(Inner);
	Inner->LinkType();
}

bool FArrayProperty::SameType(const FProperty* Other) const
{
	return Super::SameType(Other) && Inner->SameType(((const FArrayProperty*)Other)->Inner);
}

void FArrayProperty::CollectReferences(void* Data, FReferenceCollector& Collector) const
{
	const FScriptArrayHelper Helper(this, Data);
	for (int32 Index = 0; Index < Helper.Num(); ++Index)
	{
		Inner->CollectReferences(Helper.GetRawPtr(Index), Collector);
	}
}

FString FArrayProperty::GetTypeText(FString* ExtendedTypeText) const
{
	*ExtendedTypeText = FString::Printf(TEXT("<%s>"), *Inner->GetCPPType());
	return TEXT("TArray");
}

void FArrayProperty::InitializeOne(void* Dest) const
{
	::new (Dest) FScriptArray();
}

void FArrayProperty::DestroyOne(void* Dest) const
{
	FScriptArrayHelper(this, Dest).EmptyValues();
}

void FArrayProperty::CopyValue(void* Dest, const void* Source) const
{
	if (Dest == Source)
	{
		return;
	}
	FScriptArrayHelper To(this, Dest);
	const FScriptArrayHelper From(this, Source);
	To.Resize(From.Num());
	for (int32 Index = 0; Index < From.Num(); ++Index)
	{
		Inner->CopySingleValue(To.GetRawPtr(Index), From.GetRawPtr(Index));
	}
}

bool FArrayProperty::IdenticalValues(const void* A, const void* B, uint32 PortFlags) const
{
	const FScriptArrayHelper Left(this, A);
	const FScriptArrayHelper Right(this, B);
	bool bSame = Left.Num() == Right.Num();
	for (int32 Index = 0; bSame && Index < Left.Num(); ++Index)
	{
		bSame = Inner->Identical(Left.GetRawPtr(Index), Right.GetRawPtr(Index), PortFlags);
	}
	return bSame;
}

void FArrayProperty::ExportValue(
	FString& ValueStr, const void* Data, const void*, UObject* Parent, int32 PortFlags, UObject* ExportRootScope) const
{
	const FScriptArrayHelper Helper(this, Data);
	ValueStr += TEXT('(');
	for (int32 Index = 0; Index < Helper.Num(); ++Index)
	{
		ValueStr += Index ? TEXT(",") : TEXT("");
		Inner->ExportTextItem_Direct(
			ValueStr, Helper.GetRawPtr(Index), nullptr, Parent, PortFlags | PPF_Delimited, ExportRootScope);
	}
	ValueStr += TEXT(')');
}

const TCHAR* FArrayProperty::ImportValue(
	const TCHAR* Buffer, void* Data, UObject* OwnerObject, int32 PortFlags, FOutputDevice* ErrorText) const
{
	FScriptArrayHelper Helper(this, Data);
	Helper.EmptyValues();
	Buffer = PropertyText::SkipBlanks(Buffer);
	if (*Buffer == 0)
	{
		return Buffer;
	}
	const TCHAR* Behind = PropertyText::ReadList(Buffer,
		[&](const TCHAR* Text)
		{
			const int32 Index = Helper.AddValue();
			return Inner->ImportText_Direct(
				Text, Helper.GetRawPtr(Index), OwnerObject, PortFlags | PPF_Delimited, ErrorText);
		});
	if (!Behind)
	{
		PropertyText::Report(ErrorText, FString::Printf(TEXT("%s: expected a list (a,b,c)"), *GetName()));
	}
	return Behind;
}
