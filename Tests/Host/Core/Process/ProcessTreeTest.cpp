#include "Support/HostTypePrinting.h"
#include "Support/ProcessProbe.h"

#include <gtest/gtest.h>

namespace
{
/** Starts a script that writes the ids of its processes, and reads Count of them. */
TArray<int32> StartTree(FChildGuard& Child, const FTestPipe& Output, int32 Count)
{
	FString Text;
	TArray<FString> Lines;
	WaitUntil(
		[&]
		{
			Text += FPlatformProcess::ReadPipe(Output.Read);
			Text.ParseIntoArrayLines(Lines);
			return Lines.Num() >= Count && Text.EndsWith(TEXT("\n"));
		});
	TArray<int32> Pids;
	for (const FString& Line : Lines)
	{
		Pids.Add(FCString::Atoi(*Line));
		EXPECT_TRUE(IsAlive(Pids.Last())) << Pids.Last();
	}
	EXPECT_TRUE(FPlatformProcess::IsProcRunning(Child.Handle));
	return Pids;
}

void ExpectAllGone(const TArray<int32>& Pids)
{
	for (const int32 Pid : Pids)
	{
		WaitUntil([Pid] { return !IsAlive(Pid); });
	}
}
} // namespace

TEST(ProcessTree, DiesWholeThoughItsMembersIgnoreSignals)
{
	FTestPipe Output;
	FChildGuard Child(StartShell(
		TEXT(
			"trap '' TERM INT HUP; echo $$; for I in 1 2 3; do (sleep 300 & echo $!; sleep 300) & echo $!; done; wait"),
		Output.Write));
	const TArray<int32> Pids = StartTree(Child, Output, 7);
	FPlatformProcess::TerminateProc(Child.Handle, true);
	int32 Code = 0;
	EXPECT_TRUE(FPlatformProcess::GetProcReturnCode(Child.Handle, &Code));
	EXPECT_EQ(Code, 128 + 9);
	ExpectAllGone(Pids);
}

TEST(ProcessTree, DiesWithWhatLeftTheSession)
{
	FTestPipe Output;
	FChildGuard Child(StartShell(
		TEXT("echo $$; setsid sh -c 'echo $$; setsid sh -c \"echo \\$\\$; sleep 300; :\"; :' & wait"), Output.Write));
	const TArray<int32> Pids = StartTree(Child, Output, 3);
	FPlatformProcess::TerminateProc(Child.Handle, true);
	ExpectAllGone(Pids);
}

TEST(ProcessTree, DiesThoughItsLeaderHasEndedBefore)
{
	FTestPipe Output;
	FChildGuard Child(StartShell(TEXT("sleep 300 & echo $!"), Output.Write));
	const int32 Pid = FCString::Atoi(*ReadUntil(Output.Read, TEXT("\n")));
	FPlatformProcess::WaitForProc(Child.Handle);
	EXPECT_TRUE(IsAlive(Pid));
	FPlatformProcess::TerminateProc(Child.Handle, true);
	ExpectAllGone({Pid});
	int32 Code = -1;
	EXPECT_TRUE(FPlatformProcess::GetProcReturnCode(Child.Handle, &Code));
	EXPECT_EQ(Code, 0) << "how the leader ended stays known";
}

TEST(ProcessTree, DiesWhileItKeepsStartingOthers)
{
	FTestPipe Output;
	FChildGuard Child(StartShell(
		TEXT("echo $$; for I in 1 2 3 4; do (while :; do setsid sleep 300 & echo $!; wait; done) & done; wait"),
		Output.Write));
	const TArray<int32> Pids = StartTree(Child, Output, 5);
	FPlatformProcess::TerminateProc(Child.Handle, true);
	TArray<FString> Late;
	FPlatformProcess::ReadPipe(Output.Read).ParseIntoArrayLines(Late);
	ExpectAllGone(Pids);
	for (const FString& Pid : Late)
	{
		ExpectAllGone({FCString::Atoi(*Pid)});
	}
}

TEST(ProcessTree, StaysWhenTheChildAloneIsEnded)
{
	FTestPipe Output;
	FChildGuard Child(StartShell(TEXT("sleep 300 & echo $!; wait"), Output.Write));
	const int32 Pid = FCString::Atoi(*ReadUntil(Output.Read, TEXT("\n")));
	FPlatformProcess::TerminateProc(Child.Handle, false);
	EXPECT_FALSE(FPlatformProcess::IsProcRunning(Child.Handle));
	EXPECT_TRUE(IsAlive(Pid));
}

TEST(ProcessTree, LeavesOurOtherChildrenAlone)
{
	FTestPipe Input(true);
	FChildGuard Other(StartShell(TEXT("read Line"), nullptr, Input.Read));
	FTestPipe Output;
	FChildGuard Child(StartShell(TEXT("echo $$; sleep 300; :"), Output.Write));
	const TArray<int32> Pids = StartTree(Child, Output, 1);
	FPlatformProcess::TerminateProc(Child.Handle, true);
	ExpectAllGone(Pids);
	EXPECT_TRUE(FPlatformProcess::IsProcRunning(Other.Handle));
}
