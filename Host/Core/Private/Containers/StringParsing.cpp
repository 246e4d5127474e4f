#include "Containers/UnrealString.h"

#include <charconv>
#include <cmath>

namespace
{
/** Cuts Text wherever MatchDelimiter(Index) tells a delimiter's length above 0. */
template <typename MatchType>
int32 CutAt(FStringView Text, TArray<FString>& OutArray, bool bCullEmpty, const MatchType& MatchDelimiter)
{
	// The text may be an element of the array that it fills.
	TArray<FString> Parts;
	int32 PartStart = 0;
	const auto AddPart = [&](int32 End)
	{
		if (!bCullEmpty || End > PartStart)
		{
			Parts.Add(FString(Text.Mid(PartStart, End - PartStart)));
		}
	};
	for (int32 Index = 0; Index < Text.Len();)
	{
		const int32 DelimiterLen = MatchDelimiter(Index);
		if (DelimiterLen == 0)
		{
			++Index;
			continue;
		}
		AddPart(Index);
		Index += DelimiterLen;
		PartStart = Index;
	}
	if (!Text.IsEmpty())
	{
		AddPart(Text.Len());
	}
	OutArray = MoveTemp(Parts);
	return OutArray.Num();
}

const TCHAR* EscapeFor(TCHAR Char)
{
	switch (Char)
	{
	case u'\n':
		return TEXT("\\n");
	case u'\r':
		return TEXT("\\r");
	case u'\t':
		return TEXT("\\t");
	case u'\'':
		return TEXT("\\'");
	case u'"':
		return TEXT("\\\"");
	case u'\\':
		return TEXT("\\\\");
	default:
		return nullptr;
	}
}

TCHAR CharOfEscape(TCHAR Char)
{
	switch (Char)
	{
	case u'n':
		return u'\n';
	case u'r':
		return u'\r';
	case u't':
		return u'\t';
	case u'\'':
	case u'"':
	case u'\\':
		return Char;
	default:
		return 0;
	}
}

template <typename T>
FString ShortestText(T Value)
{
	char Buffer[64];
	const std::to_chars_result Result = std::to_chars(Buffer, Buffer + sizeof(Buffer), Value);
	return FString::FromUtf8(Buffer, Result.ptr - Buffer);
}
} // namespace

int32 FString::ParseIntoArray(TArray<FString>& OutArray, const TCHAR* Delimiter, bool bCullEmpty) const
{
	return ParseIntoArray(OutArray, &Delimiter, 1, bCullEmpty);
}

int32 FString::ParseIntoArray(
	TArray<FString>& OutArray, const TCHAR* const* Delimiters, int32 NumDelimiters, bool bCullEmpty) const
{
	TArray<FStringView, TInlineAllocator<8>> Views;
	for (int32 Index = 0; Index < NumDelimiters; ++Index)
	{
		Views.Add(FStringView(Delimiters[Index]));
	}
	const FStringView Text(*this);
	return CutAt(Text, OutArray, bCullEmpty,
		[&](int32 Index)
		{
			for (const FStringView Delimiter : Views)
			{
				if (!Delimiter.IsEmpty() && Text.Mid(Index, Delimiter.Len()).Equals(Delimiter))
				{
					return Delimiter.Len();
				}
			}
			return 0;
		});
}

int32 FString::ParseIntoArrayLines(TArray<FString>& OutArray, bool bCullEmpty) const
{
	const TCHAR* const LineEnds[] = {TEXT("\r\n"), TEXT("\r"), TEXT("\n")};
	return ParseIntoArray(OutArray, LineEnds, UE_ARRAY_COUNT(LineEnds), bCullEmpty);
}

int32 FString::ParseIntoArrayWS(TArray<FString>& OutArray, const TCHAR* ExtraDelimiter, bool bCullEmpty) const
{
	const TCHAR* const Delimiters[] = {
		TEXT(" "), TEXT("\t"), TEXT("\r"), TEXT("\n"), ExtraDelimiter ? ExtraDelimiter : TEXT("")};
	return ParseIntoArray(OutArray, Delimiters, UE_ARRAY_COUNT(Delimiters), bCullEmpty);
}

