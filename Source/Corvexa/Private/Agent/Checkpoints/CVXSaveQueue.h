#pragma once

#include "Containers/Array.h"
#include "HAL/CriticalSection.h"
#include "HAL/Event.h"
#include "Templates/Function.h"

/** Writes that needn't hold up the game thread, one after the other in the order given. Any thread. */
class FCVXSaveQueue
{
public:
	/** The longest that `Drain` waits unless told otherwise, in milliseconds by the system's clock. */
	static constexpr uint32 MaxDrainMs = 30000;

	FCVXSaveQueue() { Idle.Trigger(); }

	void Add(TFunction<void()> Job);

	/** Waits until all jobs given so far are done. @return false when the limit passed first. */
	[[nodiscard]] bool Drain(uint32 LimitMs = MaxDrainMs);

private:
	void RunAll();
	/** Takes all jobs that wait. @return none when the queue has come to rest. */
	TArray<TFunction<void()>> TakeJobs();

	FCriticalSection Lock;
	TArray<TFunction<void()>> Jobs;
	bool bRunning = false;
	/** Triggered while nothing runs and nothing waits. */
	FEvent Idle{EEventMode::ManualReset};
};
