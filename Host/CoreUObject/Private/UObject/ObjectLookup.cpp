#include "ObjectTable.h"
#include "UObject/ReflectionTables.h"
#include "UObject/UObjectGlobals.h"

namespace
{
struct FLoaderEntry
{
	FName Owner;
	FObjectLoader Loader;
};

TArray<FLoaderEntry>& Loaders()
{
	static TArray<FLoaderEntry> List;
	return List;
}

bool IsDelimiter(TCHAR Char)
{
	return Char == TEXT('.') || Char == TEXT(':');
}

/** Walks the parts of a path from an outer down. The first part of an absolute path is a package's whole name. */
UObject* WalkPath(const UClass* Class, UObject* Outer, FStringView Path, bool bExactClass)
{
	while (true)
	{
		int32 End = 0;
		while (End < Path.Len() && !IsDelimiter(Path[End]))
		{
			++End;
		}
		const FName Name(Path.Left(End), FNAME_Find);
		if (End == 0 || Name.IsNone())
		{
			return nullptr;
		}
		const bool bLast = End == Path.Len();
		Outer = FObjectTable::Get().Find(bLast ? Class : nullptr, Outer, Name, bLast && bExactClass);
		if (bLast || !Outer)
		{
			return Outer;
		}
		Path.RightChopInline(End + 1);
	}
}

/** What stands in the quotes of `Class'Path'`, else the text itself. */
FStringView WithoutClass(FStringView Path)
{
	int32 Quote = INDEX_NONE;
	if (Path.FindChar(TEXT('\''), Quote) && Path.EndsWith(TEXT('\'')) && Quote < Path.Len() - 1)
	{
		return Path.Mid(Quote + 1).LeftChop(1);
	}
	return Path;
}
} // namespace

UObject* StaticFindObject(const UClass* Class, UObject* Outer, const TCHAR* Name, bool bExactClass)
{
	Reflection::BuildNewTypes();
	const FStringView Path = WithoutClass(FStringView(Name));
	if (Path.IsEmpty() || Path.Len() > NAME_SIZE * 4)
	{
		return nullptr;
	}
	return WalkPath(Class, Path.StartsWith(TEXT('/')) ? nullptr : Outer, Path, bExactClass);
}

UObject* StaticFindObject(const UClass* Class, UObject* Outer, const FString& Name, bool bExactClass)
{
	return StaticFindObject(Class, Outer, *Name, bExactClass);
}

UObject* StaticFindObjectFast(const UClass* Class, UObject* Outer, FName Name, bool bExactClass)
{
	Reflection::BuildNewTypes();
	return Name.IsNone() ? nullptr : FObjectTable::Get().Find(Class, Outer, Name, bExactClass);
}

UObject* StaticFindFirstObject(const UClass* Class, const TCHAR* Name, EFindFirstObjectOptions Options)
{
	const bool bExact = EnumHasAnyFlags(Options, EFindFirstObjectOptions::ExactClass);
	const FStringView Text(Name);
	int32 Unused = 0;
	if (Text.FindChar(TEXT('.'), Unused) || Text.StartsWith(TEXT('/')))
	{
		return StaticFindObject(Class, nullptr, Name, bExact);
	}
	Reflection::BuildNewTypes();
	const FName Found(Text, FNAME_Find);
	return Found.IsNone() ? nullptr : FObjectTable::Get().FindInAnyOuter(Class, Found, bExact);
}

void AddObjectLoader(FName Owner, FObjectLoader Loader)
{
	Loaders().Add(FLoaderEntry{Owner, MoveTemp(Loader)});
}

void RemoveObjectLoader(FName Owner)
{
	Loaders().RemoveAll([Owner](const FLoaderEntry& Each) { return Each.Owner == Owner; });
}

UObject* StaticLoadObject(const UClass* Class, UObject* Outer, const TCHAR* Name, const TCHAR*, uint32)
{
	UObject* Found = StaticFindObject(Class, Outer, Name);
	const FString Path(WithoutClass(FStringView(Name)));
	for (int32 Index = 0; !Found && Path.StartsWith(TEXT("/")) && Index < Loaders().Num(); ++Index)
	{
		Found = Loaders()[Index].Loader(Class, Path);
		Found = Found && (!Class || Found->IsA(Class)) ? Found : nullptr;
	}
	return Found;
}

UClass* StaticLoadClass(
	const UClass* BaseClass, UObject* Outer, const TCHAR* Name, const TCHAR* Filename, uint32 LoadFlags)
{
	UClass* Class = (UClass*)StaticLoadObject(UClass::StaticClass(), Outer, Name, Filename, LoadFlags);
	return Class && (!BaseClass || Class->IsChildOf(BaseClass)) ? Class : nullptr;
}

UPackage* CreatePackage(const TCHAR* PackageName)
{
	UPackage* Package = FindPackage(nullptr, PackageName);
	return Package ? Package : NewObject<UPackage>(nullptr, FName(PackageName), RF_Public);
}

UPackage* FindPackage(UObject*, const TCHAR* PackageName)
{
	return (UPackage*)StaticFindObjectFast(UPackage::StaticClass(), nullptr, FName(PackageName, FNAME_Find));
}

UPackage* GetTransientPackage()
{
	static const FName Name(TEXT("/Engine/Transient"));
	UPackage* Package = (UPackage*)FObjectTable::Get().Find(UPackage::StaticClass(), nullptr, Name, true);
	if (!Package)
	{
		Package = NewObject<UPackage>(nullptr, Name, RF_Transient);
		Package->AddToRoot();
	}
	return Package;
}

UPackage* UPackage::GetTransient()
{
	return GetTransientPackage();
}

void ProcessNewlyLoadedUObjects()
{
	Reflection::BuildNewTypes();
}
