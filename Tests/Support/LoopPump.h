#pragma once

#include "LaunchEngineLoop.h"
#include "Templates/Function.h"

/**
 * The engine loop of one test, started quietly (nothing on the terminal, no log file) and ended with it. The thread
 * that makes it is the game thread.
 */
class FLoopPump
{
public:
	FLoopPump();
	~FLoopPump();
	FLoopPump(const FLoopPump&) = delete;
	FLoopPump& operator=(const FLoopPump&) = delete;

	/** One tick. */
	void Tick() { Loop.Tick(); }

	/** Ticks until the condition holds. @return false, and a test failure, when the limit passes first, in real time.
	 */
	bool Until(TFunctionRef<bool()> Condition, double LimitSeconds = 20.0);

private:
	FEngineLoop Loop;
};
