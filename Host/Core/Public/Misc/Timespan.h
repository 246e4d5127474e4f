#pragma once

#include "Containers/UnrealString.h"

namespace ETimespan
{
constexpr int64 TicksPerMicrosecond = 10;
constexpr int64 TicksPerMillisecond = 10000;
constexpr int64 TicksPerSecond = 10000000;
constexpr int64 TicksPerMinute = 600000000;
constexpr int64 TicksPerHour = 36000000000ll;
constexpr int64 TicksPerDay = 864000000000ll;
constexpr int64 NanosecondsPerTick = 100;
} // namespace ETimespan

/** A signed length of time in ticks of 100 nanoseconds. */
struct FTimespan
{
	constexpr FTimespan() = default;
	constexpr explicit FTimespan(int64 InTicks)
		: Ticks(InTicks)
	{
	}
	constexpr FTimespan(int32 Hours, int32 Minutes, int32 Seconds)
		: FTimespan(0, Hours, Minutes, Seconds)
	{
	}
	constexpr FTimespan(int32 Days, int32 Hours, int32 Minutes, int32 Seconds, int32 Nanoseconds = 0)
		: Ticks(Days * ETimespan::TicksPerDay + Hours * ETimespan::TicksPerHour + Minutes * ETimespan::TicksPerMinute +
			  Seconds * ETimespan::TicksPerSecond + Nanoseconds / ETimespan::NanosecondsPerTick)
	{
	}

	static FTimespan FromDays(double Days) { return FromUnits(Days, ETimespan::TicksPerDay); }
	static FTimespan FromHours(double Hours) { return FromUnits(Hours, ETimespan::TicksPerHour); }
	static FTimespan FromMinutes(double Minutes) { return FromUnits(Minutes, ETimespan::TicksPerMinute); }
	static FTimespan FromSeconds(double Seconds) { return FromUnits(Seconds, ETimespan::TicksPerSecond); }
	static FTimespan FromMilliseconds(double Count) { return FromUnits(Count, ETimespan::TicksPerMillisecond); }
	static constexpr FTimespan Zero() { return FTimespan(); }
	static constexpr FTimespan MaxValue() { return FTimespan(MAX_int64); }
	static constexpr FTimespan MinValue() { return FTimespan(MIN_int64); }

	constexpr int64 GetTicks() const { return Ticks; }
	constexpr bool IsZero() const { return Ticks == 0; }
	constexpr int32 GetDays() const { return (int32)(Ticks / ETimespan::TicksPerDay); }
	constexpr int32 GetHours() const { return (int32)(Ticks / ETimespan::TicksPerHour % 24); }
	constexpr int32 GetMinutes() const { return (int32)(Ticks / ETimespan::TicksPerMinute % 60); }
	constexpr int32 GetSeconds() const { return (int32)(Ticks / ETimespan::TicksPerSecond % 60); }
	constexpr int32 GetFractionMilli() const
	{
		return (int32)(Ticks % ETimespan::TicksPerSecond / ETimespan::TicksPerMillisecond);
	}
	constexpr double GetTotalDays() const { return (double)Ticks / ETimespan::TicksPerDay; }
	constexpr double GetTotalHours() const { return (double)Ticks / ETimespan::TicksPerHour; }
	constexpr double GetTotalMinutes() const { return (double)Ticks / ETimespan::TicksPerMinute; }
	constexpr double GetTotalSeconds() const { return (double)Ticks / ETimespan::TicksPerSecond; }
	constexpr double GetTotalMilliseconds() const { return (double)Ticks / ETimespan::TicksPerMillisecond; }

	/** A sign, days with a point when there are any, then HH:MM:SS.mmm. */
	FString ToString() const;

	constexpr FTimespan operator+(FTimespan Other) const { return FTimespan(Ticks + Other.Ticks); }
	constexpr FTimespan operator-(FTimespan Other) const { return FTimespan(Ticks - Other.Ticks); }
	constexpr FTimespan operator-() const { return FTimespan(-Ticks); }
	FTimespan operator*(double Factor) const { return FromUnits((double)Ticks * Factor, 1); }
	FTimespan operator/(double Divisor) const { return FromUnits((double)Ticks / Divisor, 1); }
	FTimespan& operator+=(FTimespan Other) { return *this = *this + Other; }
	FTimespan& operator-=(FTimespan Other) { return *this = *this - Other; }
	constexpr auto operator<=>(const FTimespan&) const = default;
	friend uint32 GetTypeHash(FTimespan Span) { return GetTypeHash(Span.Ticks); }

private:
	/** Rounds to the nearest tick; what lies outside the range of a timespan becomes its end. */
	static FTimespan FromUnits(double Count, int64 TicksPerUnit);

	int64 Ticks = 0;
};
