#include "Json/JsonSink.h"

#include "Json/JsonMemory.h"

#include <algorithm>
#include <cstring>
#include <emmintrin.h>

namespace
{
constexpr int64 BlockUnits = 16;
/** Room that is kept beyond the rest of a text being quoted: a block stored whole, an escape, and the quotes. */
constexpr int64 QuoteRoom = BlockUnits + 6 + 2;

/** Bit i is set when byte i of the block can't be copied as it is: a control, a quote, a backslash, or not ASCII. */
uint32 SpecialBytes(__m128i Block)
{
	const __m128i Control = _mm_cmpeq_epi8(_mm_min_epu8(Block, _mm_set1_epi8(0x1F)), Block);
	const __m128i Quote = _mm_cmpeq_epi8(Block, _mm_set1_epi8('"'));
	const __m128i Backslash = _mm_cmpeq_epi8(Block, _mm_set1_epi8('\\'));
	const __m128i Special = _mm_or_si128(_mm_or_si128(Control, Quote), Backslash);
	return (uint32)_mm_movemask_epi8(_mm_or_si128(Special, Block));
}

/** Bit i is set when unit i of the block can't be copied as it is: a control, a quote, a backslash or a surrogate. */
uint32 SpecialUnits(__m128i Block)
{
	const __m128i Zero = _mm_setzero_si128();
	const __m128i Control = _mm_cmpeq_epi16(_mm_subs_epu16(Block, _mm_set1_epi16(0x1F)), Zero);
	const __m128i Quote = _mm_cmpeq_epi16(Block, _mm_set1_epi16('"'));
	const __m128i Backslash = _mm_cmpeq_epi16(Block, _mm_set1_epi16('\\'));
	const __m128i Masked = _mm_and_si128(Block, _mm_set1_epi16((short)0xF800));
	const __m128i Surrogate = _mm_cmpeq_epi16(Masked, _mm_set1_epi16((short)0xD800));
	const __m128i Special = _mm_or_si128(_mm_or_si128(Control, Quote), _mm_or_si128(Backslash, Surrogate));
	return (uint32)_mm_movemask_epi8(_mm_packs_epi16(Special, Zero));
}

void StoreWidened(TCHAR* Target, __m128i Bytes)
{
	const __m128i Zero = _mm_setzero_si128();
	_mm_storeu_si128((__m128i*)Target, _mm_unpacklo_epi8(Bytes, Zero));
	_mm_storeu_si128((__m128i*)(Target + 8), _mm_unpackhi_epi8(Bytes, Zero));
}

bool IsPlain(TCHAR Unit)
{
	return Unit >= 0x20 && Unit != '"' && Unit != '\\' && (Unit & 0xF800) != 0xD800;
}

bool IsPlainByte(ANSICHAR Byte)
{
	return (uint8)Byte >= 0x20 && (uint8)Byte < 0x80 && Byte != '"' && Byte != '\\';
}
}

FJsonSink::FJsonSink(FString& InOut)
	: Out(InOut)
{
	Out.Reset();
	TArray<TCHAR>& Units = Out.GetCharArray();
	At = End = Units.GetData();
}

void FJsonSink::Grow(int64 Units)
{
	TArray<TCHAR>& Array = Out.GetCharArray();
	const int64 Length = Len();
	const int64 Needed = Length + Units + 1;
	check(Needed <= MAX_int32);
	if (Needed > Array.Max())
	{
		const int64 Wanted = std::max<int64>(Needed, Array.Max() + (int64)Array.Max() / 2 + 64);
		Array.Reserve((int32)std::min<int64>(Wanted, MAX_int32));
		JsonMemory::PreferHugePages(Array.GetData(), Array.GetAllocatedSize());
	}
	Array.SetNumUninitialized(Array.Max());
	At = Array.GetData() + Length;
	End = Array.GetData() + Array.Num() - 1;
}

void FJsonSink::Commit()
{
	Reserve(1);
	*At = 0;
	TArray<TCHAR>& Array = Out.GetCharArray();
	Array.SetNumUninitialized(Len() + 1, EAllowShrinking::No);
	End = At;
}

void FJsonSink::Put(std::string_view Ascii)
{
	Reserve((int64)Ascii.size());
	for (const char Char : Ascii)
	{
		*At++ = (TCHAR)Char;
	}
}

void FJsonSink::Put(FStringView Text)
{
	Reserve(Text.Len());
	FMemory::Memcpy(At, Text.GetData(), sizeof(TCHAR) * (SIZE_T)Text.Len());
	At += Text.Len();
}

