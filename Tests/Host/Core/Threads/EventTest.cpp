#include "HAL/Event.h"
#include "HAL/CriticalSection.h"
#include "HAL/PlatformProcess.h"
#include "HAL/Runnable.h"
#include "HAL/RunnableThread.h"
#include "Misc/ScopeLock.h"
#include "Misc/ScopeRWLock.h"
#include "Templates/UniquePtr.h"

#include <gtest/gtest.h>

#include <thread>
#include <vector>

TEST(Event, AutoResetLetsOneWaiterGoForEachTrigger)
{
	FEvent Event;
	EXPECT_FALSE(Event.Wait(0u));
	Event.Trigger();
	Event.Trigger();
	EXPECT_TRUE(Event.Wait(0u));
	EXPECT_FALSE(Event.Wait(0u)) << "two triggers before a wait count once";

	std::atomic<int32> Passed{0};
	std::vector<std::thread> Threads;
	for (int32 Index = 0; Index < 4; ++Index)
	{
		Threads.emplace_back(
			[&]
			{
				Event.Wait();
				// Each lets the next go, so that no trigger is lost.
				++Passed;
				Event.Trigger();
			});
	}
	Event.Trigger();
	for (std::thread& Thread : Threads)
	{
		Thread.join();
	}
	EXPECT_EQ(Passed, 4);
}

TEST(Event, ManualResetLetsEveryoneGoUntilItIsReset)
{
	FEvent Event(EEventMode::ManualReset);
	Event.Trigger();
	EXPECT_TRUE(Event.Wait(0u));
	EXPECT_TRUE(Event.Wait(FTimespan::Zero()));
	Event.Reset();
	EXPECT_FALSE(Event.Wait(FTimespan::FromSeconds(-1)));
}

TEST(Event, WaitsForAnyLimitHoweverLong)
{
	for (const FTimespan& Limit : {FTimespan::MaxValue(), FTimespan::FromDays(200000)})
	{
		FEvent Event;
		std::thread Other([&] { Event.Trigger(); });
		EXPECT_TRUE(Event.Wait(Limit));
		Other.join();
	}
	FEvent Event;
	EXPECT_FALSE(Event.Wait(FTimespan::MinValue()));
}

TEST(Event, ComesFromThePoolAsNew)
{
	FEvent* First = FPlatformProcess::GetSynchEventFromPool(true);
	EXPECT_TRUE(First->IsManualReset());
	First->Trigger();
	FPlatformProcess::ReturnSynchEventToPool(First);
	FEvent* Second = FPlatformProcess::GetSynchEventFromPool(true);
	EXPECT_FALSE(Second->Wait(0u));
	FPlatformProcess::ReturnSynchEventToPool(Second);
	FPlatformProcess::ReturnSynchEventToPool(nullptr);
	const FEventRef Scoped;
	EXPECT_FALSE(Scoped->IsManualReset());
}

TEST(Locks, KeepCountsExactAcrossThreads)
{
	FCriticalSection Section;
	FRWLock Lock;
	int32 BySection = 0;
	int32 ByLock = 0;
	std::vector<std::thread> Threads;
	for (int32 Index = 0; Index < 4; ++Index)
	{
		Threads.emplace_back(
			[&]
			{
				for (int32 Round = 0; Round < 1000; ++Round)
				{
					{
						const FScopeLock Outer(&Section);
						const FScopeLock Again(&Section);
						++BySection;
					}
					const FWriteScopeLock Writer(Lock);
					++ByLock;
				}
			});
	}
	for (std::thread& Thread : Threads)
	{
		Thread.join();
	}
	EXPECT_EQ(BySection, 4000);
	EXPECT_EQ(ByLock, 4000);
	const FReadScopeLock Reader(Lock);
	EXPECT_TRUE(Lock.TryReadLock());
	EXPECT_FALSE(Lock.TryWriteLock());
	Lock.ReadUnlock();
}

namespace
{
class FWaiting final : public FRunnable
{
public:
	explicit FWaiting(bool bInStarts)
		: bStarts(bInStarts)
	{
	}
	bool Init() override { return bStarts; }
	uint32 Run() override
	{
		Started.Trigger();
		Ended.Wait();
		bRan = true;
		return 0;
	}
	void Stop() override { Ended.Trigger(); }
	void Exit() override { bExited = true; }

	FEvent Started;
	FEvent Ended;
	bool bStarts;
	bool bRan = false;
	bool bExited = false;
};
} // namespace

TEST(RunnableThread, StopsItsRunnableAndWaitsWhenItGoes)
{
	FWaiting Work(true);
	{
		const TUniquePtr<FRunnableThread> Thread(FRunnableThread::Create(&Work, TEXT("A name longer than it may be")));
		ASSERT_TRUE(Thread.IsValid());
		Work.Started.Wait();
	}
	EXPECT_TRUE(Work.bRan);
	EXPECT_TRUE(Work.bExited);

	FWaiting Refused(false);
	const TUniquePtr<FRunnableThread> Thread(FRunnableThread::Create(&Refused, TEXT("Refused")));
	Thread->WaitForCompletion();
	EXPECT_FALSE(Refused.bRan || Refused.bExited);
}
