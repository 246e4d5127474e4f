#include "PropertyText.h"
#include "ScratchValue.h"
#include "UObject/ScriptContainers.h"

static_assert(sizeof(FScriptSet) == sizeof(TSet<FString>), "the property works on the memory of a TSet");

FSetProperty::FSetProperty(FFieldVariant InOwner, FName InName, EObjectFlags InFlags)
	: FContainerProperty(InOwner, InName, InFlags)
{
	ElementSize = (int32)sizeof(FScriptSet);
	Alignment = (int32)alignof(FScriptSet);
}

FSetProperty::~FSetProperty()
{
	delete ElementProp;
}

void FSetProperty::AddCppProperty(FProperty* Property)
{
	check(!ElementProp && Property);
	ElementProp = Property;
}

void FSetProperty::LinkType()
{
	check(ElementProp);
	ElementProp->LinkType();
	SetLayout = FScriptSetLayout::For(ElementProp->GetElementSize(), ElementProp->GetMinAlignment());
}

bool FSetProperty::SameType(const FProperty* Other) const
{
	return Super::SameType(Other) && ElementProp->SameType(((const FSetProperty*)Other)->ElementProp);
}

void FSetProperty::CollectReferences(void* Data, FReferenceCollector& Collector) const
{
	FScriptSetHelper Helper(this, Data);
	bool bChanged = false;
	for (int32 Index = 0; Index < Helper.GetMaxIndex(); ++Index)
	{
		if (Helper.IsValidIndex(Index))
		{
			const uint32 Before = ElementProp->GetValueTypeHash(Helper.GetElementPtr(Index));
			ElementProp->CollectReferences(Helper.GetElementPtr(Index), Collector);
			bChanged |= Before != ElementProp->GetValueTypeHash(Helper.GetElementPtr(Index));
		}
	}
	if (bChanged)
	{
		FScriptSet Rebuilt;
		CopyValue(&Rebuilt, Data);
		((FScriptSet*)Data)->Swap(Rebuilt);
		DestroyOne(&Rebuilt);
	}
}

FString FSetProperty::GetTypeText(FString* ExtendedTypeText) const
{
	*ExtendedTypeText = FString::Printf(TEXT("<%s>"), *ElementProp->GetCPPType());
	return TEXT("TSet");
}

void FSetProperty::InitializeOne(void* Dest) const
{
	::new (Dest) FScriptSet();
}

void FSetProperty::DestroyOne(void* Dest) const
{
	FScriptSetHelper(this, Dest).EmptyElements();
}

void FSetProperty::CopyValue(void* Dest, const void* Source) const
{
	if (Dest == Source)
	{
		return;
	}
	FScriptSetHelper To(this, Dest);
	const FScriptSetHelper From(this, Source);
	To.EmptyElements();
	for (int32 Index = 0; Index < From.GetMaxIndex(); ++Index)
	{
		if (From.IsValidIndex(Index))
		{
			To.AddElement(From.GetElementPtr(Index));
		}
	}
}

bool FSetProperty::IdenticalValues(const void* A, const void* B, uint32) const
{
	const FScriptSetHelper Left(this, A);
	const FScriptSetHelper Right(this, B);
	bool bSame = Left.Num() == Right.Num();
	for (int32 Index = 0; bSame && Index < Left.GetMaxIndex(); ++Index)
	{
		bSame = !Left.IsValidIndex(Index) || Right.FindElementIndex(Left.GetElementPtr(Index)) != INDEX_NONE;
	}
	return bSame;
}

void FSetProperty::ExportValue(
	FString& ValueStr, const void* Data, const void*, UObject* Parent, int32 PortFlags, UObject* ExportRootScope) const
{
	const FScriptSetHelper Helper(this, Data);
	ValueStr += TEXT('(');
	bool bFirst = true;
	for (int32 Index = 0; Index < Helper.GetMaxIndex(); ++Index)
	{
		if (Helper.IsValidIndex(Index))
		{
			ValueStr += bFirst ? TEXT("") : TEXT(",");
			ElementProp->ExportTextItem_Direct(
				ValueStr, Helper.GetElementPtr(Index), nullptr, Parent, PortFlags | PPF_Delimited, ExportRootScope);
			bFirst = false;
		}
	}
	ValueStr += TEXT(')');
}

const TCHAR* FSetProperty::ImportValue(
	const TCHAR* Buffer, void* Data, UObject* OwnerObject, int32 PortFlags, FOutputDevice* ErrorText) const
{
	FScriptSetHelper Helper(this, Data);
	Helper.EmptyElements();
	Buffer = PropertyText::SkipBlanks(Buffer);
	if (*Buffer == 0)
	{
		return Buffer;
	}
	const TCHAR* Behind = PropertyText::ReadList(Buffer,
		[&](const TCHAR* Text)
		{
			const FScratchValue Element(ElementProp);
			const TCHAR* BehindItem =
				ElementProp->ImportText_Direct(Text, Element.Get(), OwnerObject, PortFlags | PPF_Delimited, ErrorText);
			if (BehindItem)
			{
				Helper.AddElement(Element.Get());
			}
			return BehindItem;
		});
	if (!Behind)
	{
		PropertyText::Report(ErrorText, FString::Printf(TEXT("%s: expected a list (a,b,c)"), *GetName()));
	}
	return Behind;
}
