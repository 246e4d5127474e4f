#include "Async/Async.h"
#include "CoreGlobals.h"
#include "HAL/HostClock.h"
#include "HAL/ThreadSafeCounter.h"
#include "LaunchEngineLoop.h"
#include "Misc/Paths.h"
#include "Support/HostTypePrinting.h"
#include "Support/TempProject.h"

#include <gtest/gtest.h>

namespace
{
/** An engine loop that writes nothing, and its pump. */
class AsyncLoop : public testing::Test
{
protected:
	AsyncLoop()
	{
		FEngineLoopParams Params;
		Params.ProjectFile = FPaths::GetProjectFilePath();
		Params.bLogFile = false;
		Params.bLogToTerminal = false;
		Loop.Init(Params);
	}

	/** Runs the loop until the condition holds. */
	void Pump(TFunctionRef<bool()> Condition)
	{
		const double Deadline = FHostClock::GetSystem().GetSeconds() + 60;
		while (!Condition())
		{
			ASSERT_LT(FHostClock::GetSystem().GetSeconds(), Deadline) << "nothing happened before the deadline";
			Loop.WaitForWork(0.01);
			Loop.Tick();
		}
	}

	FTempProject Project;
	FEngineLoop Loop;
};
} // namespace

TEST_F(AsyncLoop, GameThreadTasksRunInOrderOnTheGameThread)
{
	TArray<int32> Order;
	for (int32 Index = 0; Index < 100; ++Index)
	{
		AsyncTask(ENamedThreads::GameThread,
			[&Order, Index]
			{
				EXPECT_TRUE(IsInGameThread());
				Order.Add(Index);
			});
	}
	EXPECT_TRUE(Order.IsEmpty()) << "nothing runs inside the call";
	Pump([&] { return Order.Num() == 100; });
	for (int32 Index = 0; Index < 100; ++Index)
	{
		ASSERT_EQ(Order[Index], Index);
	}
}

TEST_F(AsyncLoop, ATaskPostedByATaskRunsInTheNextTick)
{
	int32 Runs = 0;
	AsyncTask(ENamedThreads::GameThread,
		[&]
		{
			++Runs;
			AsyncTask(ENamedThreads::GameThread, [&] { ++Runs; });
		});
	Loop.Tick();
	EXPECT_EQ(Runs, 1);
	Loop.Tick();
	EXPECT_EQ(Runs, 2);
}

TEST_F(AsyncLoop, PostsFromManyThreadsAllArrive)
{
	FThreadSafeCounter Background;
	int32 Arrived = 0;
	for (int32 Index = 0; Index < 200; ++Index)
	{
		AsyncTask(ENamedThreads::AnyBackgroundThreadNormalTask,
			[&]
			{
				EXPECT_FALSE(IsInGameThread());
				Background.Increment();
				AsyncTask(ENamedThreads::GameThread, [&] { ++Arrived; });
			});
	}
	Pump([&] { return Arrived == 200; });
	EXPECT_EQ(Background.GetValue(), 200);
}

TEST_F(AsyncLoop, ResultsReachTheirFutureFromEveryPlace)
{
	for (const EAsyncExecution Place : {EAsyncExecution::ThreadPool, EAsyncExecution::Thread,
			 EAsyncExecution::TaskGraph, EAsyncExecution::TaskGraphMainThread})
	{
		std::atomic<bool> bCompleted{false};
		TFuture<FString> Future = Async(
			Place, [] { return FString(TEXT("done")); }, [&] { bCompleted = true; });
		Pump([&] { return Future.IsReady() && bCompleted; });
		EXPECT_EQ(Future.Get(), FString(TEXT("done")));
		EXPECT_EQ(Future.Consume(), FString(TEXT("done")));
		EXPECT_FALSE(Future.IsValid());
	}
	TFuture<void> Nothing = Async(EAsyncExecution::ThreadPool, [] {});
	Nothing.Wait();
	EXPECT_TRUE(Nothing.IsReady());
}

TEST_F(AsyncLoop, MoveOnlyCallablesAndResultsAreMoved)
{
	TUniquePtr<int32> In = MakeUnique<int32>(41);
	TFuture<TUniquePtr<int32>> Future = Async(EAsyncExecution::ThreadPool,
		[In = MoveTemp(In)]() mutable
		{
			++*In;
			return MoveTemp(In);
		});
	EXPECT_EQ(*Future.Consume(), 42);
}

TEST_F(AsyncLoop, ExitRunsBackgroundTasksToTheirEndAndDropsTheRest)
{
	const TSharedPtr<int32> Held = MakeShared<int32>(0);
	FThreadSafeCounter Ended;
	for (int32 Index = 0; Index < 20; ++Index)
	{
		Async(EAsyncExecution::Thread, [&] { Ended.Increment(); });
		AsyncPool(
			[&]
			{
				// Waits for the game thread, which is inside Exit by then.
				Async(EAsyncExecution::TaskGraphMainThread, [] {}).Wait();
				Ended.Increment();
			});
	}
	Loop.Exit();
	EXPECT_EQ(Ended.GetValue(), 40);
	AsyncTask(ENamedThreads::GameThread, [Held] {});
	EXPECT_EQ(Held.GetSharedReferenceCount(), 2);
	Loop.Init();
	Loop.Exit();
	EXPECT_EQ(Held.GetSharedReferenceCount(), 1) << "run or dropped, but gone";
}

TEST(Future, ContinuesAtOnceOrWhenTheResultComes)
{
	TPromise<int32> Early;
	Early.SetValue(20);
	EXPECT_EQ(Early.GetFuture().Next([](int32 Value) { return Value + 1; }).Get(), 21);

	TPromise<int32> Late;
	TFuture<FString> Text = Late.GetFuture()
								.Then([](TFuture<int32> Self) { return Self.Get() * 2; })
								.Next([](int32 Value) { return FString::FromInt(Value); });
	EXPECT_FALSE(Text.IsReady());
	EXPECT_FALSE(Text.WaitFor(FTimespan::Zero()));
	Late.SetValue(4);
	EXPECT_TRUE(Text.WaitFor(FTimespan::MaxValue()));
	EXPECT_EQ(Text.Get(), FString(TEXT("8")));

	TPromise<void> Signal;
	int32 Calls = 0;
	TFuture<void> After = Signal.GetFuture().Next([&] { ++Calls; });
	Signal.SetValue();
	After.Get();
	EXPECT_EQ(Calls, 1);
	EXPECT_FALSE(TFuture<int32>().IsValid());
}
