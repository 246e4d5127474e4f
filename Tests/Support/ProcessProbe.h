#pragma once

#include "Containers/Array.h"
#include "Containers/UnrealString.h"
#include "HAL/PlatformProcess.h"
#include "Templates/Function.h"

/** Starts `/bin/sh -c Script`, quoted. The pipe ends may be null. */
FProcHandle StartShell(const FString& Script, void* Output = nullptr, void* Input = nullptr,
	const TCHAR* WorkingDirectory = nullptr, uint32* OutPid = nullptr);

/** Runs a script to its end. @return what it wrote to both streams, the errors last. */
FString RunShell(const FString& Script, int32* OutCode = nullptr, double LimitSeconds = 60.0);

/** Pumps until the condition holds. @return false, with a test failure, after a generous deadline. */
bool WaitUntil(TFunctionRef<bool()> Condition);

/** Reads from a pipe until the text holds what is looked for. */
FString ReadUntil(void* Pipe, const TCHAR* Expected);

/** Whether a process is there and isn't just waiting to be reaped. */
bool IsAlive(int32 Pid);
/** Whether the system still has an entry for it, be it dead or alive. */
bool HasEntry(int32 Pid);

/** A pipe that goes at the end of the scope. */
struct FTestPipe
{
	explicit FTestPipe(bool bWriteLocal = false);
	~FTestPipe();
	void CloseRead();
	void CloseWrite();

	void* Read = nullptr;
	void* Write = nullptr;
};

/** Ends a child with its tree at the end of the scope. */
struct FChildGuard
{
	explicit FChildGuard(FProcHandle InHandle)
		: Handle(InHandle)
	{
	}
	~FChildGuard();

	FProcHandle Handle;
};
