#include "HAL/PlatformTime.h"

#include "HAL/HostClock.h"

#include <ctime>

double FPlatformTime::Seconds()
{
	return FHostClock::Get().GetSeconds();
}

uint64 FPlatformTime::Cycles64()
{
	timespec Now;
	clock_gettime(CLOCK_MONOTONIC, &Now);
	return (uint64)Now.tv_sec * 1000000000ull + (uint64)Now.tv_nsec;
}
