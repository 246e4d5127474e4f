#include "PropertyText.h"

#include "Misc/OutputDevice.h"
#include "UObject/CoreUObjectLog.h"

#include <charconv>

namespace PropertyText
{
thread_local int32 FNesting::Depth = 0;

namespace
{
constexpr int32 MaxNumberLength = 400;

/** The escape of a unit inside quotes, or 0. */
TCHAR EscapeFor(TCHAR Char)
{
	switch (Char)
	{
	case TEXT('"'):
	case TEXT('\\'):
		return Char;
	case TEXT('\n'):
		return TEXT('n');
	case TEXT('\r'):
		return TEXT('r');
	case TEXT('\t'):
		return TEXT('t');
	default:
		return 0;
	}
}

TCHAR UnescapeOf(TCHAR Char)
{
	switch (Char)
	{
	case TEXT('n'):
		return TEXT('\n');
	case TEXT('r'):
		return TEXT('\r');
	case TEXT('t'):
		return TEXT('\t');
	default:
		return Char;
	}
}

bool EndsBareText(TCHAR Char)
{
	return Char == 0 || Char == TEXT(',') || Char == TEXT(')') || Char == TEXT('(') || Char == TEXT('"') ||
		FChar::IsWhitespace(Char);
}

/** Behind a quoted part that may hold anything but its quote and NUL, with backslash escapes. */
const TCHAR* SkipQuoted(const TCHAR* Text)
{
	const TCHAR Quote = *Text++;
	while (*Text && *Text != Quote)
	{
		Text += *Text == TEXT('\\') && Text[1] ? 2 : 1;
	}
	return *Text ? Text + 1 : nullptr;
}

template <typename RealType>
FString FormatRealAs(RealType Value)
{
	char Buffer[MaxNumberLength];
	std::to_chars_result Result = std::to_chars(Buffer, Buffer + sizeof(Buffer), Value, std::chars_format::fixed, 6);
	RealType ReadBack = 0;
	if (Result.ec == std::errc())
	{
		std::from_chars(Buffer, Result.ptr, ReadBack);
	}
	if (Result.ec != std::errc() || !(ReadBack == Value))
	{
		Result = std::to_chars(Buffer, Buffer + sizeof(Buffer), Value);
	}
	return FString::FromUtf8(Buffer, Result.ptr - Buffer);
}

/** The characters of a number as ASCII. @return how many. */
int32 CopyNumber(const TCHAR* Text, char (&Buffer)[MaxNumberLength])
{
	int32 Length = 0;
	while (Length < MaxNumberLength && Text[Length] && Text[Length] < 128 &&
		(IsWordChar(Text[Length]) || Text[Length] == TEXT('.') || Text[Length] == TEXT('-') ||
			Text[Length] == TEXT('+')))
	{
		Buffer[Length] = (char)Text[Length];
		++Length;
	}
	return Length;
}
} // namespace

void AppendQuoted(FString& Out, FStringView Text)
{
	Out += TEXT('"');
	for (const TCHAR Char : Text)
	{
		const TCHAR Escape = EscapeFor(Char);
		if (Escape)
		{
			Out += TEXT('\\');
		}
		Out += Escape ? Escape : Char;
	}
	Out += TEXT('"');
}

const TCHAR* ReadQuoted(const TCHAR* Text, FString& Out)
{
	if (*Text != TEXT('"'))
	{
		return nullptr;
	}
	Out.Reset();
	for (++Text; *Text && *Text != TEXT('"'); ++Text)
	{
		if (*Text == TEXT('\\') && Text[1])
		{
			++Text;
			Out += UnescapeOf(*Text);
		}
		else
		{
			Out += *Text;
		}
	}
	return *Text ? Text + 1 : nullptr;
}

const TCHAR* ReadBare(const TCHAR* Text, FString& Out)
{
	const TCHAR* Start = Text;
	while (!EndsBareText(*Text))
	{
		const TCHAR* Behind = *Text == TEXT('\'') ? SkipQuoted(Text) : nullptr;
		Text = Behind ? Behind : Text + 1;
	}
	Out = FString((int32)(Text - Start), Start);
	return Text;
}

const TCHAR* ReadQuotedOrBare(const TCHAR* Text, FString& Out)
{
	if (*Text == TEXT('"'))
	{
		return ReadQuoted(Text, Out);
	}
	const TCHAR* Behind = ReadBare(Text, Out);
	return Behind == Text ? nullptr : Behind;
}

const TCHAR* SkipValue(const TCHAR* Text)
{
	int32 Depth = 0;
	while (*Text)
	{
		if (*Text == TEXT('"'))
		{
			Text = SkipQuoted(Text);
			if (!Text)
			{
				return nullptr;
			}
			continue;
		}
		if (Depth == 0 && (*Text == TEXT(',') || *Text == TEXT(')')))
		{
			return Text;
		}
		Depth += *Text == TEXT('(') ? 1 : *Text == TEXT(')') ? -1 : 0;
		++Text;
	}
	return nullptr;
}

const TCHAR* ReadList(const TCHAR* Text, TFunctionRef<const TCHAR*(const TCHAR*)> ReadItem)
{
	const FNesting Nesting;
	if (Nesting.IsTooDeep() || *Text != TEXT('('))
	{
		return nullptr;
	}
	Text = SkipBlanks(Text + 1);
	while (*Text != TEXT(')'))
	{
		Text = ReadItem(Text);
		if (!Text)
		{
			return nullptr;
		}
		Text = SkipBlanks(Text);
		if (*Text != TEXT(',') && *Text != TEXT(')'))
		{
			return nullptr;
		}
		if (*Text == TEXT(','))
		{
			Text = SkipBlanks(Text + 1);
		}
	}
	return Text + 1;
}

FString FormatReal(double Value)
{
	return FormatRealAs(Value);
}

FString FormatReal(float Value)
{
	return FormatRealAs(Value);
}

const TCHAR* ReadReal(const TCHAR* Text, double& Out)
{
	char Buffer[MaxNumberLength];
	const int32 Length = CopyNumber(Text, Buffer);
	const int32 Start = Length > 1 && Buffer[0] == '+' && Buffer[1] != '-' ? 1 : 0;
	const std::from_chars_result Result = std::from_chars(Buffer + Start, Buffer + Length, Out);
	const char* End = Result.ptr;
	End += End < Buffer + Length && (*End == 'f' || *End == 'F') ? 1 : 0;
	const bool bWhole = End == Buffer + Length && Length < MaxNumberLength;
	return bWhole && Result.ec == std::errc() ? Text + Length : nullptr;
}

const TCHAR* ReadInteger(const TCHAR* Text, FWideInteger& Out)
{
	char Buffer[MaxNumberLength];
	const int32 Length = CopyNumber(Text, Buffer);
	const char* End = Buffer + Length;
	const char* Start = Buffer;
	Out.bNegative = Length > 0 && *Start == '-';
	Start += Length > 0 && (*Start == '-' || *Start == '+') ? 1 : 0;
	const bool bHex = End - Start > 2 && Start[0] == '0' && (Start[1] == 'x' || Start[1] == 'X');
	const std::from_chars_result Result = std::from_chars(Start + (bHex ? 2 : 0), End, Out.Magnitude, bHex ? 16 : 10);
	if (Result.ec != std::errc() || Length >= MaxNumberLength)
	{
		return nullptr;
	}
	if (Result.ptr == End)
	{
		return Text + Length;
	}
	double Fraction = 0;
	return *Result.ptr == '.' && !bHex ? ReadReal(Text, Fraction) : nullptr;
}

void Report(FOutputDevice* Device, const FString& Message)
{
	if (Device)
	{
		Device->Log(*Message);
		return;
	}
	UE_LOG(LogProperty, Warning, TEXT("%s"), *Message);
}
} // namespace PropertyText
