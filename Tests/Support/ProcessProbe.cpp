#include "Support/ProcessProbe.h"

#include "HAL/HostClock.h"

#include <fstream>
#include <gtest/gtest.h>
#include <string>

namespace
{
constexpr double DeadlineSeconds = 60.0;

FString ShellParams(const FString& Script)
{
	return TEXT("-c \"") + Script.Replace(TEXT("\""), TEXT("\\\"")) + TEXT("\"");
}

/** The letter that the system shows for a process's state; 0 for none. */
char StateOf(int32 Pid)
{
	std::ifstream Stream("/proc/" + std::to_string(Pid) + "/stat");
	const std::string Line{std::istreambuf_iterator<char>(Stream), std::istreambuf_iterator<char>()};
	const SIZE_T End = Line.rfind(')');
	return End == std::string::npos || End + 2 >= Line.size() ? '\0' : Line[End + 2];
}
} // namespace

FProcHandle StartShell(const FString& Script, void* Output, void* Input, const TCHAR* WorkingDirectory, uint32* OutPid)
{
	return FPlatformProcess::CreateProc(
		TEXT("/bin/sh"), *ShellParams(Script), false, true, true, OutPid, 0, WorkingDirectory, Output, Input);
}

FString RunShell(const FString& Script, int32* OutCode, double LimitSeconds)
{
	FString Output;
	FString Errors;
	EXPECT_TRUE(FPlatformProcess::ExecProcess(
		TEXT("/bin/sh"), *ShellParams(Script), OutCode, &Output, &Errors, nullptr, LimitSeconds));
	return Output + Errors;
}

bool WaitUntil(TFunctionRef<bool()> Condition)
{
	IHostClock& Clock = FHostClock::GetSystem();
	const double Deadline = Clock.GetSeconds() + DeadlineSeconds;
	while (!Condition())
	{
		if (Clock.GetSeconds() > Deadline)
		{
			ADD_FAILURE() << "nothing happened before the deadline";
			return false;
		}
		Clock.Sleep(0.001);
	}
	return true;
}

FString ReadUntil(void* Pipe, const TCHAR* Expected)
{
	FString Text;
	WaitUntil(
		[&]
		{
			Text += FPlatformProcess::ReadPipe(Pipe);
			return Text.Contains(Expected);
		});
	return Text;
}

bool IsAlive(int32 Pid)
{
	const char State = StateOf(Pid);
	return State != '\0' && State != 'Z' && State != 'X';
}

bool HasEntry(int32 Pid)
{
	return StateOf(Pid) != '\0';
}

FTestPipe::FTestPipe(bool bWriteLocal)
{
	EXPECT_TRUE(FPlatformProcess::CreatePipe(Read, Write, bWriteLocal));
}

FTestPipe::~FTestPipe()
{
	FPlatformProcess::ClosePipe(Read, Write);
}

void FTestPipe::CloseRead()
{
	FPlatformProcess::ClosePipe(Exchange(Read, nullptr), nullptr);
}

void FTestPipe::CloseWrite()
{
	FPlatformProcess::ClosePipe(nullptr, Exchange(Write, nullptr));
}

FChildGuard::~FChildGuard()
{
	FPlatformProcess::TerminateProc(Handle, true);
	FPlatformProcess::CloseProc(Handle);
}
