#include "ObjectTable.h"

FObjectTable& FObjectTable::Get()
{
	// Never freed: statics of other files may hold objects until the very end.
	static FObjectTable& Table = *new FObjectTable();
	return Table;
}

uint32 FObjectTable::HashOfName(const UObjectBase* Object)
{
	return GetTypeHash(Object->GetFName());
}

uint32 FObjectTable::HashOfOuterAndName(const UObjectBase* Object)
{
	return HashCombine(GetTypeHash(Object->GetFName()), GetTypeHash((const void*)Object->GetOuter()));
}

void FObjectTable::Add(UObjectBase* Base)
{
	const int32 Index = FreeSlots.IsEmpty() ? Slots.AddDefaulted() : FreeSlots.Pop();
	FObjectSlot& Slot = Slots[Index];
	Slot = FObjectSlot();
	Slot.Object = (UObject*)(void*)Base;
	Slot.SerialNumber = ++LastSerialNumber;
	Base->InternalIndex = Index;
	ByName.Insert(Slots, Index);
	ByOuterAndName.Insert(Slots, Index);
	LinkOuter(Index, Base->OuterPrivate);
	LinkClass(Index, Base->ClassPrivate);
}

void FObjectTable::Remove(UObjectBase* Base)
{
	const int32 Index = Base->InternalIndex;
	check(Slots[Index].bDetached);
	Slots[Index] = FObjectSlot();
	FreeSlots.Push(Index);
	if (FreeSlots.Num() == Slots.Num())
	{
		Slots.Empty();
		FreeSlots.Empty();
		ByName.Reset();
		ByOuterAndName.Reset();
	}
}

void FObjectTable::ChangeIdentity(UObject* Object, FName NewName, UObject* NewOuter)
{
	const int32 Index = Object->InternalIndex;
	ByName.Remove(Slots, Index);
	ByOuterAndName.Remove(Slots, Index);
	if (NewOuter != Object->OuterPrivate)
	{
		UnlinkOuter(Index, Object->OuterPrivate);
		LinkOuter(Index, NewOuter);
		Object->OuterPrivate = NewOuter;
	}
	Object->NamePrivate = NewName;
	ByName.Insert(Slots, Index);
	ByOuterAndName.Insert(Slots, Index);
}

void FObjectTable::ChangeClass(UObject* Object, UClass* NewClass)
{
	UnlinkClass(Object->InternalIndex, Object->ClassPrivate);
	Object->ClassPrivate = NewClass;
	LinkClass(Object->InternalIndex, NewClass);
}

void FObjectTable::LinkOuter(int32 Index, UObject* Outer)
{
	if (!Outer)
	{
		return;
	}
	FObjectSlot& Parent = SlotOf(Outer);
	Slots[Index].InOuter = FSlotLink{INDEX_NONE, Parent.LastInner};
	(Parent.LastInner == INDEX_NONE ? Parent.FirstInner : Slots[Parent.LastInner].InOuter.Next) = Index;
	Parent.LastInner = Index;
}

void FObjectTable::UnlinkOuter(int32 Index, UObject* Outer)
{
	if (!Outer)
	{
		return;
	}
	FObjectSlot& Parent = SlotOf(Outer);
	const FSlotLink Own = Slots[Index].InOuter;
	(Own.Previous == INDEX_NONE ? Parent.FirstInner : Slots[Own.Previous].InOuter.Next) = Own.Next;
	(Own.Next == INDEX_NONE ? Parent.LastInner : Slots[Own.Next].InOuter.Previous) = Own.Previous;
	Slots[Index].InOuter = FSlotLink();
}

void FObjectTable::LinkClass(int32 Index, UClass* Class)
{
	if (!Class)
	{
		return;
	}
	Slots[Index].InClass = FSlotLink{INDEX_NONE, Class->LastInstance};
	(Class->LastInstance == INDEX_NONE ? Class->FirstInstance : Slots[Class->LastInstance].InClass.Next) = Index;
	Class->LastInstance = Index;
}

void FObjectTable::UnlinkClass(int32 Index, UClass* Class)
{
	if (!Class)
	{
		return;
	}
	const FSlotLink Own = Slots[Index].InClass;
	(Own.Previous == INDEX_NONE ? Class->FirstInstance : Slots[Own.Previous].InClass.Next) = Own.Next;
	(Own.Next == INDEX_NONE ? Class->LastInstance : Slots[Own.Next].InClass.Previous) = Own.Previous;
	Slots[Index].InClass = FSlotLink();
}

bool FObjectTable::Matches(const UObject* Object, const UClass* Class, FName Name, bool bExactClass)
{
	return Object->GetFName() == Name && (!Class || (bExactClass ? Object->GetClass() == Class : Object->IsA(Class)));
}

UObject* FObjectTable::Find(const UClass* Class, const UObject* Outer, FName Name, bool bExactClass)
{
	const uint32 Hash = HashCombine(GetTypeHash(Name), GetTypeHash((const void*)Outer));
	for (int32 Index = ByOuterAndName.First(Hash); Index != INDEX_NONE; Index = Slots[Index].InOuterAndName.Next)
	{
		UObject* Object = Slots[Index].Object;
		if (Object->GetOuter() == Outer && Matches(Object, Class, Name, bExactClass) && IsValid(Object))
		{
			return Object;
		}
	}
	return nullptr;
}

UObject* FObjectTable::FindInAnyOuter(const UClass* Class, FName Name, bool bExactClass)
{
	const FObjectSlot* Best = nullptr;
	for (int32 Index = ByName.First(GetTypeHash(Name)); Index != INDEX_NONE; Index = Slots[Index].InName.Next)
	{
		const FObjectSlot& Slot = Slots[Index];
		const bool bEarlier = !Best || Slot.SerialNumber < Best->SerialNumber;
		if (bEarlier && Matches(Slot.Object, Class, Name, bExactClass) && IsValid(Slot.Object))
		{
			Best = &Slot;
		}
	}
	return Best ? Best->Object : nullptr;
}

void FObjectTable::Detach(UObject* Object)
{
	const int32 Index = Object->InternalIndex;
	UnlinkClass(Index, Object->ClassPrivate);
	UnlinkOuter(Index, Object->OuterPrivate);
	ByOuterAndName.Remove(Slots, Index);
	ByName.Remove(Slots, Index);
	Slots[Index].bDetached = true;
}

void FObjectTable::Destroy(UObject* Object, bool bMayHaveScriptProperties)
{
	if (bMayHaveScriptProperties)
	{
		Object->GetClass()->DestroyScriptProperties(Object);
	}
	Object->~UObject();
	FMemory::Free(Object);
}
