#pragma once

#include "HAL/Platform.h"

#include <cstring>

/** Raw memory. Exhaustion aborts the process; a request never returns null unless it asks for 0 bytes. Any thread. */
struct FMemory
{
	/** @param Count bytes; @param Alignment power of two, 0 for the default of 16. */
	static void* Malloc(SIZE_T Count, uint32 Alignment = 0);

	/** Resizes a block from Malloc with the same alignment; a null Original allocates, a Count of 0 frees. */
	static void* Realloc(void* Original, SIZE_T Count, uint32 Alignment = 0);

	/** Frees a block from Malloc or Realloc; null is allowed. */
	static void Free(void* Original);

	static void* Memcpy(void* Dest, const void* Src, SIZE_T Count)
	{
		return Count ? std::memcpy(Dest, Src, Count) : Dest;
	}
	static void* Memmove(void* Dest, const void* Src, SIZE_T Count)
	{
		return Count ? std::memmove(Dest, Src, Count) : Dest;
	}
	static int32 Memcmp(const void* A, const void* B, SIZE_T Count) { return Count ? std::memcmp(A, B, Count) : 0; }
	static void* Memset(void* Dest, uint8 Value, SIZE_T Count)
	{
		return Count ? std::memset(Dest, Value, Count) : Dest;
	}
	static void* Memzero(void* Dest, SIZE_T Count) { return Memset(Dest, 0, Count); }

	template <typename T>
	static void Memzero(T& Dest)
	{
		Memzero(&Dest, sizeof(T));
	}
};
