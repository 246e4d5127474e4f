#include "Async/Async.h"
#include "Containers/Ticker.h"
#include "CoreGlobals.h"
#include "HAL/IConsoleManager.h"
#include "Misc/ConfigCacheIni.h"
#include "Misc/CoreDelegates.h"
#include "Support/HostTypePrinting.h"
#include "Support/LoopPump.h"
#include "Support/TempProject.h"
#include "Support/TestClock.h"

#include <gtest/gtest.h>

#include <atomic>

TEST(EngineLoop, RunsTasksBeforeTickersAndLateTasksInTheNextTick)
{
	FLoopPump Pump;
	TArray<FString> Order;
	FTSTicker::GetCoreTicker().AddTicker(FTickerDelegate::CreateLambda(
		[&](float)
		{
			Order.Add(TEXT("ticker"));
			return false;
		}));
	AsyncTask(ENamedThreads::GameThread,
		[&Order]
		{
			Order.Add(TEXT("task"));
			AsyncTask(ENamedThreads::GameThread, [&Order] { Order.Add(TEXT("late task")); });
		});
	Pump.Tick();
	EXPECT_EQ(Order, (TArray<FString>{TEXT("task"), TEXT("ticker")}));
	Pump.Tick();
	EXPECT_EQ(Order.Last(), TEXT("late task"));
}

TEST(EngineLoop, StartsAndStopsAgainAndAgainWithoutLosingWork)
{
	for (int32 Round = 0; Round < 5; ++Round)
	{
		std::atomic<int32> Done{0};
		int32 Exits = 0;
		int32 LateCalls = 0;
		{
			FLoopPump Pump;
			const FDelegateHandle Handle = FCoreDelegates::OnPreExit.AddLambda([&Exits] { ++Exits; });
			for (int32 Index = 0; Index < 50; ++Index)
			{
				Async(EAsyncExecution::ThreadPool, [&Done] { ++Done; });
			}
			FTSTicker::GetCoreTicker().AddTicker(FTickerDelegate::CreateLambda(
													 [&LateCalls](float)
													 {
														 ++LateCalls;
														 return true;
													 }),
				1000.0f);
			(void)Handle;
		}
		FCoreDelegates::OnPreExit.Clear();
		EXPECT_EQ(Done, 50) << "background tasks run to their end";
		EXPECT_EQ(Exits, 1);
		EXPECT_EQ(LateCalls, 0);
		EXPECT_EQ(GConfig, nullptr);
	}
}

TEST(EngineLoop, TheClockOfATestMovesTickers)
{
	FTestClock Clock;
	FLoopPump Pump;
	int32 Calls = 0;
	FTSTicker::GetCoreTicker().AddTicker(
		FTickerDelegate::CreateLambda([&Calls](float) { return ++Calls < 2; }), 600.0f);
	Pump.Tick();
	Clock.Advance(599.0);
	Pump.Tick();
	EXPECT_EQ(Calls, 0);
	Clock.Advance(2.0);
	Pump.Tick();
	EXPECT_EQ(Calls, 1);
	Clock.Advance(10000.0);
	Pump.Tick();
	Clock.Advance(10000.0);
	Pump.Tick();
	EXPECT_EQ(Calls, 2) << "the second call ended it";
}

TEST(EngineLoop, UnwrittenSettingsReachTheDiskAtTheEnd)
{
	const FTempProject Project;
	{
		FLoopPump Pump;
		GConfig->SetInt(TEXT("S"), TEXT("Key"), 5, Project.Path("Config/Game.ini"));
	}
	EXPECT_EQ(Project.Read("Config/Game.ini"), "[S]\nKey=5\n");
}

TEST(Console, CommandsAreFoundByNameAndGetTheirWords)
{
	struct FSink final : FOutputDevice
	{
		FString Text;
		void Serialize(const TCHAR* InText, ELogVerbosity::Type, const FName&) override { Text += InText; }
		using FOutputDevice::Serialize;
	} Sink;
	IConsoleManager& Console = IConsoleManager::Get();
	TArray<FString> Got;
	int32 Plain = 0;
	IConsoleCommand* Command = Console.RegisterConsoleCommand(TEXT("test.words"), TEXT("Keeps its words"),
		FConsoleCommandWithArgsDelegate::CreateLambda([&Got](const TArray<FString>& Words) { Got = Words; }));
	Console.RegisterConsoleCommand(
		TEXT("test.plain"), TEXT("Counts"), FConsoleCommandDelegate::CreateLambda([&Plain] { ++Plain; }));
	EXPECT_TRUE(Console.ProcessUserConsoleInput(TEXT("TEST.Words one \"two words\" \"\""), Sink));
	EXPECT_EQ(Got, (TArray<FString>{TEXT("one"), TEXT("two words"), TEXT("")}));
	EXPECT_TRUE(Console.ProcessUserConsoleInput(TEXT("test.plain"), Sink));
	EXPECT_EQ(Plain, 1);
	Console.UnregisterConsoleObject(Command);
	Console.UnregisterConsoleObject(TEXT("test.plain"));
	EXPECT_FALSE(Console.ProcessUserConsoleInput(TEXT("test.words"), Sink));
	EXPECT_EQ(Sink.Text, TEXT("Unknown command: test.words"));
	EXPECT_FALSE(Console.ProcessUserConsoleInput(TEXT("  "), Sink));
}
