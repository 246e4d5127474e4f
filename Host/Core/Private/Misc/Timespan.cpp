#include "Misc/Timespan.h"

#include <cmath>

FTimespan FTimespan::FromUnits(double Count, int64 TicksPerUnit)
{
	const double Exact = std::round(Count * (double)TicksPerUnit);
	if (std::isnan(Exact))
	{
		return FTimespan();
	}
	if (Exact >= 9.2233720368547758e18)
	{
		return MaxValue();
	}
	return Exact <= -9.2233720368547758e18 ? MinValue() : FTimespan((int64)Exact);
}

FString FTimespan::ToString() const
{
	FString Result = Ticks < 0 ? TEXT("-") : TEXT("+");
	const FTimespan Positive(Ticks < 0 ? (Ticks == MIN_int64 ? MAX_int64 : -Ticks) : Ticks);
	if (Positive.GetDays() != 0)
	{
		Result.Appendf(TEXT("%d."), Positive.GetDays());
	}
	return Result.Appendf(TEXT("%02d:%02d:%02d.%03d"), Positive.GetHours(), Positive.GetMinutes(),
		Positive.GetSeconds(), Positive.GetFractionMilli());
}
