#pragma once

#include "Misc/Timespan.h"

enum class EDayOfWeek : uint8
{
	Monday,
	Tuesday,
	Wednesday,
	Thursday,
	Friday,
	Saturday,
	Sunday
};

/**
 * A point in time without a zone, in ticks of 100 nanoseconds since the first of January of the year 1, in the
 * proleptic Gregorian calendar up to the year 9999. The default value is that first instant.
 */
struct FDateTime
{
	constexpr FDateTime() = default;
	constexpr explicit FDateTime(int64 InTicks)
		: Ticks(InTicks)
	{
	}
	/** The parts must make a valid date (see `Validate`); anything else is a programmer's mistake. */
	FDateTime(
		int32 Year, int32 Month, int32 Day, int32 Hour = 0, int32 Minute = 0, int32 Second = 0, int32 Millisecond = 0);

	/** UTC, or the local time of the process's zone. */
	static FDateTime UtcNow();
	static FDateTime Now();
	static FDateTime Today() { return Now().GetDate(); }
	static FDateTime FromUnixTimestamp(int64 Seconds);
	static constexpr FDateTime MinValue() { return FDateTime(0); }
	static constexpr FDateTime MaxValue() { return FDateTime(3652059 * ETimespan::TicksPerDay - 1); }

	static bool Validate(int32 Year, int32 Month, int32 Day, int32 Hour, int32 Minute, int32 Second, int32 Millisecond);
	static bool IsLeapYear(int32 Year);
	/** @param Month 1 to 12. */
	static int32 DaysInMonth(int32 Year, int32 Month);

	/** Reads the default form of `ToString`. @return false, and no change, for anything else. */
	static bool Parse(FStringView Text, FDateTime& OutDateTime);

	/**
	 * Reads a date, or a date and a time with a fraction of any length, with Z, an offset or no zone; an offset is
	 * taken off, so that the result is UTC. @return false, and no change, for anything else.
	 */
	static bool ParseIso8601(FStringView Text, FDateTime& OutDateTime);

	constexpr int64 GetTicks() const { return Ticks; }
	void GetDate(int32& OutYear, int32& OutMonth, int32& OutDay) const;
	FDateTime GetDate() const { return FDateTime(Ticks - Ticks % ETimespan::TicksPerDay); }
	FTimespan GetTimeOfDay() const { return FTimespan(Ticks % ETimespan::TicksPerDay); }
	int32 GetYear() const;
	int32 GetMonth() const;
	int32 GetDay() const;
	int32 GetDayOfYear() const;
	EDayOfWeek GetDayOfWeek() const { return (EDayOfWeek)(Ticks / ETimespan::TicksPerDay % 7); }
	int32 GetHour() const { return GetTimeOfDay().GetHours(); }
	/** 1 to 12. */
	int32 GetHour12() const;
	bool IsMorning() const { return GetHour() < 12; }
	int32 GetMinute() const { return GetTimeOfDay().GetMinutes(); }
	int32 GetSecond() const { return GetTimeOfDay().GetSeconds(); }
	int32 GetMillisecond() const { return GetTimeOfDay().GetFractionMilli(); }

	/** Seconds since 1970, rounded down. */
	int64 ToUnixTimestamp() const;
	double ToUnixTimestampDecimal() const;

	/** YYYY-MM-DDTHH:MM:SS.mmmZ; the value is taken as UTC. */
	FString ToIso8601() const;
	/** YYYY.MM.DD-HH.MM.SS */
	FString ToString() const;
	/**
	 * Letters behind a per cent sign stand for: a, A am or AM; d day; D day of the year; m month; y, Y year in two or
	 * four digits; h, H hour of 12 or 24; M minute; S second; s millisecond. Any other letter stands for itself.
	 */
	FString ToString(const TCHAR* Format) const;

	constexpr FDateTime operator+(FTimespan Span) const { return FDateTime(Ticks + Span.GetTicks()); }
	constexpr FDateTime operator-(FTimespan Span) const { return FDateTime(Ticks - Span.GetTicks()); }
	constexpr FTimespan operator-(FDateTime Other) const { return FTimespan(Ticks - Other.Ticks); }
	FDateTime& operator+=(FTimespan Span) { return *this = *this + Span; }
	FDateTime& operator-=(FTimespan Span) { return *this = *this - Span; }
	constexpr auto operator<=>(const FDateTime&) const = default;
	friend uint32 GetTypeHash(FDateTime DateTime) { return GetTypeHash(DateTime.Ticks); }

private:
	int64 Ticks = 0;
};
