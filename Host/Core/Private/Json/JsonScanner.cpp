#include "Json/JsonScanner.h"

#include <algorithm>
#include <cstring>

namespace
{
bool IsSpace(ANSICHAR Char)
{
	return Char == ' ' || Char == '\n' || Char == '\r' || Char == '\t';
}

bool IsDigit(ANSICHAR Char)
{
	return Char >= '0' && Char <= '9';
}

/** The value of a hexadecimal digit, or -1. */
int32 HexValue(ANSICHAR Char)
{
	if (IsDigit(Char))
	{
		return Char - '0';
	}
	const ANSICHAR Lower = (ANSICHAR)(Char | 0x20);
	return Lower >= 'a' && Lower <= 'f' ? Lower - 'a' + 10 : -1;
}
}

FJsonScanner::FJsonScanner(const ANSICHAR* InText, int64 Bytes)
	: Text(InText)
	, At(InText)
	, End(InText + Bytes)
{
}

bool FJsonScanner::Fail(const TCHAR* InError)
{
	return FailAt(At, InError);
}

bool FJsonScanner::FailAt(const ANSICHAR* Place, const TCHAR* InError)
{
	Error = InError;
	ErrorPlace = Place;
	return false;
}

FString FJsonScanner::GetErrorMessage() const
{
	if (!Error)
	{
		return FString();
	}
	const int64 Line = std::count(Text, ErrorPlace, '\n') + 1;
	const ANSICHAR* LineStart = ErrorPlace;
	while (LineStart != Text && LineStart[-1] != '\n')
	{
		--LineStart;
	}
	const auto BeginsCharacter = [](ANSICHAR Byte) { return ((uint8)Byte & 0xC0) != 0x80; };
	const int64 Column = std::count_if(LineStart, ErrorPlace, BeginsCharacter) + 1;
	return FString::Printf(TEXT("%s. Line: %lld Ch: %lld"), Error, Line, Column);
}

void FJsonScanner::SkipSpace()
{
	while (At != End && IsSpace(*At))
	{
		++At;
	}
}

bool FJsonScanner::Accept(ANSICHAR Char)
{
	if (At == End || *At != Char)
	{
		return false;
	}
	++At;
	return true;
}

bool FJsonScanner::ScanString(FString& OutText)
{
	const ANSICHAR* Start = At++;
	while (true)
	{
		const ANSICHAR* Plain = At;
		while (At != End && *At != '"' && *At != '\\' && (uint8)*At >= 0x20)
		{
			++At;
		}
		OutText.AppendUtf8(Plain, At - Plain);
		if (At == End)
		{
			return FailAt(Start, TEXT("This string has no closing quote"));
		}
		if (Accept('"'))
		{
			return true;
		}
		if (*At != '\\')
		{
			return Fail(TEXT("A control character stands in a string without an escape"));
		}
		if (!ScanEscape(OutText))
		{
			return false;
		}
	}
}

bool FJsonScanner::ScanEscape(FString& OutText)
{
	static constexpr char Letters[] = "\"\\/bfnrt";
	static constexpr TCHAR Meanings[] = u"\"\\/\b\f\n\r\t";
	++At;
	if (Accept('u'))
	{
		return ScanCodeUnit(OutText);
	}
	const char* Found = At != End && *At != '\0' ? std::strchr(Letters, *At) : nullptr;
	if (!Found)
	{
		return FailAt(At - 1, TEXT("This escape isn't one that JSON knows"));
	}
	OutText.AppendChar(Meanings[Found - Letters]);
	++At;
	return true;
}

/** Surrogates need no partner here: two that belong together come in order and make their character. */
bool FJsonScanner::ScanCodeUnit(FString& OutText)
{
	uint32 Unit = 0;
	for (int32 Digit = 0; Digit < 4; ++Digit)
	{
		const int32 Value = At + Digit < End ? HexValue(At[Digit]) : -1;
		if (Value < 0)
		{
			return FailAt(At - 2, TEXT("The escape \\u needs four hexadecimal digits"));
		}
		Unit = Unit * 16 + (uint32)Value;
	}
	At += 4;
	// Not AppendChar, which drops a NUL.
	*OutText.AppendUninitialized(1) = (TCHAR)Unit;
	return true;
}

bool FJsonScanner::SkipDigits()
{
	const ANSICHAR* Start = At;
	while (At != End && IsDigit(*At))
	{
		++At;
	}
	return At != Start;
}

bool FJsonScanner::ScanNumber(const ANSICHAR*& OutStart, const ANSICHAR*& OutEnd, bool& bOutWhole)
{
	OutStart = At;
	const bool bNegative = Accept('-');
	const ANSICHAR* Whole = At;
	if (!SkipDigits())
	{
		At = OutStart;
		return Fail(bNegative ? TEXT("Expected a digit behind '-'") : TEXT("Expected a value"));
	}
	if (*Whole == '0' && At - Whole > 1)
	{
		return FailAt(OutStart, TEXT("A number may not begin with a needless 0"));
	}
	const ANSICHAR* WholeEnd = At;
	if (Accept('.') && !SkipDigits())
	{
		return Fail(TEXT("Expected a digit behind the decimal point"));
	}
	if (Accept('e') || Accept('E'))
	{
		Accept('-') || Accept('+');
		if (!SkipDigits())
		{
			return Fail(TEXT("Expected a digit in the exponent"));
		}
	}
	OutEnd = At;
	bOutWhole = WholeEnd == At;
	return true;
}

bool FJsonScanner::ScanWord(const char* Word)
{
	const int64 Length = (int64)std::strlen(Word);
	if (End - At < Length || std::memcmp(At, Word, (SIZE_T)Length) != 0)
	{
		return Fail(TEXT("Expected a value"));
	}
	At += Length;
	return true;
}

bool FJsonScanner::ScanName(FString& OutName)
{
	SkipSpace();
	if (Peek() != '"')
	{
		return Fail(TEXT("Expected the name of a member in double quotes"));
	}
	if (!ScanString(OutName))
	{
		return false;
	}
	SkipSpace();
	return Accept(':') || Fail(TEXT("Expected ':' behind the name of a member"));
}
