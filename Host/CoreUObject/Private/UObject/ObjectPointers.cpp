#include "ObjectTable.h"
#include "Properties/PropertyText.h"
#include "UObject/SoftObjectPtr.h"
#include "UObject/UObjectGlobals.h"
#include "UObject/WeakObjectPtr.h"

FWeakObjectPtr& FWeakObjectPtr::operator=(const UObject* Object)
{
	ObjectIndex = Object ? (int32)Object->GetUniqueID() : INDEX_NONE;
	ObjectSerialNumber = Object ? FObjectTable::Get().SlotOf(Object).SerialNumber : 0;
	return *this;
}

UObject* FWeakObjectPtr::Get(bool bEvenIfGarbage) const
{
	const FObjectSlot* Slot = FObjectTable::Get().FindSlot(ObjectIndex, ObjectSerialNumber);
	const EInternalObjectFlags Dead = bEvenIfGarbage
		? EInternalObjectFlags::Unreachable
		: EInternalObjectFlags::Unreachable | EInternalObjectFlags::Garbage;
	return Slot && !EnumHasAnyFlags(Slot->Flags, Dead) ? Slot->Object : nullptr;
}

bool operator==(const FWeakObjectPtr& A, const FWeakObjectPtr& B)
{
	const bool bSame = A.ObjectIndex == B.ObjectIndex && A.ObjectSerialNumber == B.ObjectSerialNumber;
	return bSame || (!A.Get() && !B.Get());
}

FTopLevelAssetPath::FTopLevelAssetPath(FStringView Path)
{
	int32 Dot = INDEX_NONE;
	if (!Path.StartsWith(TEXT('/')) || Path.Len() > NAME_SIZE)
	{
		return;
	}
	const bool bHasObject = Path.FindChar(TEXT('.'), Dot);
	PackageName = FName(bHasObject ? Path.Left(Dot) : Path);
	AssetName = bHasObject ? FName(Path.RightChop(Dot + 1)) : FName();
}

FString FTopLevelAssetPath::ToString() const
{
	FString Text = IsNull() ? FString() : PackageName.ToString();
	if (!AssetName.IsNone())
	{
		Text += TEXT('.');
		AssetName.AppendString(Text);
	}
	return Text;
}

FSoftObjectPath::FSoftObjectPath(const UObject* Object)
{
	if (Object)
	{
		SetPath(Object->GetPathName());
	}
}

void FSoftObjectPath::SetPath(FStringView Path)
{
	Reset();
	int32 Quote = INDEX_NONE;
	if (Path.FindChar(TEXT('\''), Quote) && Path.EndsWith(TEXT('\'')) && Quote < Path.Len() - 1)
	{
		Path = Path.Mid(Quote + 1).LeftChop(1);
	}
	int32 Colon = INDEX_NONE;
	const bool bHasSubPath = Path.FindChar(TEXT(':'), Colon);
	AssetPath = FTopLevelAssetPath(bHasSubPath ? Path.Left(Colon) : Path);
	SubPath = bHasSubPath && AssetPath.IsValid() ? FString(Path.RightChop(Colon + 1)) : FString();
}

FString FSoftObjectPath::ToString() const
{
	FString Text = AssetPath.ToString();
	if (!SubPath.IsEmpty())
	{
		Text += TEXT(':');
		Text += SubPath;
	}
	return Text;
}

UObject* FSoftObjectPath::ResolveObject() const
{
	return IsNull() ? nullptr : StaticFindObject(nullptr, nullptr, ToString());
}

UObject* FSoftObjectPath::TryLoad() const
{
	return IsNull() ? nullptr : StaticLoadObject(nullptr, nullptr, *ToString());
}

bool FSoftObjectPath::ImportTextItem(const TCHAR*& Buffer, int32, UObject*, FOutputDevice*)
{
	FString Text;
	const TCHAR* Behind = *Buffer == TEXT('(') ? nullptr : PropertyText::ReadQuotedOrBare(Buffer, Text);
	if (!Behind)
	{
		return false;
	}
	SetPath(Text);
	Buffer = Behind;
	return true;
}

bool FSoftObjectPath::ExportTextItem(
	FString& ValueStr, const FSoftObjectPath&, UObject*, int32 PortFlags, UObject*) const
{
	if (IsNull())
	{
		ValueStr += TEXT("None");
	}
	else if (PortFlags & PPF_Delimited)
	{
		PropertyText::AppendQuoted(ValueStr, ToString());
	}
	else
	{
		ValueStr += ToString();
	}
	return true;
}

UClass* FSoftClassPath::ResolveClass() const
{
	return Cast<UClass>(ResolveObject());
}

UClass* FSoftClassPath::TryLoadClass() const
{
	return Cast<UClass>(TryLoad());
}

UObject* FSoftObjectPtr::Get() const
{
	UObject* Object = Cached.Get();
	if (!Object && !Path.IsNull())
	{
		Object = Path.ResolveObject();
		Cached = Object;
	}
	return Object;
}

UObject* FSoftObjectPtr::LoadSynchronous() const
{
	UObject* Object = Get();
	return Object ? Object : Path.TryLoad();
}
