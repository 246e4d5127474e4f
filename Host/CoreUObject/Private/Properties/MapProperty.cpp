#include "PropertyText.h"
#include "ScratchValue.h"
#include "UObject/ScriptContainers.h"

static_assert(sizeof(FScriptSet) == sizeof(TMap<FString, FString>), "the property works on the memory of a TMap");

FMapProperty::FMapProperty(FFieldVariant InOwner, FName InName, EObjectFlags InFlags)
	: FContainerProperty(InOwner, InName, InFlags)
{
	ElementSize = (int32)sizeof(FScriptSet);
	Alignment = (int32)alignof(FScriptSet);
}

FMapProperty::~FMapProperty()
{
	delete KeyProp;
	delete ValueProp;
}

void FMapProperty::AddCppProperty(FProperty* Property)
{
	check(Property && !ValueProp);
	(KeyProp ? ValueProp : KeyProp) = Property;
}

void FMapProperty::LinkType()
{
	check(KeyProp && ValueProp);
	KeyProp->LinkType();
	ValueProp->LinkType();
	const int32 PairAlignment = FMath::Max(KeyProp->GetMinAlignment(), ValueProp->GetMinAlignment());
	MapLayout.ValueOffset = Align(KeyProp->GetElementSize(), (uint64)ValueProp->GetMinAlignment());
	const int32 PairSize = Align(MapLayout.ValueOffset + ValueProp->GetElementSize(), (uint64)PairAlignment);
	MapLayout.SetLayout = FScriptSetLayout::For(PairSize, PairAlignment);
}

bool FMapProperty::SameType(const FProperty* Other) const
{
	const FMapProperty* Map = (const FMapProperty*)Other;
	return Super::SameType(Other) && KeyProp->SameType(Map->KeyProp) && ValueProp->SameType(Map->ValueProp);
}

bool FMapProperty::ContainsObjectReference() const
{
	return KeyProp->ContainsObjectReference() || ValueProp->ContainsObjectReference();
}

void FMapProperty::CollectReferences(void* Data, FReferenceCollector& Collector) const
{
	FScriptMapHelper Helper(this, Data);
	bool bChanged = false;
	for (int32 Index = 0; Index < Helper.GetMaxIndex(); ++Index)
	{
		if (Helper.IsValidIndex(Index))
		{
			const uint32 Before = KeyProp->GetValueTypeHash(Helper.GetKeyPtr(Index));
			KeyProp->CollectReferences(Helper.GetKeyPtr(Index), Collector);
			ValueProp->CollectReferences(Helper.GetValuePtr(Index), Collector);
			bChanged |= Before != KeyProp->GetValueTypeHash(Helper.GetKeyPtr(Index));
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

void FMapProperty::GetInnerFields(TArray<FField*>& OutFields) const
{
	OutFields.Add(KeyProp);
	OutFields.Add(ValueProp);
}

FString FMapProperty::GetTypeText(FString* ExtendedTypeText) const
{
	*ExtendedTypeText = FString::Printf(TEXT("<%s,%s>"), *KeyProp->GetCPPType(), *ValueProp->GetCPPType());
	return TEXT("TMap");
}

void FMapProperty::InitializeOne(void* Dest) const
{
	::new (Dest) FScriptSet();
}

void FMapProperty::DestroyOne(void* Dest) const
{
	FScriptMapHelper(this, Dest).EmptyValues();
}

void FMapProperty::CopyValue(void* Dest, const void* Source) const
{
	if (Dest == Source)
	{
		return;
	}
	FScriptMapHelper To(this, Dest);
	const FScriptMapHelper From(this, Source);
	To.EmptyValues();
	for (int32 Index = 0; Index < From.GetMaxIndex(); ++Index)
	{
		if (From.IsValidIndex(Index))
		{
			ValueProp->CopySingleValue(To.FindOrAdd(From.GetKeyPtr(Index)), From.GetValuePtr(Index));
		}
	}
}

bool FMapProperty::IdenticalValues(const void* A, const void* B, uint32 PortFlags) const
{
	const FScriptMapHelper Left(this, A);
	const FScriptMapHelper Right(this, B);
	bool bSame = Left.Num() == Right.Num();
	for (int32 Index = 0; bSame && Index < Left.GetMaxIndex(); ++Index)
	{
		if (Left.IsValidIndex(Index))
		{
			const uint8* Other = Right.FindValueFromHash(Left.GetKeyPtr(Index));
			bSame = Other && ValueProp->Identical(Left.GetValuePtr(Index), Other, PortFlags);
		}
	}
	return bSame;
}

void FMapProperty::ExportValue(
	FString& ValueStr, const void* Data, const void*, UObject* Parent, int32 PortFlags, UObject* ExportRootScope) const
{
	const FScriptMapHelper Helper(this, Data);
	const int32 Flags = PortFlags | PPF_Delimited;
	ValueStr += TEXT('(');
	bool bFirst = true;
	for (int32 Index = 0; Index < Helper.GetMaxIndex(); ++Index)
	{
		if (Helper.IsValidIndex(Index))
		{
			ValueStr += bFirst ? TEXT("(") : TEXT(",(");
			KeyProp->ExportTextItem_Direct(ValueStr, Helper.GetKeyPtr(Index), nullptr, Parent, Flags, ExportRootScope);
			ValueStr += TEXT(", ");
			ValueProp->ExportTextItem_Direct(
				ValueStr, Helper.GetValuePtr(Index), nullptr, Parent, Flags, ExportRootScope);
			ValueStr += TEXT(')');
			bFirst = false;
		}
	}
	ValueStr += TEXT(')');
}

const TCHAR* FMapProperty::ImportValue(
	const TCHAR* Buffer, void* Data, UObject* OwnerObject, int32 PortFlags, FOutputDevice* ErrorText) const
{
	FScriptMapHelper Helper(this, Data);
	Helper.EmptyValues();
	Buffer = PropertyText::SkipBlanks(Buffer);
	if (*Buffer == 0)
	{
		return Buffer;
	}
	const int32 Flags = PortFlags | PPF_Delimited;
	const TCHAR* Behind = PropertyText::ReadList(Buffer,
		[&](const TCHAR* Text) -> const TCHAR*
		{
			const FScratchValue Key(KeyProp);
			const FScratchValue Value(ValueProp);
			int32 Parts = 0;
			Text = PropertyText::ReadList(Text,
				[&](const TCHAR* Part) -> const TCHAR*
				{
					const FScratchValue& Target = Parts == 0 ? Key : Value;
					const FProperty* Property = Parts == 0 ? KeyProp : ValueProp;
					return Parts++ < 2 ? Property->ImportText_Direct(Part, Target.Get(), OwnerObject, Flags, ErrorText)
									   : nullptr;
				});
			if (!Text || Parts != 2)
			{
				return nullptr;
			}
			Helper.AddPair(Key.Get(), Value.Get());
			return Text;
		});
	if (!Behind)
	{
		PropertyText::Report(ErrorText, FString::Printf(TEXT("%s: expected pairs ((a, b),(c, d))"), *GetName()));
	}
	return Behind;
}
