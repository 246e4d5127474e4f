#include "HAL/PlatformProcess.h"

#include "ChildProcess.h"
#include "ChildReaper.h"
#include "CommandLine.h"
#include "HAL/Event.h"
#include "HAL/HostClock.h"
#include "Logging/LogMacros.h"
#include "OutputCapture.h"
#include "PipeEnd.h"
#include "SpawnRequest.h"

#include <algorithm>
#include <cerrno>
#include <sched.h>
#include <sys/resource.h>

DEFINE_LOG_CATEGORY_STATIC(LogPlatformProcess, Log, All);

namespace
{
int DescriptorOf(void* PipeEnd)
{
	return PipeEnd ? ((FPipeEnd*)PipeEnd)->GetDescriptor() : -1;
}

FSpawnRequest MakeRequest(const TCHAR* URL, const TCHAR* Params, const TCHAR* WorkingDirectory)
{
	FSpawnRequest Request;
	Request.Program = URL;
	Request.Arguments = SplitCommandLine(Params);
	Request.WorkingDirectory = WorkingDirectory;
	return Request;
}

TSharedPtr<FChildProcess> Start(const FSpawnRequest& Request)
{
	FChildReaper::Get().Sweep();
	const pid_t Pid = Request.Spawn();
	if (Pid == 0)
	{
		const int Error = errno;
		UE_LOG(
			LogPlatformProcess, Warning, TEXT("Cannot start %s: %s"), *Request.Program, *PosixFile::ErrorText(Error));
		return nullptr;
	}
	return MakeShared<FChildProcess>(Pid);
}

void SetPriority(pid_t Pid, int32 Modifier)
{
	static constexpr int NiceValues[] = {19, 10, 0, -5, -10};
	if (Modifier != 0)
	{
		// More than our own is only given to the privileged; the child runs all the same.
		(void)::setpriority(PRIO_PROCESS, (id_t)Pid, NiceValues[std::clamp(Modifier, -2, 2) + 2]);
	}
}
} // namespace

FProcHandle FPlatformProcess::CreateProc(const TCHAR* URL, const TCHAR* Params, bool, bool, bool, uint32* OutProcessID,
	int32 PriorityModifier, const TCHAR* OptionalWorkingDirectory, void* PipeWriteChild, void* PipeReadChild,
	void* PipeStdErrChild)
{
	FSpawnRequest Request = MakeRequest(URL, Params, OptionalWorkingDirectory);
	Request.Input = DescriptorOf(PipeReadChild);
	Request.Output = DescriptorOf(PipeWriteChild);
	Request.Errors = DescriptorOf(PipeStdErrChild);
	TSharedPtr<FChildProcess> Child = Start(Request);
	if (Child.IsValid())
	{
		SetPriority(Child->GetPid(), PriorityModifier);
	}
	if (OutProcessID)
	{
		*OutProcessID = Child.IsValid() ? (uint32)Child->GetPid() : 0;
	}
	return FProcHandle(MoveTemp(Child));
}

bool FPlatformProcess::IsProcRunning(FProcHandle& ProcessHandle)
{
	return ProcessHandle.IsValid() && ProcessHandle.Get()->IsRunning();
}

void FPlatformProcess::WaitForProc(FProcHandle& ProcessHandle)
{
	if (ProcessHandle.IsValid())
	{
		ProcessHandle.Get()->Wait();
	}
}

bool FPlatformProcess::GetProcReturnCode(FProcHandle& ProcessHandle, int32* ReturnCode)
{
	int32 Code = 0;
	if (!ProcessHandle.IsValid() || !ProcessHandle.Get()->GetReturnCode(Code))
	{
		return false;
	}
	if (ReturnCode)
	{
		*ReturnCode = Code;
	}
	return true;
}

void FPlatformProcess::CloseProc(FProcHandle& ProcessHandle)
{
	ProcessHandle.Reset();
	FChildReaper::Get().Sweep();
}

void FPlatformProcess::TerminateProc(FProcHandle& ProcessHandle, bool bKillTree)
{
	if (ProcessHandle.IsValid())
	{
		ProcessHandle.Get()->Kill(bKillTree);
	}
}

