#include "Logging/LogMacros.h"
#include "Misc/FileHelper.h"
#include "Misc/OutputDeviceFile.h"
#include "Misc/OutputDeviceRedirector.h"
#include "Support/FaultPlan.h"
#include "Support/HostTypePrinting.h"
#include "Support/LogCapture.h"
#include "Support/TempProject.h"
#include "Support/TestClock.h"

#include <gtest/gtest.h>

#include <thread>
#include <vector>

DEFINE_LOG_CATEGORY_STATIC(LogUnderTest, Log, All);
DEFINE_LOG_CATEGORY_STATIC(LogCompiledOut, Warning, Warning);

namespace
{
class LogFile : public testing::Test
{
protected:
	TArray<FString> Backups() const
	{
		TArray<FString> Names;
		IFileManager::Get().FindFiles(Names, *Project.Path("Saved/Logs/Game-backup-*.log"), true, false);
		Names.Sort();
		return Names;
	}

	FTestClock Clock;
	FTempProject Project;
	const FString Path = Project.Path("Saved/Logs/Game.log");
};

/** A device that logs about what it logs, and takes itself off. */
class FChattyDevice final : public FOutputDevice
{
public:
	using FOutputDevice::Serialize;
	void Serialize(const TCHAR*, ELogVerbosity::Type, const FName&) override
	{
		++Taken;
		UE_LOG(LogUnderTest, Log, TEXT("again"));
		if (bLeaves)
		{
			FOutputDeviceRedirector::Get()->RemoveOutputDevice(this);
		}
	}

	int32 Taken = 0;
	bool bLeaves = false;
};
} // namespace

TEST(Log, HeedsTheVerbosityOfItsCategory)
{
	FLogCapture Log;
	int32 Evaluated = 0;
	UE_LOG(LogUnderTest, Verbose, TEXT("%d"), ++Evaluated);
	EXPECT_EQ(Evaluated, 0) << "nothing is evaluated for a message that nobody gets";
	EXPECT_TRUE(FLogCategoryBase::SetVerbosityByName(TEXT("logundertest"), ELogVerbosity::Verbose));
	UE_LOG(LogUnderTest, Verbose, TEXT("%d"), ++Evaluated);
	UE_CLOG(Evaluated == 1, LogUnderTest, Error, TEXT("%s und %.2f"), TEXT("ü"), 1.5);
	UE_CLOG(Evaluated == 2, LogUnderTest, Error, TEXT("never"));
	LogUnderTest.SetVerbosity(ELogVerbosity::Log);
	EXPECT_FALSE(FLogCategoryBase::SetVerbosityByName(TEXT("LogNobody"), ELogVerbosity::All));
	LogCompiledOut.SetVerbosity(ELogVerbosity::VeryVerbose);
	UE_LOG(LogCompiledOut, Log, TEXT("%d"), ++Evaluated);
	UE_LOG(LogCompiledOut, Warning, TEXT("through"));
	EXPECT_EQ(Evaluated, 1);
	ASSERT_EQ(Log.Lines().Num(), 3);
	EXPECT_EQ(Log.Count(TEXT("ü und 1.50"), ELogVerbosity::Error), 1);
	EXPECT_EQ(Log.Lines()[2].Category.ToString(), FString(TEXT("LogCompiledOut")));
	ELogVerbosity::Type Verbosity = ELogVerbosity::Log;
	EXPECT_TRUE(ParseLogVerbosity(TEXT("veryverbose"), Verbosity));
	EXPECT_EQ(Verbosity, ELogVerbosity::VeryVerbose);
	EXPECT_FALSE(ParseLogVerbosity(TEXT("loud"), Verbosity));
}

TEST(Log, ADeviceMayLogAndLeaveWhileItTakesAMessage)
{
	FLogCapture Log;
	FChattyDevice Device;
	FOutputDeviceRedirector::Get()->AddOutputDevice(&Device);
	UE_LOG(LogUnderTest, Log, TEXT("first"));
	EXPECT_GT(Device.Taken, 1);
	EXPECT_LT(Device.Taken, 100) << "its own messages come to an end";
	Device.bLeaves = true;
	UE_LOG(LogUnderTest, Log, TEXT("second"));
	EXPECT_FALSE(FOutputDeviceRedirector::Get()->IsRedirectingTo(&Device));
	const int32 Taken = Device.Taken;
	UE_LOG(LogUnderTest, Log, TEXT("third"));
	EXPECT_EQ(Device.Taken, Taken);
	EXPECT_TRUE(Log.Contains(TEXT("third")));
}

TEST(LogDeathTest, AFatalMessageEndsTheProcess)
{
	EXPECT_DEATH(UE_LOG(LogUnderTest, Fatal, TEXT("the end of %d"), 7), "LogUnderTest: Fatal: the end of 7");
}

TEST_F(LogFile, ShowsTimeCategoryAndVerbosityALineEach)
{
	Clock.SetUtcTicks(FDateTime(2030, 1, 2, 3, 4, 5, 6).GetTicks());
	FOutputDeviceFile File(*Path);
	ASSERT_TRUE(File.IsOpened());
	File.Serialize(TEXT("plain ü"), ELogVerbosity::Log, FName(TEXT("LogA")));
	File.Serialize(TEXT("grave"), ELogVerbosity::Error, FName(TEXT("LogB")));
	File.Log(TEXT("bare"));
	EXPECT_EQ(Project.Read("Saved/Logs/Game.log"),
		"[2030.01.02-03.04.05:006]LogA: plain ü\n[2030.01.02-03.04.05:006]LogB: Error: grave\n"
		"[2030.01.02-03.04.05:006]bare\n")
		<< "without closing it";
}