void FJsonSink::PutRepeated(TCHAR Char, int32 Count)
{
	Reserve(Count);
	At = std::fill_n(At, Count, Char);
}

void FJsonSink::PutQuoted(FStringView Text)
{
	const TCHAR* Source = Text.begin();
	const TCHAR* SourceEnd = Text.end();
	Reserve(SourceEnd - Source + QuoteRoom);
	*At++ = '"';
	while (Source != SourceEnd)
	{
		while (SourceEnd - Source >= 8)
		{
			const __m128i Block = _mm_loadu_si128((const __m128i*)Source);
			_mm_storeu_si128((__m128i*)At, Block);
			const uint32 Special = SpecialUnits(Block);
			const int32 Plain = Special ? __builtin_ctz(Special) : 8;
			Source += Plain;
			At += Plain;
			if (Special)
			{
				break;
			}
		}
		while (Source != SourceEnd && IsPlain(*Source))
		{
			*At++ = *Source++;
		}
		Source = Source != SourceEnd ? PutSpecial(Source, SourceEnd) : Source;
	}
	*At++ = '"';
}

/** @return behind what was put: one unit, or the two of a pair. */
const TCHAR* FJsonSink::PutSpecial(const TCHAR* Source, const TCHAR* SourceEnd)
{
	const bool bHigh = (*Source & 0xFC00) == 0xD800;
	if (bHigh && Source + 1 != SourceEnd && (Source[1] & 0xFC00) == 0xDC00)
	{
		*At++ = Source[0];
		*At++ = Source[1];
		return Source + 2;
	}
	PutEscaped(*Source);
	Reserve(SourceEnd - Source + QuoteRoom);
	return Source + 1;
}

void FJsonSink::PutEscaped(TCHAR Unit)
{
	static constexpr char Named[] = "\"\\\b\f\n\r\t";
	static constexpr char Letters[] = "\"\\bfnrt";
	*At++ = '\\';
	const char* Found = Unit != 0 && Unit < 0x80 ? std::strchr(Named, (char)Unit) : nullptr;
	if (Found)
	{
		*At++ = (TCHAR)Letters[Found - Named];
		return;
	}
	*At++ = 'u';
	for (int32 Shift = 12; Shift >= 0; Shift -= 4)
	{
		*At++ = (TCHAR) "0123456789abcdef"[(Unit >> Shift) & 0xF];
	}
}

void FJsonSink::PutQuotedUtf8(std::string_view Utf8)
{
	const ANSICHAR* Source = Utf8.data();
	const ANSICHAR* SourceEnd = Source + Utf8.size();
	Reserve(SourceEnd - Source + QuoteRoom);
	*At++ = '"';
	while (Source != SourceEnd)
	{
		while (SourceEnd - Source >= BlockUnits)
		{
			const __m128i Block = _mm_loadu_si128((const __m128i*)Source);
			StoreWidened(At, Block);
			const uint32 Special = SpecialBytes(Block);
			const int32 Plain = Special ? __builtin_ctz(Special) : (int32)BlockUnits;
			Source += Plain;
			At += Plain;
			if (Special)
			{
				break;
			}
		}
		while (Source != SourceEnd && IsPlainByte(*Source))
		{
			*At++ = (TCHAR)*Source++;
		}
		if (Source != SourceEnd)
		{
			Source = PutSpecialUtf8(Source);
			Reserve(SourceEnd - Source + QuoteRoom);
		}
	}
	*At++ = '"';
}

/** Puts one character that isn't plain. @return behind it. */
const ANSICHAR* FJsonSink::PutSpecialUtf8(const ANSICHAR* Source)
{
	const auto Tail = [Source](int32 Index) { return (uint32)Source[Index] & 0x3F; };
	const uint32 Lead = (uint8)*Source;
	if (Lead < 0x80)
	{
		PutEscaped((TCHAR)Lead);
		return Source + 1;
	}
	if (Lead < 0xE0)
	{
		*At++ = (TCHAR)((Lead & 0x1F) << 6 | Tail(1));
		return Source + 2;
	}
	if (Lead < 0xF0)
	{
		*At++ = (TCHAR)((Lead & 0xF) << 12 | Tail(1) << 6 | Tail(2));
		return Source + 3;
	}
	const uint32 Point = ((Lead & 7) << 18 | Tail(1) << 12 | Tail(2) << 6 | Tail(3)) - 0x10000;
	*At++ = (TCHAR)(0xD800 + (Point >> 10));
	*At++ = (TCHAR)(0xDC00 + (Point & 0x3FF));
	return Source + 4;
}
