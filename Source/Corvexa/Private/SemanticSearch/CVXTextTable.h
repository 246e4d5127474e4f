#pragma once

#include "CoreMinimal.h"

/** Texts, each kept once and numbered from 0 in the order in which they came. Case counts. One thread at a time. */
class FCVXTextTable
{
public:
	int32 Num() const { return Entries.Num(); }

	/** The text's number, or INDEX_NONE. */
	int32 Find(FStringView Text) const;
	/** The text's number, a new one if it wasn't there. */
	int32 FindOrAdd(FStringView Text);
	/** Good until the next addition. */
	FStringView GetText(int32 Id) const { return FStringView(Chars.GetData() + Entries[Id].Start, Entries[Id].Len); }

private:
	struct FEntry
	{
		int32 Start = 0;
		int32 Len = 0;
	};
	/** Has all that a look-up compares, so that it reads one place beside the text itself. */
	struct FSlot
	{
		uint32 Hash = 0;
		/** INDEX_NONE in a free slot. */
		int32 Id = INDEX_NONE;
		FEntry Entry = {};
	};

	bool Holds(const FSlot& Slot, FStringView Text, uint32 Hash) const;
	/** The slot of the text, or the free one where it belongs. There are slots. */
	const FSlot& FindSlot(FStringView Text, uint32 Hash) const;
	void Grow();

	TArray<TCHAR> Chars;
	TArray<FEntry> Entries;
	/** A power of two of them, or none; a text lies at the first that was free from the one that its hash names. */
	TArray<FSlot> Slots;
};
