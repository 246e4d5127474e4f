#pragma once

#include "CoreMinimal.h"

class UClass;
class UObject;

/** A package and an object at its top level: `/Game/Things/Chair` and `Chair`. */
struct FTopLevelAssetPath
{
	FTopLevelAssetPath() = default;
	FTopLevelAssetPath(FName InPackageName, FName InAssetName)
		: PackageName(InPackageName)
		, AssetName(InAssetName)
	{
	}
	/** Reads `Package.Object`; anything else gives an invalid path. */
	explicit FTopLevelAssetPath(FStringView Path);

	FName GetPackageName() const { return PackageName; }
	FName GetAssetName() const { return AssetName; }
	bool IsValid() const { return !PackageName.IsNone(); }
	bool IsNull() const { return PackageName.IsNone(); }
	FString ToString() const;

	friend bool operator==(const FTopLevelAssetPath&, const FTopLevelAssetPath&) = default;
	friend uint32 GetTypeHash(const FTopLevelAssetPath& Path)
	{
		return HashCombine(GetTypeHash(Path.PackageName), GetTypeHash(Path.AssetName));
	}

private:
	FName PackageName;
	FName AssetName;
};

/** The path of an object: `/Game/Map.Map:Level.Actor_3`. The object need not be loaded, nor exist. */
struct FSoftObjectPath
{
	FSoftObjectPath() = default;
	FSoftObjectPath(const UObject* Object);
	explicit FSoftObjectPath(const FString& Path) { SetPath(Path); }
	explicit FSoftObjectPath(const TCHAR* Path) { SetPath(Path); }
	FSoftObjectPath(const FTopLevelAssetPath& InAssetPath, FString InSubPath = FString())
		: AssetPath(InAssetPath)
		, SubPath(MoveTemp(InSubPath))
	{
	}

	/** Takes a path, or `Class'Path'`. `None` and the empty text reset. */
	void SetPath(FStringView Path);
	FString ToString() const;
	FString GetAssetPathString() const { return AssetPath.ToString(); }
	FTopLevelAssetPath GetAssetPath() const { return AssetPath; }
	const FString& GetSubPathString() const { return SubPath; }
	FString GetAssetName() const { return AssetPath.GetAssetName().ToString(); }
	FString GetLongPackageName() const { return AssetPath.GetPackageName().ToString(); }
	FName GetLongPackageFName() const { return AssetPath.GetPackageName(); }

	bool IsValid() const { return AssetPath.IsValid(); }
	bool IsNull() const { return !IsValid(); }
	void Reset() { *this = FSoftObjectPath(); }

	/** The object if it is in memory; TryLoad also loads it. Null otherwise. Game thread. */
	UObject* ResolveObject() const;
	UObject* TryLoad() const;

	bool ImportTextItem(const TCHAR*& Buffer, int32 PortFlags, UObject* Parent, class FOutputDevice* ErrorText);
	bool ExportTextItem(FString& ValueStr, const FSoftObjectPath& Default, UObject* Parent, int32 PortFlags,
		UObject* ExportRootScope) const;

	friend bool operator==(const FSoftObjectPath&, const FSoftObjectPath&) = default;
	friend uint32 GetTypeHash(const FSoftObjectPath& Path)
	{
		return HashCombine(GetTypeHash(Path.AssetPath), GetTypeHash(Path.SubPath));
	}

private:
	FTopLevelAssetPath AssetPath;
	FString SubPath;
};

/** The path of a class. */
struct FSoftClassPath : FSoftObjectPath
{
	using FSoftObjectPath::FSoftObjectPath;

	UClass* ResolveClass() const;
	UClass* TryLoadClass() const;
};
