#pragma once

#include "HAL/Event.h"
#include "TaskList.h"
#include "Templates/UniquePtr.h"

#include <atomic>

/** The tasks posted to the game thread, in order. Posting takes one atomic exchange and never blocks. */
class FGameThreadQueue : private FNoncopyable
{
public:
	static FGameThreadQueue& Get();

	/** Any thread. */
	void Post(TUniqueFunction<void()>&& Task);

	/**
	 * Runs what was posted before this call, and leaves the rest of it for the next call once the budget is spent. At
	 * least one task runs. Game thread.
	 */
	void Run(double BudgetSeconds);

	/** Waits until a task is there, `Wake` is called, or the limit has passed. Game thread. @return true for a task. */
	bool WaitForWork(double Seconds);

	/** Ends a `WaitForWork`, or the next one if none runs. Any thread. */
	void Wake();

	/** Whether nothing waits to run. Game thread. */
	bool IsEmpty() const { return Incoming.load() == nullptr && Pending.IsEmpty(); }

	/** How many tasks wait to run. Any thread. */
	int32 Num() const { return Waiting.load(std::memory_order_relaxed); }

	/** Destroys all tasks without running them. Game thread. */
	void DiscardAll();

private:
	void TakeIncoming();
	TUniquePtr<FTaskNode> TakeFirst();

	/** The newest posted task, linked to the one before. */
	std::atomic<FTaskNode*> Incoming{nullptr};
	std::atomic<int32> Waiting{0};
	std::atomic<bool> bWaiting{false};
	FTaskList Pending;
	FEvent Arrived{EEventMode::AutoReset};
};
