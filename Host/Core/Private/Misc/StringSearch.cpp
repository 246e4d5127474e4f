#include "Misc/CString.h"

#include "Templates/TypeHash.h"

#include <algorithm>
#include <cstring>
#include <emmintrin.h>

namespace
{
TCHAR Fold(TCHAR Char)
{
	return FChar::ToLower(Char);
}

/** Four units as one folded word; false when one isn't ASCII. */
bool LoadFolded4(const TCHAR* Text, uint64& OutWord)
{
	uint64 Word;
	std::memcpy(&Word, Text, sizeof(Word));
	OutWord = Word;
	if (Word & 0xFF80FF80FF80FF80ull)
	{
		return false;
	}
	const uint64 AboveA = Word + 0x003F003F003F003Full;
	const uint64 AboveZ = Word + 0x0025002500250025ull;
	OutWord = Word | (((AboveA & ~AboveZ) & 0x0080008000800080ull) >> 2);
	return true;
}

/** Whether two blocks of 8 units are equal when ASCII letters are folded; false too when that can't tell. */
bool EqualsFolded8(const TCHAR* A, const TCHAR* B)
{
	const __m128i Low = _mm_set1_epi16(u'A' - 1);
	const __m128i High = _mm_set1_epi16(u'Z' + 1);
	const __m128i Bit = _mm_set1_epi16(32);
	const auto FoldBlock = [&](const TCHAR* Source)
	{
		const __m128i Units = _mm_loadu_si128((const __m128i*)Source);
		const __m128i bUpper = _mm_and_si128(_mm_cmpgt_epi16(Units, Low), _mm_cmplt_epi16(Units, High));
		return _mm_or_si128(Units, _mm_and_si128(bUpper, Bit));
	};
	return _mm_movemask_epi8(_mm_cmpeq_epi16(FoldBlock(A), FoldBlock(B))) == 0xFFFF;
}

/**
 * Compares ASCII of 4 to 8 units as two words that may overlap. @return false, with bOutEqual left alone, for any other
 * text.
 */
bool CompareShortAscii(const TCHAR* A, const TCHAR* B, int32 Count, bool& bOutEqual)
{
	uint64 Words[4];
	const int32 Second = Count - 4;
	if (Count < 4 || Count > 8 || !LoadFolded4(A, Words[0]) || !LoadFolded4(B, Words[1]) ||
		!LoadFolded4(A + Second, Words[2]) || !LoadFolded4(B + Second, Words[3]))
	{
		return false;
	}
	bOutEqual = Words[0] == Words[1] && Words[2] == Words[3];
	return true;
}

bool EqualsIgnoringCase(const TCHAR* A, const TCHAR* B, int32 Count)
{
	bool bEqual = false;
	if (CompareShortAscii(A, B, Count, bEqual))
	{
		return bEqual;
	}
	int32 Index = 0;
	while (Index < Count)
	{
		if (Index + 8 <= Count && EqualsFolded8(A + Index, B + Index))
		{
			Index += 8;
			continue;
		}
		// The last block reaches back over what is known to be equal.
		if (Index > 0 && Index + 8 > Count && EqualsFolded8(A + Count - 8, B + Count - 8))
		{
			return true;
		}
		const int32 BlockEnd = std::min(Index + 8, Count);
		for (; Index < BlockEnd; ++Index)
		{
			if (A[Index] != B[Index] && Fold(A[Index]) != Fold(B[Index]))
			{
				return false;
			}
		}
	}
	return true;
}

/** The forms that fold to the same unit and that the block search tests for. */
struct FUnitForms
{
	TCHAR One;
	TCHAR Two;

