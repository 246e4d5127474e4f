#include "HAL/PlatformMisc.h"
#include "Support/FaultPlan.h"
#include "Support/HostTypePrinting.h"
#include "Support/LogCapture.h"
#include "Support/ProcessProbe.h"
#include "Support/TempProject.h"
#include "Support/TestClock.h"

#include <gtest/gtest.h>

#include <csignal>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

TEST(Process, ReportsHowAChildEnded)
{
	const struct
	{
		const TCHAR* Script;
		int32 Code;
	} Cases[] = {{TEXT("exit 0"), 0}, {TEXT("exit 7"), 7}, {TEXT("exit 255"), 255}, {TEXT("kill -TERM $$"), 128 + 15},
		{TEXT("kill -KILL $$"), 128 + 9}};
	for (const auto& Case : Cases)
	{
		FProcHandle Handle = StartShell(Case.Script);
		FProcHandle Copy = Handle;
		FPlatformProcess::WaitForProc(Handle);
		int32 Code = -1;
		EXPECT_FALSE(FPlatformProcess::IsProcRunning(Handle));
		EXPECT_TRUE(FPlatformProcess::GetProcReturnCode(Handle, &Code));
		EXPECT_EQ(Code, Case.Code);
		FPlatformProcess::CloseProc(Handle);
		EXPECT_FALSE(Handle.IsValid());
		EXPECT_FALSE(FPlatformProcess::GetProcReturnCode(Handle, &Code));
		EXPECT_TRUE(FPlatformProcess::GetProcReturnCode(Copy, nullptr)) << "a copy shares the child";
	}
}

TEST(Process, HasNoReturnCodeWhileItRuns)
{
	FTestPipe Input(true);
	FChildGuard Child(StartShell(TEXT("read Line; exit 3"), nullptr, Input.Read));
	int32 Code = -1;
	EXPECT_TRUE(FPlatformProcess::IsProcRunning(Child.Handle));
	EXPECT_FALSE(FPlatformProcess::GetProcReturnCode(Child.Handle, &Code));
	EXPECT_EQ(Code, -1);
	EXPECT_TRUE(FPlatformProcess::WritePipe(Input.Write, FString(TEXT("go"))));
	FPlatformProcess::WaitForProc(Child.Handle);
	EXPECT_TRUE(FPlatformProcess::GetProcReturnCode(Child.Handle, &Code));
	EXPECT_EQ(Code, 3);
}

TEST(Process, AMissingProgramOrDirectoryGivesAnInvalidHandleAndAWarning)
{
	FTempProject Project;
	Project.Write("plain.txt", "no program");
	const struct
	{
		FString Program;
		const TCHAR* Directory;
	} Cases[] = {{TEXT("no-such-program-anywhere"), nullptr}, {Project.Path("missing"), nullptr},
		{Project.Path("plain.txt"), nullptr}, {Project.Dir(), nullptr}, {FString(), nullptr},
		{TEXT("/bin/sh"), TEXT("/no/such/directory")}};
	for (const auto& Case : Cases)
	{
		FLogCapture Log;
		uint32 Pid = 1;
		FProcHandle Handle =
			FPlatformProcess::CreateProc(*Case.Program, TEXT(""), false, true, true, &Pid, 0, Case.Directory, nullptr);
		EXPECT_FALSE(Handle.IsValid()) << TCHAR_TO_UTF8(*Case.Program);
		EXPECT_EQ(Pid, 0u);
		EXPECT_EQ(Log.Count(TEXT("Cannot start"), ELogVerbosity::Warning), 1);
		EXPECT_FALSE(FPlatformProcess::IsProcRunning(Handle));
		FPlatformProcess::WaitForProc(Handle);
		FPlatformProcess::TerminateProc(Handle, true);
		FPlatformProcess::CloseProc(Handle);
	}
}

TEST(Process, RunsInTheDirectoryGivenAndIsFoundFromOurs)
{
	FTempProject Project;
	Project.Write("Saved/where.sh", "#!/bin/sh\npwd\n");
	const FString Script = Project.Path("Saved/where.sh");
	ASSERT_EQ(::chmod(TCHAR_TO_UTF8(*Script), 0755), 0);
	FString Output;
	EXPECT_TRUE(FPlatformProcess::ExecProcess(*Script, TEXT(""), nullptr, &Output, nullptr, *Project.Path("Config")));
	EXPECT_EQ(Output.TrimEnd(), Project.Path("Config"));

	const FString PathBefore = FPlatformMisc::GetEnvironmentVariable(TEXT("PATH"));
	FPlatformMisc::SetEnvironmentVar(TEXT("PATH"), *(Project.Path("Saved") + TEXT(":") + PathBefore));
	EXPECT_TRUE(FPlatformProcess::ExecProcess(TEXT("where.sh"), TEXT(""), nullptr, &Output, nullptr));
	FPlatformMisc::SetEnvironmentVar(TEXT("PATH"), *PathBefore);
	EXPECT_FALSE(FPlatformProcess::ExecProcess(TEXT("where.sh"), TEXT(""), nullptr, &Output, nullptr));
}

