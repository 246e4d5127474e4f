#include "Core/CVXJsonCursor.h"

#include <bit>

namespace
{
bool IsDigit(TCHAR Char)
{
	return Char >= TEXT('0') && Char <= TEXT('9');
}

/** The value of a hexadecimal digit, or -1. */
int32 HexValue(TCHAR Char)
{
	if (IsDigit(Char))
	{
		return Char - TEXT('0');
	}
	const TCHAR Lower = (TCHAR)(Char | 0x20);
	return Lower >= TEXT('a') && Lower <= TEXT('f') ? Lower - TEXT('a') + 10 : -1;
}

/** What a letter behind a backslash stands for; 0 for one that JSON doesn't know. */
TCHAR MeaningOf(TCHAR Letter)
{
	switch (Letter)
	{
	case TEXT('"'):
	case TEXT('\\'):
	case TEXT('/'):
		return Letter;
	case TEXT('b'):
		return TEXT('\b');
	case TEXT('f'):
		return TEXT('\f');
	case TEXT('n'):
		return TEXT('\n');
	case TEXT('r'):
		return TEXT('\r');
	case TEXT('t'):
		return TEXT('\t');
	default:
		return 0;
	}
}

constexpr uint64 OneEach = 0x0001000100010001ull;
constexpr uint64 TopBits = 0x8000800080008000ull;

/** Of four units at once: the top bit of the first that is below Limit, and perhaps of some behind it. */
uint64 FindBelow(uint64 Units, uint64 Limit)
{
	return (Units - OneEach * Limit) & ~Units & TopBits;
}

/** The same for what can't stand for itself in a string. */
uint64 FindSpecials(const TCHAR* Text)
{
	uint64 Units;
	FMemory::Memcpy(&Units, Text, sizeof(Units));
	// The bit that tells a quote from a blank is turned, which makes the quote and the controls a range.
	static_assert((TEXT('"') ^ 2) == 0x20);
	return FindBelow(Units ^ OneEach * 2, 0x21) | FindBelow(Units ^ OneEach * TEXT('\\'), 1);
}

/** How many units stand before the first that is marked. */
int32 CountTrailingUnits(uint64 Marks)
{
	return std::countr_zero(Marks) / 16;
}

/** The value of a number of few digits. */
bool ReadShortInteger(FStringView Number, int32& Out)
{
	constexpr int32 MaxDigits = 9;
	if (Number.Len() > MaxDigits)
	{
		return false;
	}
	int32 Value = 0;
	for (const TCHAR Char : Number)
	{
		if (!IsDigit(Char))
		{
			return false;
		}
		Value = Value * 10 + (Char - TEXT('0'));
	}
	Out = Value;
	return true;
}
} // namespace

FCVXJsonCursor::FCVXJsonCursor(FStringView InText)
	: FCVXJsonCursor(InText, 0)
{
	At += InText.StartsWith((TCHAR)0xFEFF) ? 1 : 0;
}

FCVXJsonCursor::FCVXJsonCursor(FStringView InRest, int32 InDepth)
	: Begin(InRest.GetData())
	, At(Begin)
	, End(Begin + InRest.Len())
	, Depth(InDepth)
{
}

bool FCVXJsonCursor::IsAtNumber()
{
	SkipSpace();
	return At != End && (*At == TEXT('-') || IsDigit(*At));
}

bool FCVXJsonCursor::IsAtEnd()
{
	SkipSpace();
	return At == End;
}

bool FCVXJsonCursor::ReadName(FStringView& Out)
{
	return ReadString(Out) && Accept(TEXT(':'));
}

/** The end of the run of characters that stand for themselves in a string. */
const TCHAR* FCVXJsonCursor::FindPlainEnd() const
{
	const TCHAR* Current = At;
	while (End - Current >= 8)
	{
		// Names and words are mostly shorter than this, and two at once leave one branch to guess.
		const uint64 First = FindSpecials(Current);
		const uint64 Second = FindSpecials(Current + 4);
		if ((First | Second) != 0)
		{
			return Current + (First != 0 ? CountTrailingUnits(First) : 4 + CountTrailingUnits(Second));
		}
		Current += 8;
	}
	while (Current != End && *Current != TEXT('"') && *Current != TEXT('\\') && *Current >= 0x20)
	{
		++Current;
	}
	return Current;
}

bool FCVXJsonCursor::ReadString(FStringView& Out)
{
	if (!Accept(TEXT('"')))
	{
		return false;
	}
	const TCHAR* PlainEnd = FindPlainEnd();
	if (PlainEnd != End && *PlainEnd == TEXT('"'))
	{
		Out = FStringView(At, (int32)(PlainEnd - At));
		At = PlainEnd + 1;
		return true;
	}
	Decoded.Reset();
	const bool bDecoded = DecodeString(Decoded);
	Out = Decoded;
	return bDecoded;
}

