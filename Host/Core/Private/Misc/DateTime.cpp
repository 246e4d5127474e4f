#include "Misc/DateTime.h"

#include "HAL/HostClock.h"

#include <ctime>

namespace
{
constexpr int64 UnixEpochTicks = 621355968000000000ll;

/** Days from the first of January of the year 1 to the given date. */
int64 DaysBefore(int32 Year, int32 Month, int32 Day)
{
	static constexpr int16 BeforeMonth[] = {0, 31, 59, 90, 120, 151, 181, 212, 243, 273, 304, 334};
	const int32 Past = Year - 1;
	const int64 LeapDay = Month > 2 && FDateTime::IsLeapYear(Year) ? 1 : 0;
	return (int64)Past * 365 + Past / 4 - Past / 100 + Past / 400 + BeforeMonth[Month - 1] + LeapDay + Day - 1;
}

void AppendPart(FString& Out, TCHAR Letter, const FDateTime& Time)
{
	switch (Letter)
	{
	case u'a':
		Out += Time.IsMorning() ? TEXT("am") : TEXT("pm");
		return;
	case u'A':
		Out += Time.IsMorning() ? TEXT("AM") : TEXT("PM");
		return;
	case u'd':
		Out.Appendf(TEXT("%02d"), Time.GetDay());
		return;
	case u'D':
		Out.Appendf(TEXT("%03d"), Time.GetDayOfYear());
		return;
	case u'm':
		Out.Appendf(TEXT("%02d"), Time.GetMonth());
		return;
	case u'y':
		Out.Appendf(TEXT("%02d"), Time.GetYear() % 100);
		return;
	case u'Y':
		Out.Appendf(TEXT("%04d"), Time.GetYear());
		return;
	case u'h':
		Out.Appendf(TEXT("%02d"), Time.GetHour12());
		return;
	case u'H':
		Out.Appendf(TEXT("%02d"), Time.GetHour());
		return;
	case u'M':
		Out.Appendf(TEXT("%02d"), Time.GetMinute());
		return;
	case u'S':
		Out.Appendf(TEXT("%02d"), Time.GetSecond());
		return;
	case u's':
		Out.Appendf(TEXT("%03d"), Time.GetMillisecond());
		return;
	default:
		Out += Letter;
	}
}
} // namespace

FDateTime::FDateTime(int32 Year, int32 Month, int32 Day, int32 Hour, int32 Minute, int32 Second, int32 Millisecond)
{
	check(Validate(Year, Month, Day, Hour, Minute, Second, Millisecond));
	Ticks = DaysBefore(Year, Month, Day) * ETimespan::TicksPerDay + Hour * ETimespan::TicksPerHour +
		Minute * ETimespan::TicksPerMinute + Second * ETimespan::TicksPerSecond +
		Millisecond * ETimespan::TicksPerMillisecond;
}

FDateTime FDateTime::UtcNow()
{
	return FDateTime(FHostClock::Get().GetUtcTicks());
}

FDateTime FDateTime::Now()
{
	const FDateTime Utc = UtcNow();
	const time_t Seconds = (time_t)Utc.ToUnixTimestamp();
	tm Local = {};
	localtime_r(&Seconds, &Local);
	return Utc + FTimespan(Local.tm_gmtoff * ETimespan::TicksPerSecond);
}

FDateTime FDateTime::FromUnixTimestamp(int64 Seconds)
{
	return FDateTime(UnixEpochTicks + Seconds * ETimespan::TicksPerSecond);
}

bool FDateTime::Validate(int32 Year, int32 Month, int32 Day, int32 Hour, int32 Minute, int32 Second, int32 Millisecond)
{
	return Year >= 1 && Year <= 9999 && Month >= 1 && Month <= 12 && Day >= 1 && Day <= DaysInMonth(Year, Month) &&
		Hour >= 0 && Hour < 24 && Minute >= 0 && Minute < 60 && Second >= 0 && Second < 60 && Millisecond >= 0 &&
		Millisecond < 1000;
}

bool FDateTime::IsLeapYear(int32 Year)
{
	return Year % 4 == 0 && (Year % 100 != 0 || Year % 400 == 0);
}

int32 FDateTime::DaysInMonth(int32 Year, int32 Month)
{
	static constexpr int8 Days[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
	check(Month >= 1 && Month <= 12);
	return Month == 2 && IsLeapYear(Year) ? 29 : Days[Month - 1];
}

void FDateTime::GetDate(int32& OutYear, int32& OutMonth, int32& OutDay) const
{
	// Howard Hinnant, "chrono-Compatible Low-Level Date Algorithms", civil_from_days: eras of 400 years from March.
	const int64 Days = Ticks / ETimespan::TicksPerDay + 306;
	const int64 Era = Days / 146097;
	const int64 DayOfEra = Days % 146097;
	const int64 YearOfEra = (DayOfEra - DayOfEra / 1460 + DayOfEra / 36524 - DayOfEra / 146096) / 365;
	const int64 DayOfYear = DayOfEra - (365 * YearOfEra + YearOfEra / 4 - YearOfEra / 100);
	const int64 MonthFromMarch = (5 * DayOfYear + 2) / 153;
	OutDay = (int32)(DayOfYear - (153 * MonthFromMarch + 2) / 5 + 1);
	OutMonth = (int32)(MonthFromMarch < 10 ? MonthFromMarch + 3 : MonthFromMarch - 9);
	OutYear = (int32)(YearOfEra + Era * 400 + (OutMonth <= 2 ? 1 : 0));
}

int32 FDateTime::GetYear() const
{
	int32 Year, Month, Day;
	GetDate(Year, Month, Day);
	return Year;
}

int32 FDateTime::GetMonth() const
{
	int32 Year, Month, Day;
	GetDate(Year, Month, Day);
	return Month;
}

int32 FDateTime::GetDay() const
{
	int32 Year, Month, Day;
	GetDate(Year, Month, Day);
	return Day;
}

int32 FDateTime::GetDayOfYear() const
{
	return (int32)(Ticks / ETimespan::TicksPerDay - DaysBefore(GetYear(), 1, 1)) + 1;
}

int32 FDateTime::GetHour12() const
{
	const int32 Hour = GetHour() % 12;
	return Hour == 0 ? 12 : Hour;
}

int64 FDateTime::ToUnixTimestamp() const
{
	const int64 Since = Ticks - UnixEpochTicks;
	return Since / ETimespan::TicksPerSecond - (Since % ETimespan::TicksPerSecond < 0 ? 1 : 0);
}

double FDateTime::ToUnixTimestampDecimal() const
{
	return (double)(Ticks - UnixEpochTicks) / ETimespan::TicksPerSecond;
}

FString FDateTime::ToIso8601() const
{
	return ToString(TEXT("%Y-%m-%dT%H:%M:%S.%sZ"));
}

FString FDateTime::ToString() const
{
	return ToString(TEXT("%Y.%m.%d-%H.%M.%S"));
}

FString FDateTime::ToString(const TCHAR* Format) const
{
	FString Result;
	for (; *Format; ++Format)
	{
		if (*Format == u'%' && Format[1])
		{
			AppendPart(Result, *++Format, *this);
			continue;
		}
		Result += *Format;
	}
	return Result;
}