	/** @return false when units other than its upper and lower case fold to it as well. */
	static bool Make(TCHAR Char, ESearchCase::Type SearchCase, FUnitForms& Out)
	{
		Out.One = Char;
		Out.Two = Char;
		if (SearchCase == ESearchCase::CaseSensitive)
		{
			return true;
		}
		Out.One = FChar::ToLower(Char);
		Out.Two = FChar::ToUpper(Out.One);
		return Out.One < 0x80;
	}
};

/** The next index in [Index, End) whose unit is one of the forms, or End. */
int32 SkipToForm(const TCHAR* Text, int32 Index, int32 End, FUnitForms First, int32 Offset, FUnitForms Last)
{
	const __m128i First1 = _mm_set1_epi16((short)First.One);
	const __m128i First2 = _mm_set1_epi16((short)First.Two);
	const __m128i Last1 = _mm_set1_epi16((short)Last.One);
	const __m128i Last2 = _mm_set1_epi16((short)Last.Two);
	for (; Index + 8 <= End; Index += 8)
	{
		const __m128i Front = _mm_loadu_si128((const __m128i*)(Text + Index));
		const __m128i Back = _mm_loadu_si128((const __m128i*)(Text + Index + Offset));
		const __m128i bFront = _mm_or_si128(_mm_cmpeq_epi16(Front, First1), _mm_cmpeq_epi16(Front, First2));
		const __m128i bBack = _mm_or_si128(_mm_cmpeq_epi16(Back, Last1), _mm_cmpeq_epi16(Back, Last2));
		const int32 Mask = _mm_movemask_epi8(_mm_and_si128(bFront, bBack));
		if (Mask != 0)
		{
			return Index + __builtin_ctz((uint32)Mask) / 2;
		}
	}
	for (; Index < End; ++Index)
	{
		const TCHAR Front = Text[Index];
		if (Front == First.One || Front == First.Two)
		{
			return Index;
		}
	}
	return End;
}

/** Multiplies to 128 bits and folds the halves (the mixing step of wyhash, by Wang Yi, public domain). */
uint64 Mix(uint64 A, uint64 B)
{
	const unsigned __int128 Product = (unsigned __int128)A * B;
	return (uint64)Product ^ (uint64)(Product >> 64);
}

constexpr uint64 HashSeed = 0xa0761d6478bd642full;
constexpr uint64 HashFactor = 0xe7037ed1a0b428dbull;

template <bool bFold>
uint64 LoadHashWord(const TCHAR* Text, int32 Count)
{
	uint64 Word = 0;
	if (Count == 4 && (!bFold || LoadFolded4(Text, Word)))
	{
		if (!bFold)
		{
			std::memcpy(&Word, Text, sizeof(Word));
		}
		return Word;
	}
	Word = 0;
	for (int32 Index = 0; Index < Count; ++Index)
	{
		Word |= (uint64)(bFold ? Fold(Text[Index]) : Text[Index]) << (16 * Index);
	}
	return Word;
}

template <bool bFold>
uint32 HashText(const TCHAR* Text, int32 Len)
{
	uint64 Hash = HashSeed ^ (uint64)Len;
	int32 Index = 0;
	for (; Index + 4 <= Len; Index += 4)
	{
		Hash = Mix(Hash ^ LoadHashWord<bFold>(Text + Index, 4), HashFactor);
	}
	if (Index < Len)
	{
		Hash = Mix(Hash ^ LoadHashWord<bFold>(Text + Index, Len - Index), HashFactor);
	}
	return (uint32)(Hash ^ (Hash >> 32));
}
} // namespace

int32 StringSearch::Compare(const TCHAR* A, int32 LenA, const TCHAR* B, int32 LenB, ESearchCase::Type SearchCase)
{
	const int32 Shared = std::min(LenA, LenB);
	for (int32 Index = 0; Index < Shared; ++Index)
	{
		if (A[Index] == B[Index])
		{
			continue;
		}
		const TCHAR CharA = SearchCase == ESearchCase::IgnoreCase ? Fold(A[Index]) : A[Index];
		const TCHAR CharB = SearchCase == ESearchCase::IgnoreCase ? Fold(B[Index]) : B[Index];
		if (CharA != CharB)
		{
			return CharA < CharB ? -1 : 1;
		}
	}
	return LenA == LenB ? 0 : (LenA < LenB ? -1 : 1);
}

