#include "HAL/UnrealMemory.h"

#include "Misc/AssertionMacros.h"

#include <cstdlib>
#include <malloc.h>

namespace
{
constexpr SIZE_T NaturalAlignment = 16;
}

void* FMemory::Malloc(SIZE_T Count, uint32 Alignment)
{
	if (Count == 0)
	{
		return nullptr;
	}
	void* Result = Alignment <= NaturalAlignment ? std::malloc(Count) : nullptr;
	if (Alignment > NaturalAlignment && posix_memalign(&Result, Alignment, Count) != 0)
	{
		Result = nullptr;
	}
	check(Result != nullptr);
	return Result;
}

void* FMemory::Realloc(void* Original, SIZE_T Count, uint32 Alignment)
{
	if (Count == 0)
	{
		Free(Original);
		return nullptr;
	}
	if (Alignment <= NaturalAlignment)
	{
		void* Result = std::realloc(Original, Count);
		check(Result != nullptr);
		return Result;
	}
	void* Result = Malloc(Count, Alignment);
	if (Original)
	{
		const SIZE_T OldCount = malloc_usable_size(Original);
		Memcpy(Result, Original, OldCount < Count ? OldCount : Count);
		Free(Original);
	}
	return Result;
}

void FMemory::Free(void* Original)
{
	std::free(Original);
}