FString FString::ReplaceCharWithEscapedChar() const
{
	FString Result;
	Result.Reserve(Len());
	for (const TCHAR Char : *this)
	{
		const TCHAR* Escape = EscapeFor(Char);
		Result.Append(Escape ? FStringView(Escape) : FStringView(&Char, 1));
	}
	return Result;
}

FString FString::ReplaceEscapedCharWithChar() const
{
	FString Result;
	Result.Reserve(Len());
	for (int32 Index = 0; Index < Len(); ++Index)
	{
		const bool bEscape = (*this)[Index] == u'\\' && Index + 1 < Len();
		const TCHAR Plain = bEscape ? CharOfEscape((*this)[Index + 1]) : 0;
		Result.AppendChar(Plain ? Plain : (*this)[Index]);
		Index += Plain ? 1 : 0;
	}
	return Result;
}

FString FString::ReplaceQuotesWithEscapedQuotes() const
{
	FString Result;
	for (int32 Index = 0; Index < Len(); ++Index)
	{
		const bool bBare = (*this)[Index] == u'"' && (Index == 0 || (*this)[Index - 1] != u'\\');
		Result.Append(bBare ? FStringView(TEXT("\\\"")) : FStringView(**this + Index, 1));
	}
	return Result;
}

FString FString::FromInt(int64 Value)
{
	return ShortestText(Value);
}

FString FString::SanitizeFloat(double Value, int32 MinFractionalDigits)
{
	if (!std::isfinite(Value))
	{
		return std::isnan(Value) ? TEXT("nan") : (Value < 0 ? TEXT("-inf") : TEXT("inf"));
	}
	char Buffer[512];
	const double Shown = Value == 0 ? 0 : Value;
	const std::to_chars_result Written =
		std::to_chars(Buffer, Buffer + sizeof(Buffer), Shown, std::chars_format::fixed);
	FString Result = FromUtf8(Buffer, Written.ptr - Buffer);
	int32 Point = INDEX_NONE;
	if (!Result.FindChar(u'.', Point) && MinFractionalDigits > 0)
	{
		Point = Result.Len();
		Result.AppendChar(u'.');
	}
	while (Point != INDEX_NONE && Result.Len() - Point - 1 < MinFractionalDigits)
	{
		Result.AppendChar(u'0');
	}
	return Result;
}

FString FString::FormatAsNumber(int32 Value)
{
	FString Result = FromInt(Value);
	const int32 FirstDigit = Value < 0 ? 1 : 0;
	for (int32 Place = Result.Len() - 3; Place > FirstDigit; Place -= 3)
	{
		Result.InsertAt(Place, u',');
	}
	return Result;
}

FString LexToString(double Value)
{
	return ShortestText(Value);
}

FString LexToString(float Value)
{
	return ShortestText(Value);
}

FString BytesToHex(const uint8* Bytes, int32 Count)
{
	FString Result;
	Result.Reserve(Count * 2);
	for (int32 Index = 0; Index < Count; ++Index)
	{
		Result.AppendChar(TEXT("0123456789ABCDEF")[Bytes[Index] >> 4]);
		Result.AppendChar(TEXT("0123456789ABCDEF")[Bytes[Index] & 15]);
	}
	return Result;
}

int32 HexToBytes(const FString& Hex, uint8* OutBytes)
{
	int32 Count = 0;
	// An odd text reads as though a 0 stood in front.
	for (int32 Index = Hex.Len() % 2 ? -1 : 0; Index < Hex.Len(); Index += 2)
	{
		const int32 High = Index < 0 ? 0 : FChar::ConvertCharDigitToInt(Hex[Index]);
		OutBytes[Count++] = (uint8)(High << 4 | FChar::ConvertCharDigitToInt(Hex[Index + 1]));
	}
	return Count;
}
