#include "UObject/ObjectProperties.h"

#include "PropertyText.h"
#include "UObject/GarbageCollection.h"

namespace
{
/** The path of a reference's text: what stands in the quotes of `Class'Path'`, or all of it. */
FString PathOf(const FString& Reference)
{
	int32 Quote = INDEX_NONE;
	if (Reference.FindChar(TEXT('\''), Quote) && Reference.EndsWith(TEXT("'")) && Quote < Reference.Len() - 1)
	{
		FString Path = Reference.Mid(Quote + 1).LeftChop(1);
		return Path.TrimQuotes();
	}
	return Reference;
}

bool IsPath(const FString& Text)
{
	return Text.StartsWith(TEXT("/")) || Text.Contains(TEXT("."));
}

UObject* FindReferenced(const FString& Path, UClass* RequiredClass, UObject* Owner)
{
	if (IsPath(Path))
	{
		return StaticLoadObject(RequiredClass, nullptr, *Path);
	}
	UObject* Found = Owner ? StaticFindObjectFast(RequiredClass, Owner, FName(Path, FNAME_Find)) : nullptr;
	return Found ? Found : StaticFindFirstObject(RequiredClass, *Path);
}

void AppendReference(FString& ValueStr, const FString& Text, int32 PortFlags)
{
	if (PortFlags & PPF_Delimited)
	{
		PropertyText::AppendQuoted(ValueStr, Text);
		return;
	}
	ValueStr += Text;
}
} // namespace

bool FObjectPropertyBase::AcceptsObject(const UObject* Object) const
{
	return !Object || !PropertyClass || Object->IsA(PropertyClass);
}

uint32 FObjectPropertyBase::GetValueTypeHash(const void* Data) const
{
	return GetTypeHash((const void*)GetObjectPropertyValue(Data));
}

bool FObjectPropertyBase::SameType(const FProperty* Other) const
{
	return Super::SameType(Other) && ((const FObjectPropertyBase*)Other)->PropertyClass == PropertyClass;
}

FString FObjectPropertyBase::ClassText(const UClass* Class) const
{
	return Class ? FString(Class->GetPrefixCPP()) + Class->GetName() : FString(TEXT("UObject"));
}

bool FObjectPropertyBase::IdenticalValues(const void* A, const void* B, uint32) const
{
	return GetObjectPropertyValue(A) == GetObjectPropertyValue(B);
}

void FObjectPropertyBase::ExportValue(
	FString& ValueStr, const void* Data, const void*, UObject*, int32 PortFlags, UObject*) const
{
	const UObject* Object = GetObjectPropertyValue(Data);
	if (!Object)
	{
		ValueStr += TEXT("None");
		return;
	}
	AppendReference(
		ValueStr, PortFlags & PPF_SimpleObjectText ? Object->GetPathName() : Object->GetExportPath(), PortFlags);
}

const TCHAR* FObjectPropertyBase::ParseObjectPropertyValue(const FProperty* Property, UObject* OwnerObject,
	UClass* RequiredMetaClass, const TCHAR* Buffer, UObject*& OutResolved, FOutputDevice* ErrorText)
{
	OutResolved = nullptr;
	FString Reference;
	const TCHAR* Behind = PropertyText::ReadQuotedOrBare(Buffer, Reference);
	const FString Path = PathOf(Reference);
	if (!Behind || Path == TEXT("None") || (*Buffer == TEXT('"') && Path.IsEmpty()))
	{
		return Behind;
	}
	OutResolved = FindReferenced(Path, RequiredMetaClass, OwnerObject);
	if (!OutResolved)
	{
		PropertyText::Report(ErrorText,
			FString::Printf(TEXT("%s: '%s' names no object of class %s"), *Property->GetName(), *Reference,
				RequiredMetaClass ? *RequiredMetaClass->GetName() : TEXT("Object")));
		return nullptr;
	}
	return Behind;
}

const TCHAR* FObjectPropertyBase::ImportValue(
	const TCHAR* Buffer, void* Data, UObject* OwnerObject, int32, FOutputDevice* ErrorText) const
{
	UObject* Object = nullptr;
	const TCHAR* Behind = ParseObjectPropertyValue(this, OwnerObject, PropertyClass, Buffer, Object, ErrorText);
	if (!Behind || !AcceptsObject(Object))
	{
		return nullptr;
	}
	SetObjectPropertyValue(Data, Object);
	return Behind;
}

void FObjectProperty::CollectReferences(void* Data, FReferenceCollector& Collector) const
{
	Collector.HandleReference(*(UObject**)Data);
}

FString FObjectProperty::GetTypeText(FString* ExtendedTypeText) const
{
	if (HasAnyPropertyFlags(CPF_UObjectWrapper))
	{
		*ExtendedTypeText = FString::Printf(TEXT("<%s>"), *ClassText(PropertyClass));
		return TEXT("TObjectPtr");
	}
	return ClassText(PropertyClass) + TEXT("*");
}