TEST_F(LogFile, BacksTheLastRunUpAndKeepsTheFiveNewest)
{
	for (int32 Run = 0; Run < 8; ++Run)
	{
		Clock.Advance(60);
		FOutputDeviceFile File(*Path);
		File.Logf(TEXT("run %d"), Run);
	}
	EXPECT_TRUE(FString(Project.Read("Saved/Logs/Game.log").c_str()).Contains(TEXT("run 7")));
	const TArray<FString> Names = Backups();
	ASSERT_EQ(Names.Num(), 5);
	for (int32 Index = 0; Index < 5; ++Index)
	{
		FString Text;
		EXPECT_TRUE(FFileHelper::LoadFileToString(Text, *(Project.Path("Saved/Logs/") + Names[Index])));
		EXPECT_TRUE(Text.Contains(FString::Printf(TEXT("run %d"), Index + 2)));
	}
}

TEST_F(LogFile, BeginsAnewAtItsSizeAndLosesNoLine)
{
	FOutputDeviceFile File(*Path, 1000);
	for (int32 Line = 0; Line < 60; ++Line)
	{
		Clock.Advance(1);
		File.Logf(TEXT("line <%d>"), Line);
	}
	FString All;
	for (const FString& Name : Backups())
	{
		FString Text;
		EXPECT_TRUE(FFileHelper::LoadFileToString(Text, *(Project.Path("Saved/Logs/") + Name)));
		EXPECT_LE(Text.Len(), 1100);
		All += Text;
	}
	All += FString(Project.Read("Saved/Logs/Game.log").c_str());
	for (int32 Line = 0; Line < 60; ++Line)
	{
		EXPECT_TRUE(All.Contains(FString::Printf(TEXT("<%d>"), Line))) << Line;
	}
}

TEST_F(LogFile, GoesOnAfterARotationThatFailed)
{
	for (const FFaultPlan::EHow How : {FFaultPlan::EHow::Once, FFaultPlan::EHow::FromThereOn})
	{
		// The first call writes the line that fills the file; what follows backs it up and opens the next.
		for (int32 Nth = 2; Nth <= 8; ++Nth)
		{
			Clock.Advance(1);
			FOutputDeviceFile File(*Path, 100);
			File.Log(TEXT("before"));
			{
				const FFaultPlan Plan(EHostFault::File, Nth, How);
				File.Log(FString::ChrN(100, u'x'));
			}
			Clock.Advance(1);
			const FString After = FString::Printf(TEXT("after %d"), Nth);
			File.Log(After);
			EXPECT_TRUE(File.IsOpened());
			FString All;
			for (const FString& Name : Backups())
			{
				All += FString(Project.Read(TCHAR_TO_UTF8(*(TEXT("Saved/Logs/") + Name))).c_str());
			}
			All += Project.Exists("Saved/Logs/Game.log") ? FString(Project.Read("Saved/Logs/Game.log").c_str())
														 : FString();
			EXPECT_TRUE(All.Contains(After)) << Nth;
		}
	}
}

TEST_F(LogFile, TakesANumberWhileAnotherHoldsTheName)
{
	FOutputDeviceFile First(*Path);
	FOutputDeviceFile Second(*Path);
	First.Log(TEXT("first"));
	Second.Log(TEXT("second"));
	EXPECT_EQ(First.GetFilename(), Path);
	EXPECT_EQ(Second.GetFilename(), Project.Path("Saved/Logs/Game_2.log"));
	EXPECT_NE(Project.Read("Saved/Logs/Game_2.log").find("second"), std::string::npos);

	Project.Write("Saved/blocked", "a file where a directory should be");
	FOutputDeviceFile Nowhere(*Project.Path("Saved/blocked/Game.log"));
	EXPECT_FALSE(Nowhere.IsOpened());
	Nowhere.Log(TEXT("lost without harm"));
}

TEST_F(LogFile, KeepsLinesWholeWhenManyThreadsLog)
{
	FOutputDeviceFile File(*Path);
	FOutputDeviceRedirector::Get()->AddOutputDevice(&File);
	std::vector<std::thread> Threads;
	for (int32 Thread = 0; Thread < 4; ++Thread)
	{
		Threads.emplace_back(
			[]
			{
				for (int32 Line = 0; Line < 200; ++Line)
				{
					UE_LOG(LogUnderTest, Log, TEXT("%s"), *FString::ChrN(100, u'y'));
				}
			});
	}
	for (std::thread& Thread : Threads)
	{
		Thread.join();
	}
	FOutputDeviceRedirector::Get()->RemoveOutputDevice(&File);
	TArray<FString> Lines;
	EXPECT_TRUE(FFileHelper::LoadFileToStringArray(Lines, *Path));
	EXPECT_EQ(Lines.Num(), 800);
	for (const FString& Line : Lines)
	{
		ASSERT_TRUE(Line.EndsWith(TEXT("LogUnderTest: ") + FString::ChrN(100, u'y')));
	}
}

TEST_F(LogFile, BackupsOfTheSameInstantAreAllKeptUpToTheirNumber)
{
	for (int32 Run = 0; Run < 8; ++Run)
	{
		FOutputDeviceFile File(*Path);
		File.Logf(TEXT("run %d"), Run);
	}
	EXPECT_EQ(Backups().Num(), 5);
	EXPECT_TRUE(FString(Project.Read("Saved/Logs/Game.log").c_str()).Contains(TEXT("run 7")));
}
