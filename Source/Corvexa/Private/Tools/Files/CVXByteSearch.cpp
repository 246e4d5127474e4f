#include "Tools/Files/CVXByteSearch.h"

namespace
{
constexpr int32 BlockBytes = 64;
constexpr uint8 CaseBit = 0x20;

bool IsLetter(uint8 Byte)
{
	return (uint8)((Byte | CaseBit) - 'a') < 26;
}

/** How common a byte is in source text: 0 for those that hardly occur. */
int32 Commonness(uint8 Byte)
{
	static constexpr char CommonFirst[] = " etaonrisldcpumfg_hbyvx(),;.*-=kw01/\":#2<>jqz{}\t&'!+[]345678|9";
	const uint8 Lower = IsLetter(Byte) ? Byte | CaseBit : Byte;
	for (int32 Index = 0; CommonFirst[Index] != 0; ++Index)
	{
		if ((uint8)CommonFirst[Index] == Lower)
		{
			return (int32)sizeof(CommonFirst) - Index;
		}
	}
	return 0;
}

/** The offset of the least common byte other than the one at Except; Except if there is no other. */
int32 FindRarest(const TArray<uint8>& Needle, int32 Except)
{
	int32 Best = Except;
	int32 BestRank = MAX_int32;
	for (int32 Index = 0; Index < Needle.Num(); ++Index)
	{
		const int32 Rank = Commonness(Needle[Index]);
		if (Index != Except && Rank < BestRank)
		{
			Best = Index;
			BestRank = Rank;
		}
	}
	return Best;
}
} // namespace

FCVXByteSearch::FCVXByteSearch(TArray<uint8> InNeedle, bool bIgnoreCase)
	: Needle(MoveTemp(InNeedle))
{
	Folds.Reserve(Needle.Num());
	for (uint8& Byte : Needle)
	{
		const uint8 Fold = bIgnoreCase && IsLetter(Byte) ? CaseBit : 0;
		Byte |= Fold;
		Folds.Add(Fold);
	}
	if (!Needle.IsEmpty())
	{
		Rare = MakeProbe(FindRarest(Needle, INDEX_NONE));
		SecondRare = MakeProbe(FindRarest(Needle, Rare.Offset));
	}
}

FCVXByteSearch::FProbe FCVXByteSearch::MakeProbe(int32 Offset) const
{
	return FProbe{Offset, Needle[Offset], Folds[Offset]};
}

int32 FCVXByteSearch::Find(const uint8* Bytes, int32 Size, int32 From) const
{
	const int32 Last = Size - Needle.Num();
	int32 At = From;
	while (At <= Last)
	{
		const bool bWholeBlock = Last - At >= BlockBytes - 1;
		const int32 End = bWholeBlock ? At + BlockBytes : Last + 1;
		if (bWholeBlock && !MayBeInBlock(Bytes + At))
		{
			At = End;
			continue;
		}
		for (; At < End; ++At)
		{
			if ((Bytes[At + Rare.Offset] | Rare.Fold) == Rare.Byte && IsAt(Bytes + At))
			{
				return At;
			}
		}
	}
	return INDEX_NONE;
}

/** Has no branch in its loop, so that compilers make vector instructions of it. */
bool FCVXByteSearch::MayBeInBlock(const uint8* Block) const
{
	const uint8* First = Block + Rare.Offset;
	const uint8* Second = Block + SecondRare.Offset;
	const uint8 FirstByte = Rare.Byte;
	const uint8 FirstFold = Rare.Fold;
	const uint8 SecondByte = SecondRare.Byte;
	const uint8 SecondFold = SecondRare.Fold;
	uint8 Any = 0;
	for (int32 Index = 0; Index < BlockBytes; ++Index)
	{
		const uint8 bFirst = (uint8)(First[Index] | FirstFold) == FirstByte ? 0xFF : 0;
		const uint8 bSecond = (uint8)(Second[Index] | SecondFold) == SecondByte ? 0xFF : 0;
		Any |= bFirst & bSecond;
	}
	return Any != 0;
}

bool FCVXByteSearch::IsAt(const uint8* Bytes) const
{
	for (int32 Index = 0; Index < Needle.Num(); ++Index)
	{
		if ((Bytes[Index] | Folds[Index]) != Needle[Index])
		{
			return false;
		}
	}
	return true;
}
