#pragma once

#include "Containers/Array.h"

/**
 * Looks for a few bytes in many: two of the rarer ones are compared a block at a time, and the rest only where both are
 * in place. Any thread.
 */
class FCVXByteSearch
{
public:
	FCVXByteSearch() = default;
	/** @param bIgnoreCase takes an ASCII letter for the other of its two forms as well. */
	FCVXByteSearch(TArray<uint8> InNeedle, bool bIgnoreCase);

	bool IsEmpty() const { return Needle.IsEmpty(); }

	/** The needle may not be empty. @param From where to begin. @return the first place, or INDEX_NONE. */
	int32 Find(const uint8* Bytes, int32 Size, int32 From) const;

private:
	/** One byte of the needle. A byte of the text has it when the two are equal once Fold is set in both. */
	struct FProbe
	{
		int32 Offset = 0;
		uint8 Byte = 0;
		uint8 Fold = 0;
	};

	FProbe MakeProbe(int32 Offset) const;
	bool MayBeInBlock(const uint8* Block) const;
	bool IsAt(const uint8* Bytes) const;

	/** With Folds set in each byte. */
	TArray<uint8> Needle;
	TArray<uint8> Folds;
	FProbe Rare;
	FProbe SecondRare;
};