bool FPlatformProcess::ExecProcess(const TCHAR* URL, const TCHAR* Params, int32* OutReturnCode, FString* OutStdOut,
	FString* OutStdErr, const TCHAR* OptionalWorkingDirectory, double LimitSeconds)
{
	FOutputStream Output;
	FOutputStream Errors;
	FSpawnRequest Request = MakeRequest(URL, Params, OptionalWorkingDirectory);
	const bool bOpen = Output.Open() && Errors.Open();
	Request.Output = Output.GetWriteEnd();
	Request.Errors = Errors.GetWriteEnd();
	const TSharedPtr<FChildProcess> Child = bOpen ? Start(Request) : nullptr;
	if (!Child.IsValid())
	{
		return false;
	}
	Output.CloseWriteEnd();
	Errors.CloseWriteEnd();
	const bool bEnded = CaptureUntilEnd(*Child, Output, Errors, LimitSeconds);
	if (!bEnded)
	{
		Child->Kill(true);
	}
	int32 Code = 0;
	const bool bCode = Child->GetReturnCode(Code);
	(OutReturnCode ? *OutReturnCode : Code) = Code;
	if (OutStdOut)
	{
		*OutStdOut = Output.GetText();
	}
	if (OutStdErr)
	{
		*OutStdErr = Errors.GetText();
	}
	return bEnded && bCode;
}

bool FPlatformProcess::CreatePipe(void*& ReadPipe, void*& WritePipe, bool)
{
	FDescriptor Read;
	FDescriptor Write;
	const bool bMade = FPipeEnd::Create(Read, Write);
	ReadPipe = bMade ? new FPipeEnd(MoveTemp(Read)) : nullptr;
	WritePipe = bMade ? new FPipeEnd(MoveTemp(Write)) : nullptr;
	return bMade;
}

void FPlatformProcess::ClosePipe(void* ReadPipe, void* WritePipe)
{
	delete (FPipeEnd*)ReadPipe;
	delete (FPipeEnd*)WritePipe;
}

FString FPlatformProcess::ReadPipe(void* ReadPipe)
{
	return ReadPipe ? ((FPipeEnd*)ReadPipe)->ReadText() : FString();
}

bool FPlatformProcess::ReadPipeToArray(void* ReadPipe, TArray<uint8>& Output)
{
	Output = ReadPipe ? ((FPipeEnd*)ReadPipe)->ReadBytes() : TArray<uint8>();
	return !Output.IsEmpty();
}

bool FPlatformProcess::WritePipe(void* WritePipe, const FString& Message, FString* OutWritten)
{
	const FTCHARToUTF8 Line(Message + TEXT("\n"));
	int32 Written = 0;
	const bool bAll = FPlatformProcess::WritePipe(WritePipe, (const uint8*)Line.Get(), Line.Length(), &Written);
	if (OutWritten)
	{
		const int32 OfMessage = std::min(Written, Line.Length() - 1);
		*OutWritten = FString::FromUtf8(Line.Get(), CompleteUtf8Length((const uint8*)Line.Get(), OfMessage));
	}
	return bAll;
}

bool FPlatformProcess::WritePipe(
	void* WritePipe, const uint8* Data, int32 DataLength, int32* OutDataLength, double LimitSeconds)
{
	const int64 Written = WritePipe ? ((FPipeEnd*)WritePipe)->Write(Data, DataLength, LimitSeconds) : 0;
	if (OutDataLength)
	{
		*OutDataLength = (int32)Written;
	}
	return WritePipe && Written == DataLength;
}

void FPlatformProcess::Sleep(float Seconds)
{
	if (Seconds > 0)
	{
		FHostClock::Get().Sleep(Seconds);
		return;
	}
	YieldThread();
}

void FPlatformProcess::YieldThread()
{
	(void)::sched_yield();
}

FEvent* FPlatformProcess::GetSynchEventFromPool(bool bIsManualReset)
{
	return FEventPool::Take(bIsManualReset ? EEventMode::ManualReset : EEventMode::AutoReset);
}

void FPlatformProcess::ReturnSynchEventToPool(FEvent* Event)
{
	FEventPool::GiveBack(Event);
}
