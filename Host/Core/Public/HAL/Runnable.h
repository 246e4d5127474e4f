#pragma once

#include "HAL/Platform.h"

/** What a thread of its own does. `Init`, `Run` and `Exit` are called on that thread, `Stop` on any. */
class FRunnable
{
public:
	virtual ~FRunnable() = default;

	/** @return false ends the thread without `Run` and `Exit`. */
	virtual bool Init() { return true; }
	/** @return the thread's exit code, for information only. */
	virtual uint32 Run() = 0;
	/** Asks `Run` to come to its end soon. */
	virtual void Stop() {}
	virtual void Exit() {}
};