TEST(Process, ChildrenGetTheEnvironmentAsItIsWhenTheyStart)
{
	const TCHAR* Name = TEXT("CVX_TEST_VARIABLE");
	EXPECT_TRUE(FPlatformMisc::GetEnvironmentVariable(Name).IsEmpty());
	FPlatformMisc::SetEnvironmentVar(Name, TEXT("a=b; \"ü\""));
	EXPECT_EQ(FPlatformMisc::GetEnvironmentVariable(Name), FString(TEXT("a=b; \"ü\"")));
	EXPECT_EQ(RunShell(TEXT("printf %s \"$CVX_TEST_VARIABLE\"")), FString(TEXT("a=b; \"ü\"")));
	FPlatformMisc::SetEnvironmentVar(Name, TEXT(""));
	EXPECT_EQ(RunShell(TEXT("printf %s \"${CVX_TEST_VARIABLE-unset}\"")), FString(TEXT("unset")));
	FPlatformMisc::SetEnvironmentVar(TEXT("BAD=NAME"), TEXT("x"));
	FPlatformMisc::SetEnvironmentVar(TEXT(""), TEXT("x"));
	EXPECT_EQ(RunShell(TEXT("env | grep -c BAD")), FString(TEXT("0\n")));
	EXPECT_FALSE(FPlatformMisc::GetEnvironmentVariable(TEXT("PATH")).IsEmpty());
}

TEST(Process, ChildrenInheritNoDescriptorAndNoIgnoredSignal)
{
	// One that someone opened without close-on-exec, and pipes of our own.
	const int Foreign = ::open("/dev/null", O_RDONLY);
	FTestPipe Pipe;
	EXPECT_EQ(RunShell(TEXT("ls /proc/self/fd | tr '\\n' ' '")), FString(TEXT("0 1 2 3 ")))
		<< "the fourth is the listing's own";
	EXPECT_EQ(::close(Foreign), 0);
	EXPECT_EQ(RunShell(TEXT("yes | head -n 1")), FString(TEXT("y\n"))) << "a writer dies of its broken pipe in silence";
	EXPECT_EQ(RunShell(TEXT("grep SigBlk /proc/self/status")), FString(TEXT("SigBlk:\t0000000000000000\n")));
	// The C library ignores two signals of its own, which no program sees, above these.
	EXPECT_TRUE(RunShell(TEXT("grep SigIgn /proc/self/status")).EndsWith(TEXT("0000000\n")));
}

TEST(Process, ChildrenStandInASessionOfTheirOwnWithoutATerminal)
{
	const FString Line = RunShell(TEXT("cut -d' ' -f1,5,6,7 /proc/$$/stat"));
	TArray<FString> Parts;
	ASSERT_EQ(Line.TrimEnd().ParseIntoArray(Parts, TEXT(" ")), 4);
	EXPECT_EQ(Parts[0], Parts[1]) << "leads its group";
	EXPECT_EQ(Parts[0], Parts[2]) << "leads its session";
	EXPECT_EQ(Parts[3], FString(TEXT("0"))) << "has no terminal";
}

TEST(Process, LeavesNoZombieOnceItsHandleIsClosed)
{
	uint32 Ended = 0;
	FProcHandle First = StartShell(TEXT("exit 0"), nullptr, nullptr, nullptr, &Ended);
	FPlatformProcess::WaitForProc(First);
	EXPECT_TRUE(HasEntry((int32)Ended)) << "its code can still be asked for";
	FPlatformProcess::CloseProc(First);
	EXPECT_FALSE(HasEntry((int32)Ended));

	FTestPipe Input(true);
	uint32 Running = 0;
	FProcHandle Second = StartShell(TEXT("read Line"), nullptr, Input.Read, nullptr, &Running);
	FPlatformProcess::CloseProc(Second);
	EXPECT_TRUE(IsAlive((int32)Running)) << "giving a handle up ends nothing";
	Input.CloseRead();
	Input.CloseWrite();
	WaitUntil(
		[&]
		{
			FProcHandle None;
			FPlatformProcess::CloseProc(None);
			return !HasEntry((int32)Running);
		});
}

