#include "SemanticSearch/CVXTextTable.h"

#include "SemanticSearch/CVXTextCompare.h"

namespace
{
uint32 HashOf(FStringView Text)
{
	return StringSearch::HashCaseSensitive(Text.GetData(), Text.Len());
}
} // namespace

int32 FCVXTextTable::Find(FStringView Text) const
{
	return Slots.IsEmpty() ? INDEX_NONE : FindSlot(Text, HashOf(Text)).Id;
}

int32 FCVXTextTable::FindOrAdd(FStringView Text)
{
	// Half of the slots stay free, so that a look-up is mostly one step.
	if (Entries.Num() * 2 >= Slots.Num())
	{
		Grow();
	}
	const uint32 Hash = HashOf(Text);
	FSlot& Slot = const_cast<FSlot&>(FindSlot(Text, Hash));
	if (Slot.Id == INDEX_NONE)
	{
		const FEntry Entry = {Chars.Num(), Text.Len()};
		Slot = {Hash, Entries.Add(Entry), Entry};
		Chars.Append(Text.GetData(), Text.Len());
	}
	return Slot.Id;
}

const FCVXTextTable::FSlot& FCVXTextTable::FindSlot(FStringView Text, uint32 Hash) const
{
	const FSlot* const Data = Slots.GetData();
	const uint32 Mask = (uint32)Slots.Num() - 1;
	for (uint32 Index = Hash & Mask;; Index = (Index + 1) & Mask)
	{
		const FSlot& Slot = Data[Index];
		if (Slot.Id == INDEX_NONE || Holds(Slot, Text, Hash))
		{
			return Slot;
		}
	}
}

bool FCVXTextTable::Holds(const FSlot& Slot, FStringView Text, uint32 Hash) const
{
	return Slot.Hash == Hash && Slot.Entry.Len == Text.Len() &&
		CVXTextCompare::IsSame(Chars.GetData() + Slot.Entry.Start, Text.GetData(), Text.Len());
}

void FCVXTextTable::Grow()
{
	constexpr int32 FirstSlots = 1024;
	TArray<FSlot> Old = MoveTemp(Slots);
	Slots.Init(FSlot(), FMath::Max(FirstSlots, Old.Num() * 2));
	const uint32 Mask = (uint32)Slots.Num() - 1;
	for (const FSlot& Slot : Old)
	{
		if (Slot.Id != INDEX_NONE)
		{
			uint32 Index = Slot.Hash & Mask;
			while (Slots[(int32)Index].Id != INDEX_NONE)
			{
				Index = (Index + 1) & Mask;
			}
			Slots[(int32)Index] = Slot;
		}
	}
}
