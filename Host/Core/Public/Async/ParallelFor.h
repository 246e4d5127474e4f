#pragma once

#include "CoreTypes.h"
#include "Templates/Function.h"

enum class EParallelForFlags
{
	None = 0,
	/** Runs everything on the calling thread. */
	ForceSingleThread = 1
};

/**
 * Calls the body with 0 to Num - 1, each once, on this thread and on those of the pool that are free, and returns when
 * all calls have. It never waits for a busy pool, so tasks of the pool may use it. Calls begin in the order of their
 * numbers. Any thread.
 */
void ParallelFor(int32 Num, TFunctionRef<void(int32)> Body, EParallelForFlags Flags = EParallelForFlags::None);
