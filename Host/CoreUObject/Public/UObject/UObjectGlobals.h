#pragma once

#include "Templates/Casts.h"
#include "UObject/Package.h"

/** While the collection runs; nothing may make objects then. */
extern bool GIsGarbageCollecting;
/** While a package is written. */
extern bool GIsSavingPackage;

/**
 * Makes an object.
 * @param Outer null for the transient package. @param Class not abstract. @param Name None makes a unique name. An
 * object that has the name in this outer already is renamed and marked as garbage. @param Template gives the starting
 * values; null for the class's defaults.
 */
UObject* StaticConstructObject(UObject* Outer, const UClass* Class, FName Name = NAME_None,
	EObjectFlags Flags = RF_NoFlags, UObject* Template = nullptr);

template <typename T>
T* NewObject(UObject* Outer = nullptr)
{
	return (T*)StaticConstructObject(Outer, T::StaticClass());
}
template <typename T>
T* NewObject(UObject* Outer, FName Name, EObjectFlags Flags = RF_NoFlags, UObject* Template = nullptr)
{
	return (T*)StaticConstructObject(Outer, T::StaticClass(), Name, Flags, Template);
}
/** @param Class T or a child of it. */
template <typename T>
T* NewObject(UObject* Outer, const UClass* Class, FName Name = NAME_None, EObjectFlags Flags = RF_NoFlags,
	UObject* Template = nullptr)
{
	check(Class && Class->IsChildOf(T::StaticClass()));
	return (T*)StaticConstructObject(Outer, Class, Name, Flags, Template);
}

/** A copy with the same property values, parts included. */
UObject* StaticDuplicateObject(const UObject* Source, UObject* Outer, FName Name = NAME_None);
template <typename T>
T* DuplicateObject(const T* Source, UObject* Outer, FName Name = NAME_None)
{
	return (T*)StaticDuplicateObject(Source, Outer, Name);
}

/** The package of this name, made if it isn't there. */
UPackage* CreatePackage(const TCHAR* PackageName);
UPackage* FindPackage(UObject* Outer, const TCHAR* PackageName);

/** A name that no object in the outer has: the base or the class's name, and a number. */
FName MakeUniqueObjectName(UObject* Outer, const UClass* Class, FName BaseName = NAME_None);

/**
 * Finds an object in memory by its path (`/Script/Engine.Actor`), or by a name relative to Outer. Without an outer, a
 * name without a path is that of a package.
 * @param Class null accepts all. @param bExactClass children of Class don't count. @return null without it.
 */
UObject* StaticFindObject(const UClass* Class, UObject* Outer, const TCHAR* Name, bool bExactClass = false);
UObject* StaticFindObject(const UClass* Class, UObject* Outer, const FString& Name, bool bExactClass = false);
/** The object of this name directly in this outer. */
UObject* StaticFindObjectFast(const UClass* Class, UObject* Outer, FName Name, bool bExactClass = false);

enum class EFindFirstObjectOptions : int32
{
	None = 0,
	NativeFirst = 1,
	ExactClass = 2,
	EnsureIfAmbiguous = 4
};
ENUM_CLASS_FLAGS(EFindFirstObjectOptions)

/** Finds an object by name in any outer; of several, the first made. A path works too. */
UObject* StaticFindFirstObject(
	const UClass* Class, const TCHAR* Name, EFindFirstObjectOptions Options = EFindFirstObjectOptions::None);

template <typename T>
T* FindObject(UObject* Outer, const TCHAR* Name, bool bExactClass = false)
{
	return (T*)StaticFindObject(T::StaticClass(), Outer, Name, bExactClass);
}
template <typename T>
T* FindObject(UObject* Outer, const FString& Name, bool bExactClass = false)
{
	return FindObject<T>(Outer, *Name, bExactClass);
}
template <typename T>
T* FindObjectChecked(UObject* Outer, const TCHAR* Name, bool bExactClass = false)
{
	T* Result = FindObject<T>(Outer, Name, bExactClass);
	check(Result);
	return Result;
}
template <typename T>
T* FindFirstObject(const TCHAR* Name, EFindFirstObjectOptions Options = EFindFirstObjectOptions::None)
{
	return (T*)StaticFindFirstObject(T::StaticClass(), Name, Options);
}

/** What brings an object into memory by its path, when it isn't there. */
using FObjectLoader = TFunction<UObject*(const UClass* Class, const FString& Path)>;
/** Asset systems add themselves here; loaders are asked in order until one answers. */
void AddObjectLoader(FName Owner, FObjectLoader Loader);
void RemoveObjectLoader(FName Owner);

/** Finds an object, or loads it. @return null, without a message, if nothing of the class has this path. */
UObject* StaticLoadObject(
	const UClass* Class, UObject* Outer, const TCHAR* Name, const TCHAR* Filename = nullptr, uint32 LoadFlags = 0);
/** A class by path; `/Game/Thing.Thing_C` is loaded with its package. */
UClass* StaticLoadClass(
	const UClass* BaseClass, UObject* Outer, const TCHAR* Name, const TCHAR* Filename = nullptr, uint32 LoadFlags = 0);
template <typename T>
T* LoadObject(UObject* Outer, const TCHAR* Name, const TCHAR* Filename = nullptr, uint32 LoadFlags = 0)
{
	return (T*)StaticLoadObject(T::StaticClass(), Outer, Name, Filename, LoadFlags);
}
template <typename T>
UClass* LoadClass(UObject* Outer, const TCHAR* Name, const TCHAR* Filename = nullptr, uint32 LoadFlags = 0)
{
	return StaticLoadClass(T::StaticClass(), Outer, Name, Filename, LoadFlags);
}

/**
 * Frees every object that nothing holds: what isn't rooted, has none of KeepFlags and isn't reachable from such an
 * object, from a native class or from a strong reference. Objects marked as garbage go in any case, unless rooted.
 */
void CollectGarbage(EObjectFlags KeepFlags, bool bPerformFullPurge = true);

/** Builds the classes that modules have brought since the last call. Look-ups and StaticClass do it by themselves. */
void ProcessNewlyLoadedUObjects();

/**
 * Frees every object, class and field at the end of the process. No object is used afterwards; classes asked for again
 * are built anew.
 */
void ShutdownUObjects();