TEST(Process, ExecProcessKeepsBothStreamsApartAndWhole)
{
	FString Output;
	FString Errors;
	int32 Code = -1;
	EXPECT_TRUE(FPlatformProcess::ExecProcess(
		TEXT("sh"), TEXT("-c \"printf 'aü'; printf 'eß' >&2; exit 5\""), &Code, &Output, &Errors));
	EXPECT_EQ(Code, 5);
	EXPECT_EQ(Output, FString(TEXT("aü")));
	EXPECT_EQ(Errors, FString(TEXT("eß")));
	EXPECT_TRUE(FPlatformProcess::ExecProcess(
		TEXT("sh"), TEXT("-c \"echo unheard; echo too >&2\""), nullptr, nullptr, nullptr));
	// More than a pipe holds, on both at once: neither stream may wait for the other.
	const FString Both =
		RunShell(TEXT("head -c 1000000 /dev/zero | tr '\\0' 'o'; head -c 1000000 /dev/zero | tr '\\0' 'e' >&2"));
	EXPECT_EQ(Both.Len(), 2000000);
	EXPECT_EQ(RunShell(TEXT("cat; echo empty")), FString(TEXT("empty\n"))) << "the input ends at once";
}

TEST(Process, ExecProcessDoesNotWaitForWhatAChildLeavesBehind)
{
	const FString Text = RunShell(TEXT("sleep 300 & echo $!"));
	const int32 Pid = FCString::Atoi(*Text);
	EXPECT_TRUE(IsAlive(Pid));
	EXPECT_EQ(::kill(Pid, SIGKILL), 0);
}

TEST(Process, ExecProcessEndsTheWholeTreeAtItsLimit)
{
	FString Output;
	const FString Script = TEXT("-c \"trap '' TERM INT HUP; echo $$; sleep 300 & echo $!; sleep 300\"");
	EXPECT_FALSE(FPlatformProcess::ExecProcess(TEXT("sh"), *Script, nullptr, &Output, nullptr, nullptr, 0.5));
	TArray<FString> Pids;
	ASSERT_EQ(Output.ParseIntoArrayLines(Pids), 2) << "what was written until then is kept";
	for (const FString& Pid : Pids)
	{
		WaitUntil([&] { return !IsAlive(FCString::Atoi(*Pid)); });
	}
}

TEST(Process, ExecProcessBoundsTheMemoryOfAFlood)
{
	FString Output;
	const FString Script = FString::Printf(TEXT("-c \"head -c %lld /dev/zero | tr '\\0' 'x'; printf end >&2\""),
		FPlatformProcess::MaxCapturedBytes + 3000000);
	FString Errors;
	int32 Code = -1;
	EXPECT_TRUE(FPlatformProcess::ExecProcess(TEXT("sh"), *Script, &Code, &Output, &Errors));
	EXPECT_EQ(Output.Len(), FPlatformProcess::MaxCapturedBytes);
	EXPECT_EQ(Errors, FString(TEXT("end"))) << "the child got rid of all its output";
	EXPECT_EQ(Code, 0);
}

TEST(Process, FailsCleanlyWhicheverCallTheSystemRefuses)
{
	for (const FFaultPlan::EHow How : {FFaultPlan::EHow::Once, FFaultPlan::EHow::FromThereOn})
	{
		const int32 Faults = FFaultPlan::ForEach(EHostFault::Process, How,
			[](int32 Nth)
			{
				FLogCapture Log;
				FString Output(TEXT("old"));
				const bool bRan = FPlatformProcess::ExecProcess(
					TEXT("sh"), TEXT("-c \"echo out; echo err >&2\""), nullptr, &Output, nullptr);
				EXPECT_TRUE(!bRan || Output.Equals(TEXT("out\n"))) << Nth << ": success with a part of the output";
			});
		EXPECT_GE(Faults, 4) << "two pipes, a start and readings";
	}
}

TEST(Process, SleepsByTheHostsClock)
{
	FTestClock Clock;
	const double Before = FHostClock::Get().GetSeconds();
	FPlatformProcess::Sleep(3600.0f);
	FPlatformProcess::Sleep(0.0f);
	EXPECT_EQ(FHostClock::Get().GetSeconds(), Before + 3600);
}

TEST(Process, KnowsItselfAndItsUser)
{
	EXPECT_EQ(FPlatformProcess::GetCurrentProcessId(), (uint32)::getpid());
	EXPECT_EQ(::access(TCHAR_TO_UTF8(FPlatformProcess::ExecutablePath()), X_OK), 0);
	for (const TCHAR* Directory :
		{FPlatformProcess::UserDir(), FPlatformProcess::UserTempDir(), FPlatformProcess::UserSettingsDir()})
	{
		EXPECT_TRUE(FString(Directory).StartsWith(TEXT("/")) && FString(Directory).EndsWith(TEXT("/")));
	}
	EXPECT_GE(FPlatformMisc::NumberOfCores(), 1);
}
