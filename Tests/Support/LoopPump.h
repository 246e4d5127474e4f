#pragma once

#include "LaunchEngineLoop.h"
#include "Templates/Function.h"

/** The host's loop, started without log file and terminal output while this lives. On the test's thread; one at a time.
 */
class FLoopPump
{
public:
	/** Keeps the project that is set, which may be an FTempProject's. */
	FLoopPump();
	~FLoopPump();
	FLoopPump(const FLoopPump&) = delete;
	FLoopPump& operator=(const FLoopPump&) = delete;

	/** One turn of the loop, without waiting. */
	void Tick() { Loop.Tick(); }

	/**
	 * Turns the loop until the condition holds, waiting for work in between.
	 * @param LimitSeconds by the system's clock, whatever the test did to the host's. @return false when it has passed.
	 */
	bool Until(TFunctionRef<bool()> Condition, double LimitSeconds = 20);

private:
	FEngineLoop Loop;
};
