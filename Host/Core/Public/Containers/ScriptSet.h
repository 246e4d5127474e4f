#pragma once

#include "Containers/ContainerAllocationPolicies.h"

/** Where the parts of a set's slot lie, so that a set can be worked on without knowing its element type. */
struct FScriptSetLayout
{
	/** Bytes from the slot's start to its link; the element itself is at the start. */
	int32 LinkOffset;
	/** Bytes of one slot. */
	int32 SlotSize;
	int32 Alignment;

	static constexpr FScriptSetLayout For(int32 ElementSize, int32 ElementAlignment)
	{
		const int32 Alignment = ElementAlignment < 4 ? 4 : ElementAlignment;
		const int32 LinkOffset = (ElementSize + 3) & ~3;
		return {LinkOffset, (LinkOffset + 8 + Alignment - 1) & ~(Alignment - 1), Alignment};
	}
};

/**
 * The memory of every set and map: numbered places that keep the order of insertion, with a hash index over them. A
 * freed place is the next to be used. The elements' life and equality are the caller's business; this class moves their
 * bytes only through the function given to it.
 */
class FScriptSet
{
public:
	FScriptSet() = default;
	FScriptSet(const FScriptSet&) = delete;
	FScriptSet& operator=(const FScriptSet&) = delete;
	~FScriptSet();

	/** The number of elements. */
	int32 Num() const { return PlaceCount - FreeCount; }
	/** One above the highest place ever used since the last reset. */
	int32 GetMaxIndex() const { return PlaceCount; }
	bool IsValidIndex(int32 Index, const FScriptSetLayout& Layout) const
	{
		return (uint32)Index < (uint32)PlaceCount && *LinkAt(Index, Layout) >= EndOfChain;
	}
	void* GetData(int32 Index, const FScriptSetLayout& Layout) const
	{
		return Places + (SIZE_T)Index * (SIZE_T)Layout.SlotSize;
	}

	/** Moves Count elements to new memory. Null copies the bytes. */
	using FRelocate = void (*)(void* Dest, void* Source);

	/** Makes room for Count elements in all. */
	void Reserve(int32 Count, const FScriptSetLayout& Layout, FRelocate Relocate);

	/** Takes a place for an element with this hash and links it. The caller constructs the element there. */
	int32 Add(uint32 Hash, const FScriptSetLayout& Layout, FRelocate Relocate);

	/** Unlinks and frees the place. The caller has destroyed the element. */
	void RemoveAt(int32 Index, const FScriptSetLayout& Layout);

	/** The first place whose hash is this one and that EqualsAt accepts, or INDEX_NONE. */
	template <typename EqualsType>
	int32 Find(uint32 Hash, const FScriptSetLayout& Layout, const EqualsType& EqualsAt) const
	{
		if (!Buckets)
		{
			return INDEX_NONE;
		}
		int32 Index = Buckets[Hash & BucketMask];
		while (Index != EndOfChain && !(*HashAt(Index, Layout) == Hash && EqualsAt(Index)))
		{
			Index = *LinkAt(Index, Layout);
		}
		return Index;
	}

	/** Forgets all elements, which the caller has destroyed, and keeps the memory. */
	void Reset();
	/** Forgets all elements, which the caller has destroyed, and frees the memory. */
	void Empty();

	void Swap(FScriptSet& Other);

	uint32 GetHash(int32 Index, const FScriptSetLayout& Layout) const { return *HashAt(Index, Layout); }
	SIZE_T GetAllocatedSize(const FScriptSetLayout& Layout) const;

private:
	/** Links: from 0 on the next place of the chain; -1 its end; -2 a free place at the end of the free list; below -2
	 * a free place whose successor in the free list is -3 minus the link. */
	static constexpr int32 EndOfChain = -1;
	static constexpr int32 LastFree = -2;

	int32* LinkAt(int32 Index, const FScriptSetLayout& Layout) const
	{
		return (int32*)(Places + (SIZE_T)Index * (SIZE_T)Layout.SlotSize + Layout.LinkOffset);
	}
	uint32* HashAt(int32 Index, const FScriptSetLayout& Layout) const { return (uint32*)(LinkAt(Index, Layout) + 1); }
	void Rehash(uint32 BucketCount, const FScriptSetLayout& Layout);
	int32 TakePlace(const FScriptSetLayout& Layout, FRelocate Relocate);

	uint8* Places = nullptr;
	int32* Buckets = nullptr;
	uint32 BucketMask = 0;
	int32 PlaceCount = 0;
	int32 PlaceMax = 0;
	int32 FreeCount = 0;
	int32 FirstFree = INDEX_NONE;
};
