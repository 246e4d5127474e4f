#include "Containers/UnicodeConversion.h"

#include <cstring>
#include <emmintrin.h>

namespace
{
/**
 * Widens the ASCII run at the front. Whole blocks are written and the run's end found afterwards: Dest has room for as
 * many units as bytes are left. @return the bytes taken.
 */
int64 WidenAscii(const uint8* Source, int64 Count, TCHAR* Dest)
{
	int64 Index = 0;
	const __m128i Zero = _mm_setzero_si128();
	for (; Index + 16 <= Count; Index += 16)
	{
		const __m128i Bytes = _mm_loadu_si128((const __m128i*)(Source + Index));
		_mm_storeu_si128((__m128i*)(Dest + Index), _mm_unpacklo_epi8(Bytes, Zero));
		_mm_storeu_si128((__m128i*)(Dest + Index + 8), _mm_unpackhi_epi8(Bytes, Zero));
		const int32 WideMask = _mm_movemask_epi8(Bytes);
		if (WideMask != 0)
		{
			return Index + __builtin_ctz((uint32)WideMask);
		}
	}
	while (Index < Count && Source[Index] < 0x80)
	{
		Dest[Index] = Source[Index];
		++Index;
	}
	return Index;
}

/** One bit a byte of the block: set for both bytes of each unit whose masked bits equal Value. */
int32 MaskOfUnits(__m128i Units, uint16 Mask, uint16 Value)
{
	const __m128i Masked = _mm_and_si128(Units, _mm_set1_epi16((short)Mask));
	return _mm_movemask_epi8(_mm_cmpeq_epi16(Masked, _mm_set1_epi16((short)Value)));
}

/** Narrows the ASCII run at the front; writes as `WidenAscii` does, for no unit takes less than a byte. */
int64 NarrowAscii(const TCHAR* Source, int64 Count, char* Dest)
{
	int64 Index = 0;
	for (; Index + 16 <= Count; Index += 16)
	{
		const __m128i Low = _mm_loadu_si128((const __m128i*)(Source + Index));
		const __m128i High = _mm_loadu_si128((const __m128i*)(Source + Index + 8));
		_mm_storeu_si128((__m128i*)(Dest + Index), _mm_packus_epi16(Low, High));
		const uint32 AsciiMask = (uint32)MaskOfUnits(Low, 0xFF80, 0) | (uint32)MaskOfUnits(High, 0xFF80, 0) << 16;
		if (AsciiMask != 0xFFFFFFFF)
		{
			return Index + __builtin_ctz(~AsciiMask) / 2;
		}
	}
	while (Index < Count && Source[Index] < 0x80)
	{
		Dest[Index] = (char)Source[Index];
		++Index;
	}
	return Index;
}

bool IsContinuation(uint8 Byte)
{
	return (Byte & 0xC0) == 0x80;
}

/** The well-formed range of the second byte depends on the first (The Unicode Standard 15.0, table 3-7). */
bool IsValidSecond(uint8 First, uint8 Second)
{
	switch (First)
	{
	case 0xE0:
		return Second >= 0xA0 && Second <= 0xBF;
	case 0xED:
		return Second >= 0x80 && Second <= 0x9F;
	case 0xF0:
		return Second >= 0x90 && Second <= 0xBF;
	case 0xF4:
		return Second >= 0x80 && Second <= 0x8F;
	default:
		return IsContinuation(Second);
	}
}

int32 SequenceLength(uint8 First)
{
	if (First >= 0xC2 && First <= 0xDF)
	{
		return 2;
	}
	if (First >= 0xE0 && First <= 0xEF)
	{
		return 3;
	}
	return First >= 0xF0 && First <= 0xF4 ? 4 : 1;
}

/** Decodes the sequence at Source, which doesn't begin with ASCII, checking everything. @return the bytes taken. */
int64 DecodeChecked(const uint8* Source, int64 Count, TCHAR*& Dest)
{
	const uint8 First = Source[0];
	const int32 Length = SequenceLength(First);
	int32 Good = 1;
	if (Length > 1 && Count > 1 && IsValidSecond(First, Source[1]))
	{
		Good = 2;
		while (Good < Length && Good < Count && IsContinuation(Source[Good]))
		{
			++Good;
		}
	}
	if (Good < Length || Length == 1)
	{
		*Dest++ = Unicode::ReplacementChar;
		return Good;
	}
	uint32 Code = First & (0xFF >> (Length + 1));
	for (int32 Index = 1; Index < Length; ++Index)
	{
		Code = (Code << 6) | (Source[Index] & 0x3F);
	}
	if (Code < 0x10000)
	{
		*Dest++ = (TCHAR)Code;
		return Length;
	}
	*Dest++ = (TCHAR)(0xD7C0 + (Code >> 10));
	*Dest++ = (TCHAR)(0xDC00 | (Code & 0x3FF));
	return Length;
}

/** Decodes well-formed two- and three-byte sequences in a row, the bulk of non-Latin text. @return the bytes taken. */
int64 DecodeRun(const uint8* Source, int64 Count, TCHAR*& Dest)
{
	const uint8* Current = Source;
	const uint8* const End = Source + Count - 4;
	TCHAR* Out = Dest;
	while (Current <= End)
	{
		uint32 Word;
		std::memcpy(&Word, Current, sizeof(Word));
		if ((Word & 0xC0E0) == 0x80C0 && (Word & 0x1E) != 0)
		{
			*Out++ = (TCHAR)(((Word & 0x1F) << 6) | ((Word >> 8) & 0x3F));
			Current += 2;
			// A blank or another ASCII character between two words of a script doesn't end the run.
			if ((Word & 0x800000) == 0)
			{
				*Out++ = (TCHAR)((Word >> 16) & 0x7F);
				++Current;
			}
			continue;
		}
		if ((Word & 0xC0C0F0) != 0x8080E0)
		{
			break;
		}
		const uint32 Code = ((Word & 0x0F) << 12) | ((Word & 0x3F00) >> 2) | ((Word >> 16) & 0x3F);
		if (Code < 0x800 || (Code & 0xF800) == 0xD800)
		{
			break;
		}
		*Out++ = (TCHAR)Code;
		Current += 3;
	}
	Dest = Out;
	return Current - Source;
}

/** Encodes the unit at Source, or the pair that begins there. @return the units taken. */
int64 EncodeOne(const TCHAR* Source, int64 Count, char*& Dest)
{
	uint32 Code = Source[0];
	if ((Code & 0xFC00) == 0xD800 && Count > 1 && (Source[1] & 0xFC00) == 0xDC00)
	{
		Code = 0x10000 + ((Code & 0x3FF) << 10) + (Source[1] & 0x3FF);
		*Dest++ = (char)(0xF0 | (Code >> 18));
		*Dest++ = (char)(0x80 | ((Code >> 12) & 0x3F));
		*Dest++ = (char)(0x80 | ((Code >> 6) & 0x3F));
		*Dest++ = (char)(0x80 | (Code & 0x3F));
		return 2;
	}
	if ((Code & 0xF800) == 0xD800)
	{
		Code = Unicode::ReplacementChar;
	}
	*Dest++ = (char)(0xE0 | (Code >> 12));
	*Dest++ = (char)(0x80 | ((Code >> 6) & 0x3F));
	*Dest++ = (char)(0x80 | (Code & 0x3F));
	return 1;
}

/** Encodes a run of units from U+0080 on, with single ASCII units between them. @return the units taken. */
int64 EncodeRun(const TCHAR* Source, int64 Count, char*& Dest)
{
	int64 Index = 0;
	char* Out = Dest;
	while (Index < Count && (Source[Index] >= 0x80 || (Index + 1 < Count && Source[Index + 1] >= 0x80)))
	{
		const uint32 Unit = Source[Index];
		if (Unit < 0x80)
		{
			*Out++ = (char)Unit;
			++Index;
		}
		else if (Unit < 0x800)
		{
			const uint16 Bytes = (uint16)(0x80C0 | (Unit >> 6) | (Unit & 0x3F) << 8);
			std::memcpy(Out, &Bytes, sizeof(Bytes));
			Out += sizeof(Bytes);
			++Index;
		}
		else
		{
			Index += EncodeOne(Source + Index, Count - Index, Out);
		}
	}
	Dest = Out;
	return Index;
}

/** The bytes beyond one that a unit takes. A pair counts as two times two, which is what it takes beyond its two. */
int32 ExtraBytes(const TCHAR* Source, int64 Index, int64 Count)
{
	const TCHAR Unit = Source[Index];
	const bool bPairFollows = (Unit & 0xFC00) == 0xD800 && Index + 1 < Count && (Source[Index + 1] & 0xFC00) == 0xDC00;
	return (Unit > 0x7F) + (Unit > 0x7FF) - (bPairFollows ? 2 : 0);
}
} // namespace

