#include "Json/JsonTextParser.h"

#include "Dom/JsonObject.h"
#include "Json/JsonNumber.h"

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

FJsonTextParser::FJsonTextParser(const ANSICHAR* InText, int64 Bytes)
	: Text(InText)
	, At(InText)
	, End(InText + Bytes)
{
}

bool FJsonTextParser::Parse(TSharedPtr<FJsonValue>& OutValue)
{
	SkipSpace();
	if (At == End)
	{
		return Fail(TEXT("The text is empty"));
	}
	if (!ParseValue(OutValue, 1))
	{
		return false;
	}
	SkipSpace();
	return At == End || Fail(TEXT("Unexpected text behind the end of the value"));
}

bool FJsonTextParser::Fail(const TCHAR* InError)
{
	return FailAt(At, InError);
}

bool FJsonTextParser::FailAt(const ANSICHAR* Place, const TCHAR* InError)
{
	Error = InError;
	ErrorPlace = Place;
	return false;
}

FString FJsonTextParser::GetErrorMessage() const
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

void FJsonTextParser::SkipSpace()
{
	while (At != End && IsSpace(*At))
	{
		++At;
	}
}

bool FJsonTextParser::Accept(ANSICHAR Char)
{
	if (At == End || *At != Char)
	{
		return false;
	}
	++At;
	return true;
}

bool FJsonTextParser::ParseValue(TSharedPtr<FJsonValue>& OutValue, int32 Depth)
{
	SkipSpace();
	if (At == End)
	{
		return Fail(TEXT("The text ends where a value is expected"));
	}
	switch (*At)
	{
	case '{':
		return ParseObject(OutValue, Depth);
	case '[':
		return ParseArray(OutValue, Depth);
	case 't':
		return ParseWord("true", MakeShared<FJsonValueBoolean>(true), OutValue);
	case 'f':
		return ParseWord("false", MakeShared<FJsonValueBoolean>(false), OutValue);
	case 'n':
		return ParseWord("null", MakeShared<FJsonValueNull>(), OutValue);
	case '"':
		break;
	default:
		return ParseNumber(OutValue);
	}
	FString String;
	if (!ParseString(String))
	{
		return false;
	}
	OutValue = MakeShared<FJsonValueString>(MoveTemp(String));
	return true;
}

bool FJsonTextParser::ParseObject(TSharedPtr<FJsonValue>& OutValue, int32 Depth)
{
	if (Depth > JsonMaxDepth)
	{
		return Fail(TEXT("Objects and arrays are nested too deeply"));
	}
	++At;
	TSharedPtr<FJsonObject> Object = MakeShared<FJsonObject>();
	SkipSpace();
	if (!Accept('}'))
	{
		do
		{
			if (!ParseMember(*Object, Depth))
			{
				return false;
			}
			SkipSpace();
		} while (Accept(','));
		if (!Accept('}'))
		{
			return Fail(TEXT("Expected ',' or '}' behind a member"));
		}
	}
	OutValue = MakeShared<FJsonValueObject>(MoveTemp(Object));
	return true;
}

bool FJsonTextParser::ParseMember(FJsonObject& Object, int32 Depth)
{
	SkipSpace();
	if (At == End || *At != '"')
	{
		return Fail(TEXT("Expected the name of a member in double quotes"));
	}
	FString Name;
	if (!ParseString(Name))
	{
		return false;
	}
	SkipSpace();
	if (!Accept(':'))
	{
		return Fail(TEXT("Expected ':' behind the name of a member"));
	}
	TSharedPtr<FJsonValue> Value;
	if (!ParseValue(Value, Depth + 1))
	{
		return false;
	}
	Object.Values.Add(Name, MoveTemp(Value));
	return true;
}

bool FJsonTextParser::ParseArray(TSharedPtr<FJsonValue>& OutValue, int32 Depth)
{
	if (Depth > JsonMaxDepth)
	{
		return Fail(TEXT("Objects and arrays are nested too deeply"));
	}
	++At;
	TArray<TSharedPtr<FJsonValue>> Array;
	SkipSpace();
	if (!Accept(']'))
	{
		do
		{
			if (!ParseValue(Array.AddDefaulted_GetRef(), Depth + 1))
			{
				return false;
			}
			SkipSpace();
		} while (Accept(','));
		if (!Accept(']'))
		{
			return Fail(TEXT("Expected ',' or ']' behind an element"));
		}
	}
	OutValue = MakeShared<FJsonValueArray>(MoveTemp(Array));
	return true;
}

bool FJsonTextParser::ParseString(FString& OutText)
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
		if (!ParseEscape(OutText))
		{
			return false;
		}
	}
}

bool FJsonTextParser::ParseEscape(FString& OutText)
{
	static constexpr char Letters[] = "\"\\/bfnrt";
	static constexpr TCHAR Meanings[] = u"\"\\/\b\f\n\r\t";
	++At;
	if (Accept('u'))
	{
		return ParseCodeUnit(OutText);
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
bool FJsonTextParser::ParseCodeUnit(FString& OutText)
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
	OutText.AppendChar((TCHAR)Unit);
	return true;
}

bool FJsonTextParser::SkipDigits()
{
	const ANSICHAR* Start = At;
	while (At != End && IsDigit(*At))
	{
		++At;
	}
	return At != Start;
}

bool FJsonTextParser::ParseNumber(TSharedPtr<FJsonValue>& OutValue)
{
	const ANSICHAR* Start = At;
	const bool bNegative = Accept('-');
	const ANSICHAR* Whole = At;
	if (!SkipDigits())
	{
		At = Start;
		return Fail(bNegative ? TEXT("Expected a digit behind '-'") : TEXT("Expected a value"));
	}
	if (*Whole == '0' && At - Whole > 1)
	{
		return FailAt(Start, TEXT("A number may not begin with a needless 0"));
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
	OutValue = JsonNumber::Make(Start, At, WholeEnd == At);
	return true;
}

bool FJsonTextParser::ParseWord(const char* Word, TSharedPtr<FJsonValue>&& Meaning, TSharedPtr<FJsonValue>& OutValue)
{
	const int64 Length = (int64)std::strlen(Word);
	if (End - At < Length || std::memcmp(At, Word, (SIZE_T)Length) != 0)
	{
		return Fail(TEXT("Expected a value"));
	}
	At += Length;
	OutValue = MoveTemp(Meaning);
	return true;
}
