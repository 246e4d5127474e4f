#include "UObject/DelegateProperties.h"

#include "PropertyText.h"
#include "UObject/UObjectGlobals.h"

namespace
{
/** `/Path.Object.Function` or `None`, quoted or not; a lone name is a function of the owner. */
const TCHAR* ReadDelegate(const TCHAR* Buffer, FScriptDelegate& Out, UObject* Owner)
{
	FString Text;
	const TCHAR* Behind = PropertyText::ReadQuotedOrBare(Buffer, Text);
	Out.Unbind();
	if (!Behind || Text == TEXT("None"))
	{
		return Behind;
	}
	FString ObjectPath;
	FString Function = Text;
	Text.Split(TEXT("."), &ObjectPath, &Function, ESearchCase::IgnoreCase, ESearchDir::FromEnd);
	UObject* Object = ObjectPath.IsEmpty() ? Owner : StaticFindObject(nullptr, nullptr, ObjectPath);
	if (!Object || !Object->FindFunction(FName(Function)))
	{
		return nullptr;
	}
	Out.BindUFunction(Object, FName(Function));
	return Behind;
}
} // namespace

bool FDelegateProperty::SameType(const FProperty* Other) const
{
	return Super::SameType(Other) && ((const FDelegateProperty*)Other)->SignatureFunction == SignatureFunction;
}

FString FDelegateProperty::GetTypeText(FString*) const
{
	return TEXT("FScriptDelegate");
}

bool FDelegateProperty::IdenticalValues(const void* A, const void* B, uint32) const
{
	return *(const FScriptDelegate*)A == *(const FScriptDelegate*)B;
}

void FDelegateProperty::ExportValue(FString& ValueStr, const void* Data, const void*, UObject*, int32, UObject*) const
{
	ValueStr += ((const FScriptDelegate*)Data)->ToString();
}

const TCHAR* FDelegateProperty::ImportValue(
	const TCHAR* Buffer, void* Data, UObject* OwnerObject, int32, FOutputDevice* ErrorText) const
{
	FScriptDelegate Delegate;
	const TCHAR* Behind = ReadDelegate(Buffer, Delegate, OwnerObject);
	if (!Behind)
	{
		PropertyText::Report(ErrorText, FString::Printf(TEXT("%s: expected an object's function"), *GetName()));
		return nullptr;
	}
	*(FScriptDelegate*)Data = Delegate;
	return Behind;
}

bool FMulticastDelegateProperty::SameType(const FProperty* Other) const
{
	return Super::SameType(Other) && ((const FMulticastDelegateProperty*)Other)->SignatureFunction == SignatureFunction;
}

FString FMulticastDelegateProperty::GetTypeText(FString*) const
{
	return TEXT("FMulticastScriptDelegate");
}

bool FMulticastDelegateProperty::IdenticalValues(const void* A, const void* B, uint32) const
{
	return *(const FMulticastScriptDelegate*)A == *(const FMulticastScriptDelegate*)B;
}

void FMulticastDelegateProperty::ExportValue(
	FString& ValueStr, const void* Data, const void*, UObject*, int32, UObject*) const
{
	ValueStr += ((const FMulticastScriptDelegate*)Data)->ToString();
}

const TCHAR* FMulticastDelegateProperty::ImportValue(
	const TCHAR* Buffer, void* Data, UObject* OwnerObject, int32, FOutputDevice* ErrorText) const
{
	FMulticastScriptDelegate Delegates;
	const TCHAR* Behind = PropertyText::ReadList(PropertyText::SkipBlanks(Buffer),
		[&](const TCHAR* Text)
		{
			FScriptDelegate Delegate;
			const TCHAR* BehindItem = ReadDelegate(Text, Delegate, OwnerObject);
			if (BehindItem)
			{
				Delegates.Add(Delegate);
			}
			return BehindItem;
		});
	if (!Behind)
	{
		PropertyText::Report(ErrorText, FString::Printf(TEXT("%s: expected a list of functions"), *GetName()));
		return nullptr;
	}
	*(FMulticastScriptDelegate*)Data = Delegates;
	return Behind;
}
