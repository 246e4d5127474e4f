#include "Async/ParallelFor.h"

#include "Async/Async.h"
#include "Containers/Array.h"

#include <atomic>
#include <gtest/gtest.h>

namespace
{
TEST(ParallelFor, CallsEachNumberOnceAndReturnsWhenAllCallsHave)
{
	for (const int32 Num : {0, 1, 2, 1000})
	{
		TArray<int32> Calls;
		Calls.SetNum(Num);
		ParallelFor(Num, [&](int32 Index) { ++Calls[Index]; });
		for (const int32 Count : Calls)
		{
			ASSERT_EQ(Count, 1);
		}
	}
	int32 Last = -1;
	ParallelFor(
		100, [&](int32 Index) { EXPECT_EQ(Index, ++Last); }, EParallelForFlags::ForceSingleThread);
	EXPECT_EQ(Last, 99);
}

TEST(ParallelFor, RunsInsideTasksThatFillThePool)
{
	std::atomic<int32> Sum{0};
	TArray<TFuture<void>> Tasks;
	for (int32 Task = 0; Task < 32; ++Task)
	{
		Tasks.Add(Async(EAsyncExecution::ThreadPool,
			[&Sum] { ParallelFor(20, [&](int32) { ParallelFor(5, [&](int32 Index) { Sum += Index; }); }); }));
	}
	for (TFuture<void>& Task : Tasks)
	{
		Task.Wait();
	}
	EXPECT_EQ(Sum, 32 * 20 * 10);
}
} // namespace
