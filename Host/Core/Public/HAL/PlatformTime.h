#pragma once

#include "HAL/Platform.h"

/** Time for measuring. Any thread. */
struct FPlatformTime
{
	/** Seconds of the host's clock since an arbitrary start; never goes back. */
	static double Seconds();

	/** Nanoseconds of the processor's time line, whatever clock is in force: for profiling. */
	static uint64 Cycles64();
	static uint32 Cycles() { return (uint32)Cycles64(); }
	static double GetSecondsPerCycle64() { return 1e-9; }
	static double ToSeconds64(uint64 Cycles) { return (double)Cycles * 1e-9; }
	static double ToMilliseconds64(uint64 Cycles) { return (double)Cycles * 1e-6; }
};
