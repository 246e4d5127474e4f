#pragma once

#include "CoreMinimal.h"
#include "UObject/NameTypes.h"

class UClass;

/** The meta data of a class, function, property or enumeration: texts by key. Game thread. */
class FMetaDataOwner
{
public:
	/** @return null without the key. */
	const FString* FindMetaData(FName Key) const { return Entries.Find(Key); }
	/** @return an empty text without the key. */
	const FString& GetMetaData(FName Key) const;
	bool HasMetaData(FName Key) const { return Entries.Contains(Key); }
	/** A key without a value counts as true. */
	bool GetBoolMetaData(FName Key) const;
	int32 GetIntMetaData(FName Key) const;
	float GetFloatMetaData(FName Key) const;
	/** The class that the value names by path or short name, or null. */
	UClass* GetClassMetaData(FName Key) const;

	void SetMetaData(FName Key, FString Value) { Entries.Add(Key, MoveTemp(Value)); }
	void SetMetaData(FName Key, const TCHAR* Value) { Entries.Add(Key, FString(Value)); }
	void RemoveMetaData(FName Key) { Entries.Remove(Key); }
	const TMap<FName, FString>* GetMetaDataMap() const { return Entries.IsEmpty() ? nullptr : &Entries; }

protected:
	/** The comment, without what `@param` and the like say. */
	FText ToolTipOrName(const FString& Name, bool bShortToolTip) const;
	FText DisplayNameOr(const FString& Name, bool bIsBool) const;

private:
	TMap<FName, FString> Entries;
};
