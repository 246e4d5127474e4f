#include "Containers/ScriptSet.h"

#include <algorithm>
#include <bit>

FScriptSet::~FScriptSet()
{
	Empty();
}

void FScriptSet::Reserve(int32 Count, const FScriptSetLayout& Layout, FRelocate Relocate)
{
	if (Count <= PlaceMax)
	{
		return;
	}
	const SIZE_T Bytes = (SIZE_T)Count * (SIZE_T)Layout.SlotSize;
	if (!Relocate)
	{
		Places = (uint8*)FMemory::Realloc(Places, Bytes, (uint32)Layout.Alignment);
	}
	else
	{
		uint8* NewPlaces = (uint8*)FMemory::Malloc(Bytes, (uint32)Layout.Alignment);
		uint8* OldPlaces = Exchange(Places, NewPlaces);
		for (int32 Index = 0; Index < PlaceCount; ++Index)
		{
			uint8* Source = OldPlaces + (SIZE_T)Index * (SIZE_T)Layout.SlotSize;
			FMemory::Memcpy(LinkAt(Index, Layout), Source + Layout.LinkOffset, 2 * sizeof(int32));
			if (IsValidIndex(Index, Layout))
			{
				Relocate(GetData(Index, Layout), Source);
			}
		}
		FMemory::Free(OldPlaces);
	}
	PlaceMax = Count;
	if (!Buckets || (uint32)Count > BucketMask + 1)
	{
		Rehash(std::bit_ceil((uint32)std::max(Count, 4)), Layout);
	}
}

void FScriptSet::Rehash(uint32 BucketCount, const FScriptSetLayout& Layout)
{
	FMemory::Free(Buckets);
	Buckets = (int32*)FMemory::Malloc(BucketCount * sizeof(int32));
	std::fill_n(Buckets, BucketCount, EndOfChain);
	BucketMask = BucketCount - 1;
	for (int32 Index = 0; Index < PlaceCount; ++Index)
	{
		if (IsValidIndex(Index, Layout))
		{
			int32& Bucket = Buckets[*HashAt(Index, Layout) & BucketMask];
			*LinkAt(Index, Layout) = Exchange(Bucket, Index);
		}
	}
}

int32 FScriptSet::TakePlace(const FScriptSetLayout& Layout, FRelocate Relocate)
{
	if (FreeCount > 0)
	{
		const int32 Index = FirstFree;
		const int32 Link = *LinkAt(Index, Layout);
		FirstFree = Link == LastFree ? INDEX_NONE : -3 - Link;
		--FreeCount;
		return Index;
	}
	if (PlaceCount == PlaceMax)
	{
		Reserve(CalculateSlackGrow(PlaceCount + 1, PlaceMax), Layout, Relocate);
	}
	return PlaceCount++;
}

int32 FScriptSet::Add(uint32 Hash, const FScriptSetLayout& Layout, FRelocate Relocate)
{
	const int32 Index = TakePlace(Layout, Relocate);
	int32& Bucket = Buckets[Hash & BucketMask];
	*HashAt(Index, Layout) = Hash;
	*LinkAt(Index, Layout) = Exchange(Bucket, Index);
	return Index;
}

void FScriptSet::RemoveAt(int32 Index, const FScriptSetLayout& Layout)
{
	check(IsValidIndex(Index, Layout));
	int32* Link = &Buckets[*HashAt(Index, Layout) & BucketMask];
	while (*Link != Index)
	{
		Link = LinkAt(*Link, Layout);
	}
	*Link = *LinkAt(Index, Layout);
	*LinkAt(Index, Layout) = FreeCount > 0 ? -3 - FirstFree : LastFree;
	FirstFree = Index;
	++FreeCount;
}

void FScriptSet::Reset()
{
	if (Buckets)
	{
		std::fill_n(Buckets, BucketMask + 1, EndOfChain);
	}
	PlaceCount = 0;
	FreeCount = 0;
	FirstFree = INDEX_NONE;
}

void FScriptSet::Empty()
{
	FMemory::Free(Exchange(Places, nullptr));
	FMemory::Free(Exchange(Buckets, nullptr));
	BucketMask = 0;
	PlaceMax = 0;
	Reset();
}

void FScriptSet::Swap(FScriptSet& Other)
{
	std::swap(Places, Other.Places);
	std::swap(Buckets, Other.Buckets);
	std::swap(BucketMask, Other.BucketMask);
	std::swap(PlaceCount, Other.PlaceCount);
	std::swap(PlaceMax, Other.PlaceMax);
	std::swap(FreeCount, Other.FreeCount);
	std::swap(FirstFree, Other.FirstFree);
}

SIZE_T FScriptSet::GetAllocatedSize(const FScriptSetLayout& Layout) const
{
	return (SIZE_T)PlaceMax * (SIZE_T)Layout.SlotSize + (Buckets ? (SIZE_T)(BucketMask + 1) * sizeof(int32) : 0);
}
