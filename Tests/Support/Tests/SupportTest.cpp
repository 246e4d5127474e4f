#include "Async/Async.h"
#include "Containers/Ticker.h"
#include "HAL/PlatformTime.h"
#include "Logging/LogMacros.h"
#include "Misc/DateTime.h"
#include "Misc/FileHelper.h"
#include "Misc/Paths.h"
#include "Support/FaultPlan.h"
#include "Support/LogCapture.h"
#include "Support/LoopPump.h"
#include "Support/TempProject.h"
#include "Support/TestClock.h"

#include <gtest/gtest.h>

TEST(TestClock, StandsStillUntilItIsMoved)
{
	const double SystemSeconds = FHostClock::GetSystem().GetSeconds();
	{
		FTestClock Clock;
		const double Start = FPlatformTime::Seconds();
		const FDateTime Date = FDateTime::UtcNow();
		EXPECT_LE(SystemSeconds, Start);
		EXPECT_EQ(Start, FPlatformTime::Seconds());
		Clock.Advance(600);
		EXPECT_EQ(Start + 600, FPlatformTime::Seconds());
		EXPECT_EQ(600, (FDateTime::UtcNow() - Date).GetTotalSeconds());
		FHostClock::Get().Sleep(60);
		EXPECT_EQ(Start + 660, FPlatformTime::Seconds());
		Clock.SetUtcTicks(0);
		EXPECT_EQ(0, FDateTime::UtcNow().GetTicks());
		EXPECT_EQ(Start + 660, FPlatformTime::Seconds());
	}
	EXPECT_EQ(&FHostClock::GetSystem(), &FHostClock::Get());
}

TEST(LogCapture, KeepsWhatIsLoggedWhileItLives)
{
	FLogCapture Outer;
	{
		FLogCapture Log;
		UE_LOG(LogTemp, Warning, TEXT("Lost %d of %s"), 3, TEXT("Parts"));
		EXPECT_TRUE(Log.Contains(TEXT("Lost 3 of Parts")));
		EXPECT_FALSE(Log.Contains(TEXT("lost 3")));
		EXPECT_EQ(1, Log.Count(TEXT("Lost"), ELogVerbosity::Warning));
		EXPECT_EQ(0, Log.Count(TEXT("Lost"), ELogVerbosity::Error));
		ASSERT_EQ(1, Log.Lines().Num());
		EXPECT_EQ(FName(TEXT("LogTemp")), Log.Lines()[0].Category);
		Log.Clear();
		EXPECT_EQ(0, Log.Lines().Num());
	}
	UE_LOG(LogTemp, Warning, TEXT("Later"));
	EXPECT_EQ(2, Outer.Lines().Num());
}

TEST(TempProject, IsTheProjectWhileItLivesAndLeavesNothing)
{
	const FString Before = FPaths::GetProjectFilePath();
	FString Dir;
	{
		FTempProject Project("Arena");
		Dir = Project.Dir();
		EXPECT_TRUE(FPaths::ProjectDir().Equals(Dir));
		EXPECT_TRUE(FPaths::GetProjectFilePath().Equals(Dir + TEXT("Arena.uproject")));
		EXPECT_TRUE(FPaths::DirectoryExists(FPaths::ProjectSavedDir()));
		EXPECT_TRUE(FPaths::DirectoryExists(FPaths::ProjectConfigDir()));
		Project.Write("Source/Deep/A.txt", "naïve\r\n");
		FString Text;
		EXPECT_TRUE(FFileHelper::LoadFileToString(Text, *Project.Path("Source/Deep/A.txt")));
		EXPECT_STREQ("naïve\r\n", TCHAR_TO_UTF8(*Text));
		EXPECT_TRUE(FFileHelper::SaveStringToFile(FString(TEXT("back")), *Project.Path("Saved/B.txt")));
		EXPECT_EQ("back", Project.Read("Saved/B.txt"));
		EXPECT_FALSE(Project.Exists("Saved/C.txt"));
	}
	EXPECT_FALSE(FPaths::DirectoryExists(Dir));
	EXPECT_TRUE(FPaths::GetProjectFilePath().Equals(Before));
}

TEST(FaultPlan, WalksThroughEveryCallOnce)
{
	FTempProject Project;
	for (const FFaultPlan::EHow How : {FFaultPlan::EHow::Once, FFaultPlan::EHow::FromThereOn})
	{
		int32 Saved = 0;
		int32 Failed = 0;
		const int32 Faults = FFaultPlan::ForEach(EHostFault::File, How,
			[&](int32)
			{
				const bool bSaved = FFileHelper::SaveStringToFile(FString(TEXT("new")), *Project.Path("Saved/A.txt"));
				++(bSaved ? Saved : Failed);
			});
		EXPECT_GE(Faults, 3) << "a save opens, writes and renames at the least";
		EXPECT_GE(Saved, 1) << "the last run, without a fault, saves";
		EXPECT_GE(Failed, 2);
		EXPECT_EQ(Faults + 1, Saved + Failed);
		EXPECT_EQ("new", Project.Read("Saved/A.txt"));
	}
	EXPECT_TRUE(FFileHelper::SaveStringToFile(FString(TEXT("after")), *Project.Path("Saved/A.txt")));
}

TEST(LoopPump, TurnsUntilTheConditionHoldsOrTheLimitPasses)
{
	FTestClock Clock;
	FLoopPump Pump;
	bool bTicked = false;
	FTSTicker::GetCoreTicker().AddTicker(TEXT("Late"), 600.0f,
		[&bTicked](float)
		{
			bTicked = true;
			return false;
		});
	bool bHopped = false;
	AsyncTask(ENamedThreads::AnyBackgroundThreadNormalTask,
		[&bHopped] { AsyncTask(ENamedThreads::GameThread, [&bHopped] { bHopped = true; }); });
	EXPECT_TRUE(Pump.Until([&bHopped] { return bHopped; }));
	EXPECT_FALSE(bTicked);
	EXPECT_FALSE(Pump.Until([] { return false; }, 0.0)) << "the limit goes by the system's clock";
	Clock.Advance(601);
	Pump.Tick();
	EXPECT_TRUE(bTicked);
}
