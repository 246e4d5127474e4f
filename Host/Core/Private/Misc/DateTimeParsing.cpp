#include "Misc/DateTime.h"

namespace
{
/** Reads a text from left to right; once something doesn't fit, everything that follows fails. */
class FScanner
{
public:
	explicit FScanner(FStringView InText)
		: Text(InText)
	{
	}

	bool IsAtEnd() const { return At == Text.Len(); }
	bool IsDigitNext() const { return At < Text.Len() && FChar::IsDigit(Text[At]); }

	bool Accept(TCHAR Char)
	{
		const bool bThere = At < Text.Len() && Text[At] == Char;
		At += bThere ? 1 : 0;
		return bThere;
	}

	/** Exactly Count digits. */
	bool Number(int32 Count, int32& OutNumber)
	{
		OutNumber = 0;
		for (int32 Index = 0; Index < Count; ++Index)
		{
			if (!IsDigitNext())
			{
				return false;
			}
			OutNumber = OutNumber * 10 + (Text[At++] - u'0');
		}
		return true;
	}

	/** Digits of a fraction of a second, as ticks; those beyond a tick are dropped. */
	int64 Fraction()
	{
		int64 Ticks = 0;
		for (int64 Unit = ETimespan::TicksPerSecond / 10; IsDigitNext(); Unit /= 10)
		{
			Ticks += (Text[At++] - u'0') * Unit;
		}
		return Ticks;
	}

private:
	FStringView Text;
	int32 At = 0;
};

struct FParts
{
	int32 Year = 0;
	int32 Month = 0;
	int32 Day = 0;
	int32 Hour = 0;
	int32 Minute = 0;
	int32 Second = 0;

	bool ReadDate(FScanner& Scan, TCHAR Separator)
	{
		return Scan.Number(4, Year) && Scan.Accept(Separator) && Scan.Number(2, Month) && Scan.Accept(Separator) &&
			Scan.Number(2, Day);
	}

	bool ReadTime(FScanner& Scan, TCHAR Separator)
	{
		return Scan.Number(2, Hour) && Scan.Accept(Separator) && Scan.Number(2, Minute) && Scan.Accept(Separator) &&
			Scan.Number(2, Second);
	}

	bool IsValid() const { return FDateTime::Validate(Year, Month, Day, Hour, Minute, Second, 0); }
	FDateTime Make() const { return FDateTime(Year, Month, Day, Hour, Minute, Second); }
};

/** Reads Z, an offset, or nothing. */
bool ReadZone(FScanner& Scan, FTimespan& OutOffset)
{
	if (Scan.IsAtEnd() || Scan.Accept(u'Z') || Scan.Accept(u'z'))
	{
		return true;
	}
	const bool bEast = Scan.Accept(u'+');
	int32 Hours = 0;
	int32 Minutes = 0;
	if ((!bEast && !Scan.Accept(u'-')) || !Scan.Number(2, Hours))
	{
		return false;
	}
	const bool bMinutesFollow = Scan.Accept(u':') || !Scan.IsAtEnd();
	if (bMinutesFollow && !Scan.Number(2, Minutes))
	{
		return false;
	}
	OutOffset = FTimespan(Hours, Minutes, 0) * (bEast ? 1 : -1);
	return Hours < 24 && Minutes < 60;
}

bool IsInRange(FDateTime Time)
{
	return Time >= FDateTime::MinValue() && Time <= FDateTime::MaxValue();
}
} // namespace

bool FDateTime::Parse(FStringView Text, FDateTime& OutDateTime)
{
	FScanner Scan(Text);
	FParts Parts;
	if (!Parts.ReadDate(Scan, u'.') || !Scan.Accept(u'-') || !Parts.ReadTime(Scan, u'.') || !Scan.IsAtEnd() ||
		!Parts.IsValid())
	{
		return false;
	}
	OutDateTime = Parts.Make();
	return true;
}

bool FDateTime::ParseIso8601(FStringView Text, FDateTime& OutDateTime)
{
	FScanner Scan(Text);
	FParts Parts;
	int64 Fraction = 0;
	FTimespan Offset;
	if (!Parts.ReadDate(Scan, u'-'))
	{
		return false;
	}
	if (Scan.Accept(u'T') || Scan.Accept(u't') || Scan.Accept(u' '))
	{
		if (!Parts.ReadTime(Scan, u':'))
		{
			return false;
		}
		Fraction = Scan.Accept(u'.') || Scan.Accept(u',') ? Scan.Fraction() : 0;
		if (!ReadZone(Scan, Offset))
		{
			return false;
		}
	}
	if (!Scan.IsAtEnd() || !Parts.IsValid())
	{
		return false;
	}
	const FDateTime Result = Parts.Make() + FTimespan(Fraction) - Offset;
	if (!IsInRange(Result))
	{
		return false;
	}
	OutDateTime = Result;
	return true;
}
