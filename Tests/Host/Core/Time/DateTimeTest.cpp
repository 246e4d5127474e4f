#include "Misc/DateTime.h"
#include "Support/HostTypePrinting.h"
#include "Support/TestClock.h"

#include <gtest/gtest.h>

#include <limits>

TEST(DateTime, AgreesWithTheCalendarOnEveryDay)
{
	int64 Days = 0;
	int32 Weekday = 0;
	for (int32 Year = 1; Year <= 9999; ++Year)
	{
		for (int32 Month = 1, DayOfYear = 1; Month <= 12; ++Month)
		{
			for (int32 Day = 1; Day <= FDateTime::DaysInMonth(Year, Month); ++Day, ++Days, ++DayOfYear)
			{
				const FDateTime Date(Days * ETimespan::TicksPerDay);
				int32 GotYear, GotMonth, GotDay;
				Date.GetDate(GotYear, GotMonth, GotDay);
				ASSERT_TRUE(GotYear == Year && GotMonth == Month && GotDay == Day) << Days;
				ASSERT_TRUE(Day != 1 || FDateTime(Year, Month, Day) == Date) << Days;
				ASSERT_TRUE(Day != 1 || Date.GetDayOfYear() == DayOfYear) << Days;
				ASSERT_EQ((int32)Date.GetDayOfWeek(), Weekday);
				Weekday = (Weekday + 1) % 7;
			}
		}
	}
	EXPECT_EQ(FDateTime(Days * ETimespan::TicksPerDay - 1).GetTicks(), FDateTime::MaxValue().GetTicks());
	EXPECT_EQ(FDateTime(2024, 2, 29).GetDayOfWeek(), EDayOfWeek::Thursday);
}

TEST(DateTime, RefusesDatesThatDoNotExist)
{
	EXPECT_TRUE(FDateTime::Validate(2000, 2, 29, 23, 59, 59, 999));
	EXPECT_FALSE(FDateTime::Validate(1900, 2, 29, 0, 0, 0, 0));
	EXPECT_FALSE(FDateTime::Validate(0, 1, 1, 0, 0, 0, 0));
	EXPECT_FALSE(FDateTime::Validate(10000, 1, 1, 0, 0, 0, 0));
	EXPECT_FALSE(FDateTime::Validate(2024, 13, 1, 0, 0, 0, 0));
	EXPECT_FALSE(FDateTime::Validate(2024, 4, 31, 0, 0, 0, 0));
	EXPECT_FALSE(FDateTime::Validate(2024, 4, 0, 0, 0, 0, 0));
	EXPECT_FALSE(FDateTime::Validate(2024, 1, 1, 24, 0, 0, 0));
	EXPECT_FALSE(FDateTime::Validate(2024, 1, 1, 0, 60, 0, 0));
	EXPECT_FALSE(FDateTime::Validate(2024, 1, 1, 0, 0, -1, 0));
}

TEST(DateTime, WritesItsForms)
{
	const FDateTime Time(2024, 2, 9, 13, 5, 7, 42);
	EXPECT_EQ(Time.ToIso8601(), FString(TEXT("2024-02-09T13:05:07.042Z")));
	EXPECT_EQ(Time.ToString(), FString(TEXT("2024.02.09-13.05.07")));
	EXPECT_EQ(Time.ToString(TEXT("%y %D %h%a %A %s %% %x %")), FString(TEXT("24 040 01pm PM 042 % x %")));
	EXPECT_EQ(FDateTime(2024, 1, 1, 0, 30).ToString(TEXT("%h%A")), FString(TEXT("12AM")));
	EXPECT_EQ(FDateTime().ToIso8601(), FString(TEXT("0001-01-01T00:00:00.000Z")));
}

