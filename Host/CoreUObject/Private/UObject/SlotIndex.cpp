#include "ObjectTable.h"

void FSlotIndex::Link_Front(TArray<FObjectSlot>& Slots, int32 Index)
{
	int32& Head = Heads[(int32)(Hash(Slots[Index].Object) & Mask())];
	Slots[Index].*Link = FSlotLink{Head, INDEX_NONE};
	if (Head != INDEX_NONE)
	{
		(Slots[Head].*Link).Previous = Index;
	}
	Head = Index;
}

void FSlotIndex::Grow(TArray<FObjectSlot>& Slots)
{
	TArray<int32> OldHeads = MoveTemp(Heads);
	const int32 NewCount = OldHeads.IsEmpty() ? 1024 : OldHeads.Num() * 2;
	Heads.Init(INDEX_NONE, NewCount);
	for (int32 Index : OldHeads)
	{
		while (Index != INDEX_NONE)
		{
			const int32 Next = (Slots[Index].*Link).Next;
			Link_Front(Slots, Index);
			Index = Next;
		}
	}
}

void FSlotIndex::Insert(TArray<FObjectSlot>& Slots, int32 Index)
{
	if (Count >= Heads.Num())
	{
		Grow(Slots);
	}
	Link_Front(Slots, Index);
	++Count;
}

void FSlotIndex::Remove(TArray<FObjectSlot>& Slots, int32 Index)
{
	FSlotLink& Own = Slots[Index].*Link;
	int32& Before = Own.Previous == INDEX_NONE ? Heads[(int32)(Hash(Slots[Index].Object) & Mask())]
											   : (Slots[Own.Previous].*Link).Next;
	Before = Own.Next;
	if (Own.Next != INDEX_NONE)
	{
		(Slots[Own.Next].*Link).Previous = Own.Previous;
	}
	Own = FSlotLink();
	--Count;
}

void FSlotIndex::Reset()
{
	Heads.Empty();
	Count = 0;
}
