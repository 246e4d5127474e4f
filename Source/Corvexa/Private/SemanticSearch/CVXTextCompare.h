#pragma once

#include "CoreMinimal.h"

/** Comparison of names, which are too short for the call that a comparison of memory takes. Any thread. */
namespace CVXTextCompare
{
/** Whether so many characters are the same, case included. */
inline bool IsSame(const TCHAR* A, const TCHAR* B, int32 Len)
{
	constexpr int32 Step = sizeof(uint64) / sizeof(TCHAR);
	const auto IsSameAt = [&](int32 Index)
	{
		uint64 UnitsA;
		uint64 UnitsB;
		FMemory::Memcpy(&UnitsA, A + Index, sizeof(UnitsA));
		FMemory::Memcpy(&UnitsB, B + Index, sizeof(UnitsB));
		return UnitsA == UnitsB;
	};
	int32 Index = 0;
	for (; Index + Step <= Len; Index += Step)
	{
		if (!IsSameAt(Index))
		{
			return false;
		}
	}
	if (Len >= Step)
	{
		return IsSameAt(Len - Step);
	}
	while (Index < Len && A[Index] == B[Index])
	{
		++Index;
	}
	return Index == Len;
}
} // namespace CVXTextCompare