int64 Unicode::Utf8ToUtf16(const char* Source, int64 SourceBytes, TCHAR* Dest)
{
	const uint8* Bytes = (const uint8*)Source;
	TCHAR* Out = Dest;
	int64 Index = 0;
	while (Index < SourceBytes)
	{
		const int64 Ascii = WidenAscii(Bytes + Index, SourceBytes - Index, Out);
		Index += Ascii;
		Out += Ascii;
		Index += DecodeRun(Bytes + Index, SourceBytes - Index, Out);
		if (Index < SourceBytes && Bytes[Index] >= 0x80)
		{
			Index += DecodeChecked(Bytes + Index, SourceBytes - Index, Out);
		}
	}
	return Out - Dest;
}

int64 Unicode::Utf16ToUtf8Length(const TCHAR* Source, int64 SourceUnits)
{
	int64 Length = SourceUnits;
	int64 Index = 0;
	for (; Index + 9 <= SourceUnits; Index += 8)
	{
		const __m128i Units = _mm_loadu_si128((const __m128i*)(Source + Index));
		const uint32 Below80 = (uint32)MaskOfUnits(Units, 0xFF80, 0);
		if (Below80 == 0xFFFF)
		{
			continue;
		}
		const __m128i Next = _mm_loadu_si128((const __m128i*)(Source + Index + 1));
		const uint32 Below800 = (uint32)MaskOfUnits(Units, 0xF800, 0);
		const uint32 Pairs = (uint32)MaskOfUnits(Units, 0xFC00, 0xD800) & (uint32)MaskOfUnits(Next, 0xFC00, 0xDC00);
		// Each unit has two bits in a mask.
		Length += 16 - (__builtin_popcount(Below80) + __builtin_popcount(Below800)) / 2 - __builtin_popcount(Pairs);
	}
	for (; Index < SourceUnits; ++Index)
	{
		Length += ExtraBytes(Source, Index, SourceUnits);
	}
	return Length;
}

int64 Unicode::Utf16ToUtf8(const TCHAR* Source, int64 SourceUnits, char* Dest)
{
	char* Out = Dest;
	int64 Index = 0;
	while (Index < SourceUnits)
	{
		const int64 Ascii = NarrowAscii(Source + Index, SourceUnits - Index, Out);
		Index += Ascii;
		Out += Ascii;
		Index += EncodeRun(Source + Index, SourceUnits - Index, Out);
	}
	return Out - Dest;
}
