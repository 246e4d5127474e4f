#pragma once

#include "HAL/FaultInjection.h"
#include "Templates/Function.h"

#include <cerrno>

/** Makes calls of the host on the operating system fail while it lives. One at a time. */
class FFaultPlan
{
public:
	enum class EHow
	{
		/** The n-th call alone. */
		Once,
		/** The n-th call and all behind it. */
		FromThereOn,
	};

	/** @param Nth counts from 1. @param Errno the cause that the failed calls report. */
	FFaultPlan(EHostFault InKind, int32 Nth, EHow How = EHow::Once, int32 Errno = EIO);
	~FFaultPlan();
	FFaultPlan(const FFaultPlan&) = delete;
	FFaultPlan& operator=(const FFaultPlan&) = delete;

	/** Calls counted, and those made to fail, since the plan began. */
	int32 Calls() const { return FFaultInjection::GetCalls(Kind); }
	int32 Failures() const { return FFaultInjection::GetFailures(Kind); }

	/**
	 * Runs the body with the 1st call failing, then with the 2nd, and so on, until a run sees no failure any more. Adds
	 * a test failure if that takes more than MaxRuns. @return the runs in which a call failed: how many calls were
	 * tried.
	 */
	static int32 ForEach(EHostFault Kind, EHow How, TFunctionRef<void(int32 Nth)> Body, int32 MaxRuns = 1000);

private:
	EHostFault Kind;
};
