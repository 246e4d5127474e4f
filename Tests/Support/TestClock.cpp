#include "Support/TestClock.h"

#include "Misc/AssertionMacros.h"

#include <cmath>

namespace
{
constexpr double TicksPerSecond = 1e7;
}

FTestClock::FTestClock()
	: Before(FHostClock::Set(this))
	, SecondsNow(FHostClock::GetSystem().GetSeconds())
	, UtcTicks(FHostClock::GetSystem().GetUtcTicks())
{
}

FTestClock::~FTestClock()
{
	FHostClock::Set(Before);
}

void FTestClock::Advance(double Seconds)
{
	check(Seconds >= 0);
	SecondsNow.fetch_add(Seconds);
	UtcTicks.fetch_add(std::llround(Seconds * TicksPerSecond));
}