bool FCVXJsonCursor::ReadString(FString& Out, int32 Role)
{
	SkipSpace();
	const TCHAR* Start = At;
	Out.Reset();
	if (!Accept(TEXT('"')) || !DecodeString(Out))
	{
		return false;
	}
	if (Role != FCVXJsonHole::Ignored)
	{
		Note(Start, Role);
	}
	return true;
}

/** Goes on behind the opening quote. */
bool FCVXJsonCursor::DecodeString(FString& Out)
{
	for (;;)
	{
		const TCHAR* PlainEnd = FindPlainEnd();
		Out.Append(At, (int32)(PlainEnd - At));
		At = PlainEnd;
		if (At == End || *At < 0x20)
		{
			return false;
		}
		if (*At++ == TEXT('"'))
		{
			return true;
		}
		if (!DecodeEscape(Out))
		{
			return false;
		}
	}
}

bool FCVXJsonCursor::DecodeEscape(FString& Out)
{
	if (At == End)
	{
		return false;
	}
	const TCHAR Letter = *At++;
	if (Letter == TEXT('u'))
	{
		return DecodeCodeUnit(Out);
	}
	const TCHAR Meaning = MeaningOf(Letter);
	Out.Append(&Meaning, 1);
	return Meaning != 0;
}

/** Surrogates need no partner here: two that belong together come in order and make their character. */
bool FCVXJsonCursor::DecodeCodeUnit(FString& Out)
{
	if (End - At < 4)
	{
		return false;
	}
	int32 Unit = 0;
	for (int32 Digit = 0; Digit < 4; ++Digit)
	{
		const int32 Value = HexValue(*At++);
		if (Value < 0)
		{
			return false;
		}
		Unit = Unit * 16 + Value;
	}
	// A character alone would be dropped if it is NUL.
	const TCHAR Char = (TCHAR)Unit;
	Out.Append(&Char, 1);
	return true;
}

bool FCVXJsonCursor::SkipDigits()
{
	const TCHAR* Start = At;
	while (At != End && IsDigit(*At))
	{
		++At;
	}
	return At != Start;
}

bool FCVXJsonCursor::ReadNumber(FStringView& Out)
{
	SkipSpace();
	const TCHAR* Start = At;
	At += At != End && *At == TEXT('-') ? 1 : 0;
	const TCHAR* Whole = At;
	if (!SkipDigits() || (*Whole == TEXT('0') && At - Whole > 1))
	{
		return false;
	}
	if (At != End && *At == TEXT('.') && (++At, !SkipDigits()))
	{
		return false;
	}
	if (At != End && (*At == TEXT('e') || *At == TEXT('E')))
	{
		++At;
		At += At != End && (*At == TEXT('-') || *At == TEXT('+')) ? 1 : 0;
		if (!SkipDigits())
		{
			return false;
		}
	}
	Out = FStringView(Start, (int32)(At - Start));
	return true;
}

bool FCVXJsonCursor::ReadInteger(int32& Out, int32 Role)
{
	FStringView Number;
	if (!ReadNumber(Number))
	{
		return false;
	}
	if (Role != FCVXJsonHole::Ignored)
	{
		Note(Number.GetData(), Role);
	}
	if (ReadShortInteger(Number, Out))
	{
		return true;
	}
	Out = (int32)FMath::Clamp(FCString::Atod(*FString(Number)), (double)MIN_int32, (double)MAX_int32);
	return true;
}

bool FCVXJsonCursor::SkipWord(FStringView Word)
{
	if (End - At < Word.Len() || !FStringView(At, Word.Len()).Equals(Word))
	{
		return false;
	}
	At += Word.Len();
	return true;
}

bool FCVXJsonCursor::ReadBool(bool& bOut)
{
	bOut = IsAt(TEXT('t'));
	return SkipWord(bOut ? TEXTVIEW("true") : TEXTVIEW("false"));
}

bool FCVXJsonCursor::SkipValue()
{
	SkipSpace();
	FStringView Passed;
	switch (At != End ? *At : TEXT('\0'))
	{
	case TEXT('{'):
		return ReadObject([this](FStringView) { return SkipValue(); });
	case TEXT('['):
		return ReadArray([this] { return SkipValue(); });
	case TEXT('"'):
		return ReadString(Passed);
	case TEXT('t'):
		return SkipWord(TEXTVIEW("true"));
	case TEXT('f'):
		return SkipWord(TEXTVIEW("false"));
	case TEXT('n'):
		return SkipWord(TEXTVIEW("null"));
	default:
		return ReadNumber(Passed);
	}
}

bool FCVXJsonCursor::IgnoreValue()
{
	SkipSpace();
	const TCHAR* Start = At;
	if (!SkipValue())
	{
		return false;
	}
	Note(Start, FCVXJsonHole::Ignored);
	return true;
}

void FCVXJsonCursor::Note(const TCHAR* Start, int32 Role)
{
	if (Holes)
	{
		Holes->Add({(int32)(Start - Begin), (int32)(At - Begin), Depth, Role});
	}
}
