#pragma once

#include "HAL/HostClock.h"

#include <atomic>

/**
 * The process's clock while it lives: stands still until the test moves it. What sleeps moves it on instead. Begins at
 * the time that the clock before it showed. One at a time; moving it is safe on any thread.
 */
class FTestClock final : public IHostClock
{
public:
	FTestClock();
	~FTestClock() override;
	FTestClock(const FTestClock&) = delete;
	FTestClock& operator=(const FTestClock&) = delete;

	/** Moves monotonic time and the date on together. @param Seconds 0 or more. */
	void Advance(double Seconds);
	/** Sets the date alone, which may go back, as people's clocks do. @param Ticks as FDateTime counts them. */
	void SetUtcTicks(int64 Ticks) { UtcTicks = Ticks; }

	double GetSeconds() override { return SecondsNow; }
	int64 GetUtcTicks() override { return UtcTicks; }
	void Sleep(double Seconds) override { Advance(Seconds); }

private:
	IHostClock* Before;
	std::atomic<double> SecondsNow;
	std::atomic<int64> UtcTicks;
};
