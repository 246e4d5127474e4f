#include "HAL/FaultInjection.h"

#include "Misc/AssertionMacros.h"

#include <cerrno>

namespace
{
struct FPlan
{
	/** 0 while the kind isn't armed. */
	std::atomic<int32> Nth{0};
	std::atomic<bool> bFromThereOn{false};
	std::atomic<int32> Errno{EIO};
	std::atomic<int32> Calls{0};
	std::atomic<int32> Failures{0};
};

FPlan& PlanOf(EHostFault Kind)
{
	static FPlan Plans[(int32)EHostFault::Count];
	check(Kind < EHostFault::Count);
	return Plans[(int32)Kind];
}
} // namespace

void FFaultInjection::Arm(EHostFault Kind, int32 Nth, bool bFromThereOn, int32 InErrno)
{
	check(Nth >= 1);
	FPlan& Plan = PlanOf(Kind);
	Plan.Calls = 0;
	Plan.Failures = 0;
	Plan.bFromThereOn = bFromThereOn;
	Plan.Errno = InErrno;
	Plan.Nth = Nth;
	bArmed = true;
}

void FFaultInjection::Disarm()
{
	bArmed = false;
	for (int32 Kind = 0; Kind < (int32)EHostFault::Count; ++Kind)
	{
		PlanOf((EHostFault)Kind).Nth = 0;
	}
}

int32 FFaultInjection::GetCalls(EHostFault Kind)
{
	return PlanOf(Kind).Calls;
}

int32 FFaultInjection::GetFailures(EHostFault Kind)
{
	return PlanOf(Kind).Failures;
}

int32 FFaultInjection::GetErrno(EHostFault Kind)
{
	return PlanOf(Kind).Errno;
}

bool FFaultInjection::CountAndDecide(EHostFault Kind)
{
	FPlan& Plan = PlanOf(Kind);
	const int32 Nth = Plan.Nth;
	if (Nth == 0)
	{
		return false;
	}
	const int32 Call = ++Plan.Calls;
	const bool bFails = Plan.bFromThereOn ? Call >= Nth : Call == Nth;
	Plan.Failures += bFails ? 1 : 0;
	return bFails;
}

bool FailsByPlan(EHostFault Kind)
{
	if (!FFaultInjection::ShouldFail(Kind))
	{
		return false;
	}
	errno = FFaultInjection::GetErrno(Kind);
	return true;
}
