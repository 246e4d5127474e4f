#pragma once

#include "HAL/Platform.h"

#include <atomic>

/** The kinds of calls on the operating system that can be made to fail. */
enum class EHostFault : uint8
{
	File,
	Process,
	Network,
	Count
};

/**
 * Makes calls on the operating system fail on demand, so that error paths can be walked one by one. A call site asks
 * `ShouldFail` right before the call and takes the failure branch on true, with `Errno` as the cause. Off, which is the
 * default, it costs one relaxed load. Any thread.
 */
class FFaultInjection
{
public:
	static bool ShouldFail(EHostFault Kind)
	{
		return UNLIKELY(bArmed.load(std::memory_order_relaxed)) && CountAndDecide(Kind);
	}

	/**
	 * Starts counting the calls of a kind at 0 and lets the Nth one fail, or every one from there on.
	 * @param Nth 1 or more. @param InErrno the error number that the failed call reports.
	 */
	static void Arm(EHostFault Kind, int32 Nth, bool bFromThereOn, int32 InErrno);

	/** Lets every kind succeed again. The counts stay readable. */
	static void Disarm();

	/** The calls of this kind since it was last armed, and how many of them were made to fail. */
	static int32 GetCalls(EHostFault Kind);
	static int32 GetFailures(EHostFault Kind);

	/** The error number of the kind's plan. */
	static int32 GetErrno(EHostFault Kind);

private:
	static bool CountAndDecide(EHostFault Kind);
	static inline std::atomic<bool> bArmed{false};
};

/** Sets `errno` and gives true when the call that comes next is to fail. */
bool FailsByPlan(EHostFault Kind);
