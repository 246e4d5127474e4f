#pragma once

#include "UObject/Class.h"

/** Neighbours in a list of table places. */
struct FSlotLink
{
	int32 Next = INDEX_NONE;
	int32 Previous = INDEX_NONE;
};

/** One place of the object table. */
struct FObjectSlot
{
	UObject* Object = nullptr;
	/** Never given twice, so that it tells an object from its place's earlier owners. */
	int32 SerialNumber = 0;
	EInternalObjectFlags Flags = EInternalObjectFlags::None;
	FSlotLink InName;
	FSlotLink InOuterAndName;
	FSlotLink InOuter;
	FSlotLink InClass;
	int32 FirstInner = INDEX_NONE;
	int32 LastInner = INDEX_NONE;
	bool bDetached = false;
};

/** A hash index over table places, as chains through their links. */
class FSlotIndex
{
public:
	using FLinkMember = FSlotLink FObjectSlot::*;
	using FHashFunction = uint32 (*)(const UObjectBase* Object);

	FSlotIndex(FLinkMember InLink, FHashFunction InHash)
		: Link(InLink)
		, Hash(InHash)
	{
	}
	void Insert(TArray<FObjectSlot>& Slots, int32 Index);
	void Remove(TArray<FObjectSlot>& Slots, int32 Index);
	int32 First(uint32 HashValue) const { return Heads.IsEmpty() ? INDEX_NONE : Heads[(int32)(HashValue & Mask())]; }
	void Reset();

private:
	uint32 Mask() const { return (uint32)Heads.Num() - 1; }
	void Grow(TArray<FObjectSlot>& Slots);
	void Link_Front(TArray<FObjectSlot>& Slots, int32 Index);

	FLinkMember Link;
	FHashFunction Hash;
	TArray<int32> Heads;
	int32 Count = 0;
};

/** All objects, with their indexes by name, by outer and by class. Game thread. */
class FObjectTable
{
public:
	static FObjectTable& Get();

	/** Enters an object under construction, which takes its identity from its initializer. */
	void Add(UObjectBase* Base);
	void Remove(UObjectBase* Base);
	void ChangeIdentity(UObject* Object, FName NewName, UObject* NewOuter);
	/** Sets the class of an object that was made before its class. */
	void ChangeClass(UObject* Object, UClass* NewClass);

	FObjectSlot& SlotOf(const UObjectBase* Object) { return Slots[Object->InternalIndex]; }
	FObjectSlot* FindSlot(int32 Index, int32 SerialNumber)
	{
		FObjectSlot* Slot = Slots.IsValidIndex(Index) ? &Slots[Index] : nullptr;
		return Slot && Slot->Object && Slot->SerialNumber == SerialNumber ? Slot : nullptr;
	}
	TArray<FObjectSlot>& GetSlots() { return Slots; }
	int32 NumObjects() const { return Slots.Num() - FreeSlots.Num(); }

	UObject* Find(const UClass* Class, const UObject* Outer, FName Name, bool bExactClass);
	/** Of several in different outers, the one made first. */
	UObject* FindInAnyOuter(const UClass* Class, FName Name, bool bExactClass);

	int32 FirstInstance(const UClass* Class) const { return Class->FirstInstance; }

	/** Takes an object that is about to die out of all lists, while its class and outer still exist. */
	void Detach(UObject* Object);
	/** Ends an object's life. @param bMayHaveScriptProperties whether its class still exists and may have added values.
	 */
	static void Destroy(UObject* Object, bool bMayHaveScriptProperties);

private:
	void LinkOuter(int32 Index, UObject* Outer);
	void UnlinkOuter(int32 Index, UObject* Outer);
	void LinkClass(int32 Index, UClass* Class);
	void UnlinkClass(int32 Index, UClass* Class);
	static bool Matches(const UObject* Object, const UClass* Class, FName Name, bool bExactClass);
	static uint32 HashOfName(const UObjectBase* Object);
	static uint32 HashOfOuterAndName(const UObjectBase* Object);

	TArray<FObjectSlot> Slots;
	TArray<int32> FreeSlots;
	int32 LastSerialNumber = 0;
	FSlotIndex ByName{&FObjectSlot::InName, &HashOfName};
	FSlotIndex ByOuterAndName{&FObjectSlot::InOuterAndName, &HashOfOuterAndName};
};
