#include "UObject/UObjectHash.h"

#include "ObjectTable.h"
#include "UObject/ReflectionTables.h"
#include "UObject/UObjectArray.h"
#include "UObject/WeakObjectPtr.h"

namespace
{
void AddInstances(const UClass* Class, TArray<UObject*>& Results, EObjectFlags ExclusionFlags,
	EInternalObjectFlags ExclusionInternalFlags)
{
	const TArray<FObjectSlot>& Slots = FObjectTable::Get().GetSlots();
	const EInternalObjectFlags Excluded = ExclusionInternalFlags | EInternalObjectFlags::Garbage;
	for (int32 Index = FObjectTable::Get().FirstInstance(Class); Index != INDEX_NONE; Index = Slots[Index].InClass.Next)
	{
		const FObjectSlot& Slot = Slots[Index];
		if (!Slot.Object->HasAnyFlags(ExclusionFlags) && !EnumHasAnyFlags(Slot.Flags, Excluded))
		{
			Results.Add(Slot.Object);
		}
	}
}

void AddInners(const UObject* Outer, TArray<UObject*>& Results, bool bNested, EObjectFlags ExclusionFlags)
{
	FObjectTable& Table = FObjectTable::Get();
	for (int32 Index = Table.SlotOf(Outer).FirstInner; Index != INDEX_NONE;
		 Index = Table.GetSlots()[Index].InOuter.Next)
	{
		const FObjectSlot& Slot = Table.GetSlots()[Index];
		if (!Slot.Object->HasAnyFlags(ExclusionFlags) && !EnumHasAnyFlags(Slot.Flags, EInternalObjectFlags::Garbage))
		{
			Results.Add(Slot.Object);
		}
		if (bNested)
		{
			AddInners(Slot.Object, Results, true, ExclusionFlags);
		}
	}
}
} // namespace

void GetObjectsOfClass(const UClass* ClassToLookFor, TArray<UObject*>& Results, bool bIncludeDerivedClasses,
	EObjectFlags ExclusionFlags, EInternalObjectFlags ExclusionInternalFlags)
{
	Reflection::BuildNewTypes();
	AddInstances(ClassToLookFor, Results, ExclusionFlags, ExclusionInternalFlags);
	TArray<UClass*> Derived;
	if (bIncludeDerivedClasses)
	{
		GetDerivedClasses(ClassToLookFor, Derived);
	}
	for (const UClass* Class : Derived)
	{
		AddInstances(Class, Results, ExclusionFlags, ExclusionInternalFlags);
	}
}

void ForEachObjectOfClass(const UClass* ClassToLookFor, TFunctionRef<void(UObject*)> Operation,
	bool bIncludeDerivedClasses, EObjectFlags ExclusionFlags)
{
	TArray<UObject*> Objects;
	GetObjectsOfClass(ClassToLookFor, Objects, bIncludeDerivedClasses, ExclusionFlags);
	TArray<FWeakObjectPtr> Pointers;
	for (UObject* Object : Objects)
	{
		Pointers.Add(FWeakObjectPtr(Object));
	}
	for (const FWeakObjectPtr& Pointer : Pointers)
	{
		if (UObject* Object = Pointer.Get())
		{
			Operation(Object);
		}
	}
}

void GetDerivedClasses(const UClass* ClassToLookFor, TArray<UClass*>& Results, bool bRecursive)
{
	Reflection::BuildNewTypes();
	for (UClass* Child : ClassToLookFor->GetDirectChildren())
	{
		Results.Add(Child);
		if (bRecursive)
		{
			GetDerivedClasses(Child, Results, true);
		}
	}
}

void GetObjectsWithOuter(
	const UObject* Outer, TArray<UObject*>& Results, bool bIncludeNestedObjects, EObjectFlags ExclusionFlags)
{
	AddInners(Outer, Results, bIncludeNestedObjects, ExclusionFlags);
}

void ForEachObjectWithOuter(const UObject* Outer, TFunctionRef<void(UObject*)> Operation, bool bIncludeNestedObjects,
	EObjectFlags ExclusionFlags)
{
	TArray<UObject*> Objects;
	AddInners(Outer, Objects, bIncludeNestedObjects, ExclusionFlags);
	for (UObject* Object : Objects)
	{
		Operation(Object);
	}
}

int32 UObjectArray::GetObjectCount()
{
	return FObjectTable::Get().NumObjects();
}

bool UObjectArray::IsObject(const void* Address)
{
	return FObjectTable::Get().GetSlots().ContainsByPredicate(
		[Address](const FObjectSlot& Slot) { return Address && Slot.Object == Address; });
}