bool StringSearch::EqualsCount(const TCHAR* A, const TCHAR* B, int32 Count, ESearchCase::Type SearchCase)
{
	if (SearchCase == ESearchCase::CaseSensitive)
	{
		return Count == 0 || std::memcmp(A, B, (SIZE_T)Count * sizeof(TCHAR)) == 0;
	}
	return EqualsIgnoringCase(A, B, Count);
}

int32 StringSearch::Find(
	const TCHAR* Text, int32 Len, const TCHAR* Needle, int32 NeedleLen, int32 Start, ESearchCase::Type SearchCase)
{
	Start = std::max(Start, 0);
	if (NeedleLen == 0)
	{
		return Start <= Len ? Start : INDEX_NONE;
	}
	const int32 End = Len - NeedleLen + 1;
	FUnitForms First;
	FUnitForms Last;
	const bool bBlocks =
		FUnitForms::Make(Needle[0], SearchCase, First) && FUnitForms::Make(Needle[NeedleLen - 1], SearchCase, Last);
	for (int32 Index = Start; Index < End; ++Index)
	{
		if (bBlocks)
		{
			Index = SkipToForm(Text, Index, End, First, NeedleLen - 1, Last);
		}
		if (Index < End && EqualsCount(Text + Index, Needle, NeedleLen, SearchCase))
		{
			return Index;
		}
	}
	return INDEX_NONE;
}

int32 StringSearch::FindChar(const TCHAR* Text, int32 Len, TCHAR Char)
{
	const __m128i Wanted = _mm_set1_epi16((short)Char);
	int32 Index = 0;
	for (; Index + 8 <= Len; Index += 8)
	{
		const __m128i Units = _mm_loadu_si128((const __m128i*)(Text + Index));
		const int32 Mask = _mm_movemask_epi8(_mm_cmpeq_epi16(Units, Wanted));
		if (Mask != 0)
		{
			return Index + __builtin_ctz((uint32)Mask) / 2;
		}
	}
	while (Index < Len && Text[Index] != Char)
	{
		++Index;
	}
	return Index < Len ? Index : INDEX_NONE;
}

int32 StringSearch::FindLast(
	const TCHAR* Text, int32 Len, const TCHAR* Needle, int32 NeedleLen, int32 Start, ESearchCase::Type SearchCase)
{
	for (int32 Index = std::min(Start - 1, Len - NeedleLen); Index >= 0; --Index)
	{
		if (EqualsCount(Text + Index, Needle, NeedleLen, SearchCase))
		{
			return Index;
		}
	}
	return INDEX_NONE;
}

bool StringSearch::MatchesWildcard(
	const TCHAR* Text, int32 Len, const TCHAR* Pattern, int32 PatternLen, ESearchCase::Type SearchCase)
{
	const auto bSame = [SearchCase](TCHAR A, TCHAR B)
	{ return A == B || (SearchCase == ESearchCase::IgnoreCase && Fold(A) == Fold(B)); };
	int32 At = 0;
	int32 PatternAt = 0;
	int32 StarAt = INDEX_NONE;
	int32 Resume = 0;
	while (At < Len)
	{
		if (PatternAt < PatternLen && Pattern[PatternAt] == u'*')
		{
			StarAt = PatternAt++;
			Resume = At;
		}
		else if (PatternAt < PatternLen && (Pattern[PatternAt] == u'?' || bSame(Pattern[PatternAt], Text[At])))
		{
			++PatternAt;
			++At;
		}
		else if (StarAt != INDEX_NONE)
		{
			// The last star takes one unit more; an earlier star never needs to.
			PatternAt = StarAt + 1;
			At = ++Resume;
		}
		else
		{
			return false;
		}
	}
	while (PatternAt < PatternLen && Pattern[PatternAt] == u'*')
	{
		++PatternAt;
	}
	return PatternAt == PatternLen;
}

uint32 StringSearch::HashIgnoringCase(const TCHAR* Text, int32 Len)
{
	return HashText<true>(Text, Len);
}

uint32 StringSearch::HashCaseSensitive(const TCHAR* Text, int32 Len)
{
	return HashText<false>(Text, Len);
}
