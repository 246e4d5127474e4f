#include "Agent/Checkpoints/CVXSaveQueue.h"

#include "Support/LoopPump.h"
#include "Support/TempProject.h"

#include <gtest/gtest.h>

namespace
{
TEST(CVXSaveQueue, JobsRunInTheirOrderAndAreWaitedForWithinALimit)
{
	const FTempProject Project;
	const FLoopPump Pump;
	FCVXSaveQueue Queue;
	FEvent Started(EEventMode::ManualReset);
	FEvent MayEnd(EEventMode::ManualReset);
	TArray<int32> Order;
	EXPECT_TRUE(Queue.Drain(0)) << "nothing waits";
	Queue.Add(
		[&]
		{
			Started.Trigger();
			MayEnd.Wait();
		});
	for (int32 Job = 0; Job < 100; ++Job)
	{
		Queue.Add([&Order, Job] { Order.Add(Job); });
	}
	Started.Wait();
	EXPECT_FALSE(Queue.Drain(1)) << "the first job takes its time";
	MayEnd.Trigger();
	ASSERT_TRUE(Queue.Drain());
	ASSERT_EQ(Order.Num(), 100);
	for (int32 Job = 0; Job < 100; ++Job)
	{
		EXPECT_EQ(Order[Job], Job);
	}
}
} // namespace
