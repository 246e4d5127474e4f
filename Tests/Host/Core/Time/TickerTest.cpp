#include "Containers/Ticker.h"
#include "HAL/Event.h"
#include "Support/TestClock.h"

#include <gtest/gtest.h>

#include <atomic>
#include <thread>

namespace
{
class Ticker : public testing::Test
{
protected:
	void Advance(double Seconds)
	{
		Clock.Advance(Seconds);
		Timers.Tick((float)Seconds);
	}

	FTestClock Clock;
	FTSTicker Timers;
};
} // namespace

TEST_F(Ticker, CallsAfterItsDelayAgainAndAgain)
{
	TArray<float> Calls;
	Timers.AddTicker(TEXT("Every2"), 2.0f,
		[&](float Delta)
		{
			Calls.Add(Delta);
			return Calls.Num() < 3;
		});
	EXPECT_EQ(Timers.GetSecondsToNextTick(), 2.0);
	Advance(1.5);
	EXPECT_EQ(Calls.Num(), 0);
	EXPECT_EQ(Timers.GetSecondsToNextTick(), 0.5);
	Advance(0.5);
	EXPECT_EQ(Calls.Num(), 1);
	Advance(100);
	EXPECT_EQ(Calls.Num(), 2) << "what was missed isn't made up for";
	EXPECT_EQ(Calls.Last(), 100.0f);
	Advance(1);
	EXPECT_EQ(Calls.Num(), 2);
	Advance(1);
	Advance(100);
	EXPECT_EQ(Calls.Num(), 3) << "false ends it";
	Advance(0);
	EXPECT_EQ(Timers.GetSecondsToNextTick(), 1e30);
}

TEST_F(Ticker, CallsInTheOrderOfAddingAndWhatIsAddedMeanwhileNextTime)
{
	FString Order;
	const auto Add = [&](TCHAR Name)
	{
		Timers.AddTicker(TEXT("Each"), 0.0f,
			[&Order, Name](float)
			{
				Order += Name;
				return true;
			});
	};
	Add(u'a');
	Timers.AddTicker(TEXT("Adder"), 0.0f,
		[&](float)
		{
			Add(u'n');
			return false;
		});
	Add(u'b');
	Advance(1);
	EXPECT_TRUE(Order.Equals(TEXT("ab")));
	Advance(1);
	EXPECT_TRUE(Order.Equals(TEXT("ababn")));
}

TEST_F(Ticker, AnyTimerMayBeRemovedFromInsideATick)
{
	int32 Calls = 0;
	FTSTicker::FDelegateHandle Self;
	FTSTicker::FDelegateHandle Later;
	Self = Timers.AddTicker(TEXT("Self"), 0.0f,
		[&](float)
		{
			++Calls;
			FTSTicker::RemoveTicker(Self);
			FTSTicker::RemoveTicker(Later);
			return true;
		});
	Later = Timers.AddTicker(TEXT("Later"), 0.0f, [&](float) { return ++Calls > 0; });
	Advance(1);
	Advance(1);
	EXPECT_EQ(Calls, 1);
	FTSTicker::RemoveTicker(Self);
	FTSTicker::RemoveTicker(FTSTicker::FDelegateHandle());
}

TEST_F(Ticker, EndsAllTimersOnReset)
{
	const TSharedPtr<int32> Held = MakeShared<int32>(1);
	Timers.AddTicker(TEXT("Holder"), 0.0f, [Held](float) { return true; });
	EXPECT_EQ(Held.GetSharedReferenceCount(), 2);
	Timers.Reset();
	EXPECT_EQ(Held.GetSharedReferenceCount(), 1);
	Advance(1);
}

TEST_F(Ticker, RemovingOnAnotherThreadWaitsForTheCallsEnd)
{
	FEvent Inside{EEventMode::ManualReset};
	FEvent GoOn{EEventMode::ManualReset};
	std::atomic<bool> bEnded{false};
	const FTSTicker::FDelegateHandle Handle = Timers.AddTicker(TEXT("Slow"), 0.0f,
		[&](float)
		{
			Inside.Trigger();
			GoOn.Wait();
			bEnded = true;
			return true;
		});
	bool bEndedBeforeRemoval = false;
	std::thread Remover(
		[&]
		{
			Inside.Wait();
			GoOn.Trigger();
			FTSTicker::RemoveTicker(Handle);
			bEndedBeforeRemoval = bEnded;
		});
	Advance(1);
	Remover.join();
	EXPECT_TRUE(bEndedBeforeRemoval);
}