bool FClassProperty::AcceptsObject(const UObject* Object) const
{
	return !Object ||
		(Object->IsA(UClass::StaticClass()) && (!MetaClass || ((const UClass*)Object)->IsChildOf(MetaClass)));
}

bool FClassProperty::SameType(const FProperty* Other) const
{
	return Super::SameType(Other) && ((const FClassProperty*)Other)->MetaClass == MetaClass;
}

FString FClassProperty::GetTypeText(FString* ExtendedTypeText) const
{
	if (!MetaClass || MetaClass == UObject::StaticClass())
	{
		return TEXT("UClass*");
	}
	*ExtendedTypeText = FString::Printf(TEXT("<%s>"), *ClassText(MetaClass));
	return TEXT("TSubclassOf");
}

UObject* FWeakObjectProperty::GetObjectPropertyValue(const void* Data) const
{
	return ((const FWeakObjectPtr*)Data)->Get();
}

void FWeakObjectProperty::SetObjectPropertyValue(void* Data, UObject* Value) const
{
	*(FWeakObjectPtr*)Data = Value;
}

FString FWeakObjectProperty::GetTypeText(FString* ExtendedTypeText) const
{
	*ExtendedTypeText = FString::Printf(TEXT("<%s>"), *ClassText(PropertyClass));
	return TEXT("TWeakObjectPtr");
}

UObject* FSoftObjectProperty::GetObjectPropertyValue(const void* Data) const
{
	return ((const FSoftObjectPtr*)Data)->Get();
}

void FSoftObjectProperty::SetObjectPropertyValue(void* Data, UObject* Value) const
{
	*(FSoftObjectPtr*)Data = FSoftObjectPtr((const UObject*)Value);
}

uint32 FSoftObjectProperty::GetValueTypeHash(const void* Data) const
{
	return GetTypeHash(*(const FSoftObjectPtr*)Data);
}

FString FSoftObjectProperty::GetTypeText(FString* ExtendedTypeText) const
{
	*ExtendedTypeText = FString::Printf(TEXT("<%s>"), *ClassText(PropertyClass));
	return TEXT("TSoftObjectPtr");
}

bool FSoftObjectProperty::IdenticalValues(const void* A, const void* B, uint32) const
{
	return *(const FSoftObjectPtr*)A == *(const FSoftObjectPtr*)B;
}

void FSoftObjectProperty::ExportValue(
	FString& ValueStr, const void* Data, const void*, UObject*, int32 PortFlags, UObject*) const
{
	const FSoftObjectPtr& Pointer = *(const FSoftObjectPtr*)Data;
	if (Pointer.IsNull())
	{
		ValueStr += TEXT("None");
		return;
	}
	AppendReference(ValueStr, Pointer.ToString(), PortFlags);
}

const TCHAR* FSoftObjectProperty::ImportValue(
	const TCHAR* Buffer, void* Data, UObject*, int32, FOutputDevice* ErrorText) const
{
	FString Reference;
	const TCHAR* Behind = PropertyText::ReadQuotedOrBare(Buffer, Reference);
	if (!Behind && *Buffer != 0)
	{
		PropertyText::Report(ErrorText, FString::Printf(TEXT("%s: expected a path"), *GetName()));
		return nullptr;
	}
	FSoftObjectPath Path;
	Path.SetPath(Reference);
	*(FSoftObjectPtr*)Data = FSoftObjectPtr(Path);
	return Behind ? Behind : Buffer;
}

FString FSoftClassProperty::GetTypeText(FString* ExtendedTypeText) const
{
	*ExtendedTypeText = FString::Printf(TEXT("<%s>"), *ClassText(MetaClass));
	return TEXT("TSoftClassPtr");
}

UObject* FInterfaceProperty::GetObjectPropertyValue(const void* Data) const
{
	return ((const FScriptInterface*)Data)->GetObject();
}

void FInterfaceProperty::SetObjectPropertyValue(void* Data, UObject* Value) const
{
	*(FScriptInterface*)Data = FScriptInterface(Value, Value ? Value->GetInterfaceAddress(InterfaceClass) : nullptr);
}

bool FInterfaceProperty::AcceptsObject(const UObject* Object) const
{
	return !Object || Object->GetClass()->ImplementsInterface(InterfaceClass);
}

void FInterfaceProperty::CollectReferences(void* Data, FReferenceCollector& Collector) const
{
	Collector.HandleReference(((FScriptInterface*)Data)->GetObjectRef());
}

FString FInterfaceProperty::GetTypeText(FString* ExtendedTypeText) const
{
	*ExtendedTypeText = FString::Printf(TEXT("<I%s>"), *InterfaceClass->GetName());
	return TEXT("TScriptInterface");
}
