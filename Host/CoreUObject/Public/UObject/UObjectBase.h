#pragma once

#include "CoreMinimal.h"
#include "UObject/NameTypes.h"
#include "UObject/ObjectMacros.h"

/**
 * The identity of an object: class, name, outer, flags and its place in the object table. Objects are made by NewObject
 * alone, which this constructor insists on, and are freed by the collection. Game thread.
 */
class UObjectBase
{
public:
	virtual ~UObjectBase();
	UObjectBase(const UObjectBase&) = delete;
	UObjectBase& operator=(const UObjectBase&) = delete;

	UClass* GetClass() const { return ClassPrivate; }
	UObject* GetOuter() const { return OuterPrivate; }
	FName GetFName() const { return NamePrivate; }
	EObjectFlags GetFlags() const { return ObjectFlags; }
	/** The object's index in the object table, unique among the living. */
	uint32 GetUniqueID() const { return (uint32)InternalIndex; }

	void SetFlags(EObjectFlags Flags) { ObjectFlags |= Flags; }
	void ClearFlags(EObjectFlags Flags) { ObjectFlags &= ~Flags; }

protected:
	UObjectBase();

private:
	friend class FObjectTable;

	EObjectFlags ObjectFlags;
	int32 InternalIndex = INDEX_NONE;
	UClass* ClassPrivate;
	FName NamePrivate;
	UObject* OuterPrivate;
};
