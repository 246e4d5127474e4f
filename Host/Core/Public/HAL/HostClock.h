#pragma once

#include "HAL/Platform.h"

/**
 * The clock that everything in the process reads: `FPlatformTime`, `FDateTime`, `FPlatformProcess::Sleep`, tickers and
 * the time-outs of HTTP requests. What waits for another thread or for a child process (events, futures,
 * `FPlatformProcess::WaitForProc`, the limit of a pipe write) is real input and output and runs by the system's clock.
 */
class IHostClock
{
public:
	virtual ~IHostClock() = default;

	/** Seconds since an arbitrary start; never goes back. Any thread. */
	virtual double GetSeconds() = 0;

	/** UTC as ticks of 100 nanoseconds since the first of January of the year 1. Any thread. */
	virtual int64 GetUtcTicks() = 0;

	/** Lets the calling thread wait. A clock that is moved by hand moves itself on instead. @param Seconds above 0. */
	virtual void Sleep(double Seconds) = 0;
};

struct FHostClock
{
	/** The clock in force. Any thread. */
	static IHostClock& Get();

	/** The system's own clock. */
	static IHostClock& GetSystem();

	/** Puts a clock in force. @param Clock outlives its reign; null gives the system's. @return the one before. */
	static IHostClock* Set(IHostClock* Clock);
};
