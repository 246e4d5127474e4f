#include "Misc/Base64.h"

#include "Containers/StringConv.h"

namespace
{
const TCHAR* const Alphabet = TEXT("ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/");
constexpr uint8 Invalid = 0xFF;

/** The value of each ASCII character, or Invalid. */
struct FDecodeTable
{
	uint8 Values[128];

	FDecodeTable()
	{
		std::fill(std::begin(Values), std::end(Values), Invalid);
		for (uint8 Index = 0; Index < 64; ++Index)
		{
			Values[Alphabet[Index]] = Index;
		}
	}
	uint8 operator[](TCHAR Char) const { return Char < 128 ? Values[Char] : Invalid; }
};

int32 CountPadding(FStringView Source)
{
	if (!Source.EndsWith(u'='))
	{
		return 0;
	}
	return Source.LeftChop(1).EndsWith(u'=') ? 2 : 1;
}
} // namespace

FString FBase64::Encode(const uint8* Source, uint32 Length)
{
	FString Result;
	check(Length < (uint32)MAX_int32 / 4 * 3);
	if (Length == 0)
	{
		return Result;
	}
	TCHAR* Out = Result.AppendUninitialized((int32)GetEncodedDataSize(Length));
	uint32 Index = 0;
	for (; Index + 3 <= Length; Index += 3)
	{
		const uint32 Word = (uint32)Source[Index] << 16 | (uint32)Source[Index + 1] << 8 | Source[Index + 2];
		*Out++ = Alphabet[Word >> 18];
		*Out++ = Alphabet[(Word >> 12) & 63];
		*Out++ = Alphabet[(Word >> 6) & 63];
		*Out++ = Alphabet[Word & 63];
	}
	if (Index < Length)
	{
		const bool bTwo = Index + 1 < Length;
		const uint32 Word = (uint32)Source[Index] << 16 | (bTwo ? (uint32)Source[Index + 1] << 8 : 0);
		*Out++ = Alphabet[Word >> 18];
		*Out++ = Alphabet[(Word >> 12) & 63];
		*Out++ = bTwo ? Alphabet[(Word >> 6) & 63] : u'=';
		*Out++ = u'=';
	}
	return Result;
}

FString FBase64::Encode(const FString& Source)
{
	const FTCHARToUTF8 Bytes(Source);
	return Encode((const uint8*)Bytes.Get(), (uint32)Bytes.Length());
}

bool FBase64::Decode(FStringView Source, TArray<uint8>& OutDest)
{
	static const FDecodeTable Table;
	OutDest.Reset();
	if (Source.Len() % 4 != 0)
	{
		return false;
	}
	const int32 Padding = CountPadding(Source);
	const int32 Bytes = Source.Len() / 4 * 3 - Padding;
	OutDest.Reserve(Source.Len() / 4 * 3);
	for (int32 Index = 0; Index < Source.Len(); Index += 4)
	{
		uint32 Word = 0;
		for (int32 Place = Index; Place < Index + 4; ++Place)
		{
			const bool bPadding = Place >= Source.Len() - Padding;
			const uint8 Value = bPadding ? 0 : Table[Source.GetData()[Place]];
			if (Value == Invalid)
			{
				OutDest.Reset();
				return false;
			}
			Word = Word << 6 | Value;
		}
		const uint8 Group[] = {(uint8)(Word >> 16), (uint8)(Word >> 8), (uint8)Word};
		OutDest.Append(Group, 3);
	}
	OutDest.SetNum(Bytes, EAllowShrinking::No);
	return true;
}

bool FBase64::Decode(FStringView Source, FString& OutDest)
{
	TArray<uint8> Bytes;
	const bool bDecoded = Decode(Source, Bytes);
	OutDest = FString::FromUtf8((const ANSICHAR*)Bytes.GetData(), Bytes.Num());
	return bDecoded;
}