TEST(DateTime, ReadsIsoTextInAllItsForms)
{
	const struct
	{
		const TCHAR* Text;
		const TCHAR* Utc;
	} Cases[] = {
		{TEXT("2024-02-09T13:05:07.042Z"), TEXT("2024-02-09T13:05:07.042Z")},
		{TEXT("2024-02-09"), TEXT("2024-02-09T00:00:00.000Z")},
		{TEXT("2024-02-09 13:05:07"), TEXT("2024-02-09T13:05:07.000Z")},
		{TEXT("2024-02-09t13:05:07,5z"), TEXT("2024-02-09T13:05:07.500Z")},
		{TEXT("2024-02-09T13:05:07.123456789012345678901234567890Z"), TEXT("2024-02-09T13:05:07.123Z")},
		{TEXT("2024-03-01T00:30:00+01:00"), TEXT("2024-02-29T23:30:00.000Z")},
		{TEXT("2024-02-29T23:30:00-0130"), TEXT("2024-03-01T01:00:00.000Z")},
		{TEXT("2024-02-29T23:30:00+02"), TEXT("2024-02-29T21:30:00.000Z")},
	};
	for (const auto& Case : Cases)
	{
		FDateTime Time;
		EXPECT_TRUE(FDateTime::ParseIso8601(Case.Text, Time)) << TCHAR_TO_UTF8(Case.Text);
		EXPECT_EQ(Time.ToIso8601(), FString(Case.Utc));
	}
	for (const TCHAR* Bad : {TEXT(""), TEXT("2024"), TEXT("2024-2-9"), TEXT("2024-02-30"), TEXT("2024-02-09T"),
			 TEXT("2024-02-09T25:00:00Z"), TEXT("2024-02-09T13:05:07Zx"), TEXT("2024-02-09T13:05:07+24:00"),
			 TEXT("2024-02-09T13:05:07+01:60"), TEXT("2024-02-09T13:05:07+1"), TEXT("0001-01-01T00:00:00+01:00"),
			 TEXT("9999-12-31T23:59:59-01:00"), TEXT("２０２４-02-09"), TEXT(" 2024-02-09")})
	{
		FDateTime Time(42);
		EXPECT_FALSE(FDateTime::ParseIso8601(Bad, Time)) << TCHAR_TO_UTF8(Bad);
		EXPECT_EQ(Time.GetTicks(), 42);
	}
	FDateTime Plain;
	EXPECT_TRUE(FDateTime::Parse(TEXT("2024.02.09-13.05.07"), Plain));
	EXPECT_EQ(Plain.ToString(), FString(TEXT("2024.02.09-13.05.07")));
	EXPECT_FALSE(FDateTime::Parse(TEXT("2024.02.09-13.05.07 "), Plain));
}

TEST(DateTime, CountsSecondsOfTheUnixEpochDownwards)
{
	EXPECT_EQ(FDateTime(1970, 1, 1).ToUnixTimestamp(), 0);
	EXPECT_EQ(FDateTime(2001, 9, 9, 1, 46, 40).ToUnixTimestamp(), 1000000000);
	EXPECT_EQ(FDateTime(1969, 12, 31, 23, 59, 59, 500).ToUnixTimestamp(), -1);
	EXPECT_EQ(FDateTime(1969, 12, 31, 23, 59, 59, 0).ToUnixTimestamp(), -1);
	EXPECT_TRUE(FDateTime::FromUnixTimestamp(-86400) == FDateTime(1969, 12, 31));
}

TEST(DateTime, NowIsTheHostsClock)
{
	FTestClock Clock;
	Clock.SetUtcTicks(FDateTime(2030, 6, 1, 12).GetTicks());
	EXPECT_TRUE(FDateTime::UtcNow() == FDateTime(2030, 6, 1, 12));
	Clock.Advance(90);
	EXPECT_TRUE(FDateTime::UtcNow() == FDateTime(2030, 6, 1, 12, 1, 30));
	EXPECT_LE(std::abs((FDateTime::Now() - FDateTime::UtcNow()).GetTotalHours()), 14.0);
	EXPECT_TRUE(FDateTime::Today().GetTimeOfDay().IsZero());
}

TEST(Timespan, RoundsAndStopsAtItsEnds)
{
	EXPECT_EQ(FTimespan::FromSeconds(1.5).GetTicks(), 15000000);
	EXPECT_EQ(FTimespan::FromMilliseconds(-0.00004).GetTicks(), 0);
	EXPECT_TRUE(FTimespan::FromDays(1e30) == FTimespan::MaxValue());
	EXPECT_TRUE(FTimespan::FromDays(-1e30) == FTimespan::MinValue());
	EXPECT_TRUE(FTimespan::FromSeconds(std::numeric_limits<double>::quiet_NaN()).IsZero());
	EXPECT_TRUE(FTimespan(1, 30, 0) * 2 == FTimespan(3, 0, 0));
	EXPECT_TRUE(FTimespan(3, 0, 0) / 0 == FTimespan::MaxValue());
	EXPECT_EQ(FTimespan(1, 2, 3).ToString(), FString(TEXT("+01:02:03.000")));
	EXPECT_EQ((-FTimespan(5, 0, 0, 1)).ToString(), FString(TEXT("-5.00:00:01.000")));
	EXPECT_FALSE(FTimespan::MinValue().ToString().IsEmpty());
	EXPECT_EQ(FTimespan(26, 61, 61).GetDays(), 1);
	EXPECT_EQ(FTimespan(26, 61, 61).GetHours(), 3);
	EXPECT_EQ(FTimespan(26, 61, 61).GetMinutes(), 2);
}
