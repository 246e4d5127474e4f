#pragma once

#include "Containers/Array.h"
#include "Containers/UnrealString.h"
#include "Templates/SharedPointer.h"

class FChildProcess;
class FEvent;

/** A child process. Copies share the child; it is given up with the last of them. */
class FProcHandle
{
public:
	FProcHandle() = default;
	explicit FProcHandle(TSharedPtr<FChildProcess> InChild)
		: Child(MoveTemp(InChild))
	{
	}

	bool IsValid() const { return Child.IsValid(); }
	void Reset() { Child.Reset(); }
	FChildProcess* Get() const { return Child.Get(); }

private:
	TSharedPtr<FChildProcess> Child;
};

/**
 * Child processes, pipes, waiting, and where the user's files lie. Every child leads a session of its own, without a
 * terminal, so that its whole tree can be ended and none of it asks or stops for a terminal. It gets no descriptor of
 * ours but the pipe ends it is given. Any thread, but one pipe end and one handle object are for one thread at a time.
 */
struct FPlatformProcess
{
	/**
	 * Starts a child. @param URL the program: a path, or a name that is looked up in PATH. @param Params its arguments;
	 * blanks separate them, double quotes keep blanks, and a backslash in front of a quote makes it plain; any other
	 * backslash stands for itself. @param bLaunchDetached and the two that follow change nothing here: a child has no
	 * window and outlives us in any case. @param OutProcessID its id; may be null. @param PriorityModifier -2 to 2, as
	 * far as the system allows; 0 is our own. @param OptionalWorkingDirectory null for our own. @param PipeWriteChild
	 * the end that the child's output goes to; null sends it nowhere. @param PipeReadChild the end that the child
	 * reads; null gives an empty input. @param PipeStdErrChild null joins the errors with the output. The ends stay
	 * ours to close.
	 * @return an invalid handle when it can't be started, which is logged.
	 */
	static FProcHandle CreateProc(const TCHAR* URL, const TCHAR* Params, bool bLaunchDetached, bool bLaunchHidden,
		bool bLaunchReallyHidden, uint32* OutProcessID, int32 PriorityModifier, const TCHAR* OptionalWorkingDirectory,
		void* PipeWriteChild, void* PipeReadChild = nullptr, void* PipeStdErrChild = nullptr);

	/** False for an invalid handle. */
	static bool IsProcRunning(FProcHandle& ProcessHandle);
	/** Waits for the end without a limit of its own; prefer `IsProcRunning` with one. */
	static void WaitForProc(FProcHandle& ProcessHandle);
	/** @return false while it runs, or for an invalid handle. A child ended by a signal returns 128 plus its number. */
	static bool GetProcReturnCode(FProcHandle& ProcessHandle, int32* ReturnCode);
	/** Gives the handle up; a child that still runs goes on and is reaped when it has ended. */
	static void CloseProc(FProcHandle& ProcessHandle);
	/**
	 * Ends the child at once. Its return code can still be asked for. @param bKillTree ends all that descends from it,
	 * also when the child itself has ended; what has left its session counts as long as its parents live.
	 */
	static void TerminateProc(FProcHandle& ProcessHandle, bool bKillTree = false);

	/**
	 * Runs a program to its end and keeps its output, each stream up to `MaxCapturedBytes`. A process that it leaves
	 * behind isn't waited for. @param OutReturnCode and the two texts may be null. @param LimitSeconds by the system's
	 * clock; after it the tree is ended and the call fails. @return false when it couldn't be started or heard to its
	 * end.
	 */
	static bool ExecProcess(const TCHAR* URL, const TCHAR* Params, int32* OutReturnCode, FString* OutStdOut,
		FString* OutStdErr, const TCHAR* OptionalWorkingDirectory = nullptr, double LimitSeconds = 600.0);
	static constexpr int64 MaxCapturedBytes = 64ll * 1024 * 1024;

	/**
	 * Both ends are closed with `ClosePipe`. @param bWritePipeLocal true when we write and a child reads, false the
	 * other way round; here an end becomes ours by our using it. @return false, and null ends, when the system has no
	 * more.
	 */
	static bool CreatePipe(void*& ReadPipe, void*& WritePipe, bool bWritePipeLocal = false);
	/** Closes both ends; either may be null. */
	static void ClosePipe(void* ReadPipe, void* WritePipe);
	/**
	 * What can be read at once, up to 1 MiB, as UTF-8; empty when there is nothing, also for a null end. Never waits. A
	 * character is never cut in two: its beginning is kept until the rest comes, or until the pipe ends.
	 */
	static FString ReadPipe(void* ReadPipe);
	/** As ReadPipe, in bytes. @return false when nothing was there. */
	static bool ReadPipeToArray(void* ReadPipe, TArray<uint8>& Output);
	/**
	 * Writes the message and a line end, all of it, waiting up to `PipeWriteLimitSeconds` for the reader.
	 * @param OutWritten the part of the message that was written; may be null. @return false when it isn't all, and for
	 * a null end.
	 */
	static bool WritePipe(void* WritePipe, const FString& Message, FString* OutWritten = nullptr);
	static constexpr double PipeWriteLimitSeconds = 5.0;
	/** As above, of bytes and with a limit of one's own. */
	static bool WritePipe(void* WritePipe, const uint8* Data, int32 DataLength, int32* OutDataLength = nullptr,
		double LimitSeconds = PipeWriteLimitSeconds);

	/** By the host's clock; 0 lets other threads go first. */
	static void Sleep(float Seconds);
	static void YieldThread();

	/** An event from the pool; give it back instead of deleting it. */
	static FEvent* GetSynchEventFromPool(bool bIsManualReset = false);
	static void ReturnSynchEventToPool(FEvent* Event);

	static uint32 GetCurrentProcessId();
	static const TCHAR* ExecutablePath();
	static const TCHAR* ComputerName();
	static const TCHAR* UserName();
	/** Directories of the user, ending in a slash. */
	static const TCHAR* UserDir();
	static const TCHAR* UserTempDir();
	static const TCHAR* UserSettingsDir();

	/** Opens a file or a directory as the desktop does. Doesn't wait. @return false when there is no desktop. */
	static bool LaunchFileInDefaultExternalApplication(const TCHAR* FileName, const TCHAR* Params = nullptr);
	/** Opens a web address in the user's browser. @param Params is appended to it. @param Error the failure; may be
	 * null. */
	static void LaunchURL(const TCHAR* URL, const TCHAR* Params, FString* Error);
};
