#include "Misc/CString.h"

#include "Containers/StringView.h"

#include <charconv>
#include <cstdlib>
#include <cstring>

namespace
{
/** Copies the part at the front that may belong to a number, so that the narrow library can read it. */
struct FNumberText
{
	char Text[512];
	int32 Blanks = 0;

	explicit FNumberText(const TCHAR* String)
	{
		while (FChar::IsWhitespace(String[Blanks]))
		{
			++Blanks;
		}
		int32 Count = 0;
		const TCHAR* Number = String + Blanks;
		while (Count < 511 && Number[Count] > 32 && Number[Count] < 127)
		{
			Text[Count] = (char)Number[Count];
			++Count;
		}
		Text[Count] = 0;
	}
};

double ParseDouble(const TCHAR* String)
{
	const FNumberText Number(String);
	const char* First = Number.Text + (Number.Text[0] == '+' ? 1 : 0);
	double Value = 0;
	const std::from_chars_result Result = std::from_chars(First, First + std::strlen(First), Value);
	// Out of range, the C library tells which way: infinity or nearly 0.
	return Result.ec == std::errc::result_out_of_range ? std::strtod(First, nullptr) : Value;
}

template <typename ResultType, typename ConvertType>
ResultType ParseInteger(const TCHAR* String, TCHAR** OutEnd, int32 Base, const ConvertType& Convert)
{
	const FNumberText Number(String);
	char* End = nullptr;
	const ResultType Value = (ResultType)Convert(Number.Text, &End, Base);
	if (OutEnd)
	{
		*OutEnd = const_cast<TCHAR*>(String) + (End == Number.Text ? 0 : Number.Blanks + (End - Number.Text));
	}
	return Value;
}
} // namespace

int32 FCString::Strcmp(const TCHAR* A, const TCHAR* B)
{
	return StringSearch::Compare(A, Strlen(A), B, Strlen(B), ESearchCase::CaseSensitive);
}

int32 FCString::Strncmp(const TCHAR* A, const TCHAR* B, int32 Count)
{
	return FStringView(A).Left(Count).Compare(FStringView(B).Left(Count), ESearchCase::CaseSensitive);
}

int32 FCString::Stricmp(const TCHAR* A, const TCHAR* B)
{
	return StringSearch::Compare(A, Strlen(A), B, Strlen(B), ESearchCase::IgnoreCase);
}

int32 FCString::Strnicmp(const TCHAR* A, const TCHAR* B, int32 Count)
{
	return FStringView(A).Left(Count).Compare(FStringView(B).Left(Count), ESearchCase::IgnoreCase);
}

const TCHAR* FCString::Strchr(const TCHAR* String, TCHAR Char)
{
	return std::char_traits<TCHAR>::find(String, (SIZE_T)Strlen(String) + 1, Char);
}

const TCHAR* FCString::Strrchr(const TCHAR* String, TCHAR Char)
{
	for (int32 Index = Strlen(String); Index >= 0; --Index)
	{
		if (String[Index] == Char)
		{
			return String + Index;
		}
	}
	return nullptr;
}

const TCHAR* FCString::Strstr(const TCHAR* String, const TCHAR* Find)
{
	const int32 Place = StringSearch::Find(String, Strlen(String), Find, Strlen(Find), 0, ESearchCase::CaseSensitive);
	return Place == INDEX_NONE ? nullptr : String + Place;
}

const TCHAR* FCString::Stristr(const TCHAR* String, const TCHAR* Find)
{
	const int32 Place = StringSearch::Find(String, Strlen(String), Find, Strlen(Find), 0, ESearchCase::IgnoreCase);
	return Place == INDEX_NONE ? nullptr : String + Place;
}

int32 FCString::Atoi(const TCHAR* String)
{
	return Strtoi(String, nullptr, 10);
}

int64 FCString::Atoi64(const TCHAR* String)
{
	return Strtoi64(String, nullptr, 10);
}

float FCString::Atof(const TCHAR* String)
{
	return (float)ParseDouble(String);
}

double FCString::Atod(const TCHAR* String)
{
	return ParseDouble(String);
}

int64 FCString::Strtoi64(const TCHAR* String, TCHAR** OutEnd, int32 Base)
{
	return ParseInteger<int64>(String, OutEnd, Base, std::strtoll);
}

uint64 FCString::Strtoui64(const TCHAR* String, TCHAR** OutEnd, int32 Base)
{
	return ParseInteger<uint64>(String, OutEnd, Base, std::strtoull);
}

int32 FCString::Strtoi(const TCHAR* String, TCHAR** OutEnd, int32 Base)
{
	const int64 Value = Strtoi64(String, OutEnd, Base);
	return Value < MIN_int32 ? MIN_int32 : (Value > MAX_int32 ? MAX_int32 : (int32)Value);
}

bool FCString::IsNumeric(const TCHAR* String)
{
	if (*String == u'-' || *String == u'+')
	{
		++String;
	}
	int32 Points = 0;
	int32 Digits = 0;
	for (; *String; ++String)
	{
		Points += *String == u'.';
		Digits += FChar::IsDigit(*String);
		if (Points > 1 || (*String != u'.' && !FChar::IsDigit(*String)))
		{
			return false;
		}
	}
	return Digits > 0;
}

bool FCString::ToBool(const TCHAR* String)
{
	const FStringView Word = FStringView(String).TrimStartAndEnd();
	return Word == TEXT("true") || Word == TEXT("yes") || Word == TEXT("on") || Atoi(String) != 0;
}
