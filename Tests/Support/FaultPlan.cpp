#include "Support/FaultPlan.h"

#include <gtest/gtest.h>

FFaultPlan::FFaultPlan(EHostFault InKind, int32 Nth, EHow How, int32 Errno)
	: Kind(InKind)
{
	FFaultInjection::Arm(Kind, Nth, How == EHow::FromThereOn, Errno);
}

FFaultPlan::~FFaultPlan()
{
	FFaultInjection::Disarm();
}

int32 FFaultPlan::ForEach(EHostFault Kind, EHow How, TFunctionRef<void(int32 Nth)> Body, int32 MaxRuns)
{
	for (int32 Nth = 1; Nth <= MaxRuns; ++Nth)
	{
		const FFaultPlan Plan(Kind, Nth, How);
		Body(Nth);
		if (Plan.Failures() == 0)
		{
			return Nth - 1;
		}
	}
	ADD_FAILURE() << "calls still fail after " << MaxRuns << " runs";
	return MaxRuns;
}
