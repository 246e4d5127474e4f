#pragma once

#include "Containers/Array.h"
#include "Containers/UnrealString.h"

class FEvent;

/** A child process. Copies name the same child; `CloseProc` gives the handle up. */
struct FProcHandle
{
	/** The child's process id; 0 for none. */
	int32 Pid = 0;

	bool IsValid() const { return Pid > 0; }
	void Reset() { Pid = 0; }
};

/**
 * Child processes, pipes, waiting, and where the user's files lie. A child leads a process group of its own, so that its
 * whole tree can be ended; it gets no descriptor of ours but the pipe ends it is given. Any thread, but one pipe end and
 * one handle are for one thread at a time.
 */
struct FPlatformProcess
{
	/**
	 * Starts a child. @param URL the program: a path, or a name that is looked up in PATH. @param Params its arguments;
	 * blanks separate them, double quotes keep blanks, and a backslash in front of a quote makes it plain.
	 * @param bLaunchDetached the child outlives us and is not ended with a tree. @param OutProcessID its id; may be null.
	 * @param PriorityModifier -2 to 2; 0 is our own. @param OptionalWorkingDirectory null for our own.
	 * @param PipeWriteChild the end that the child's output goes to; null sends it nowhere. @param PipeReadChild the end that
	 * the child reads; null gives an empty input. @param PipeStdErrChild null joins the errors with the output.
	 * @return an invalid handle when it can't be started, which is logged.
	 */
	static FProcHandle CreateProc(const TCHAR* URL, const TCHAR* Params, bool bLaunchDetached, bool bLaunchHidden,
		bool bLaunchReallyHidden, uint32* OutProcessID, int32 PriorityModifier, const TCHAR* OptionalWorkingDirectory,
		void* PipeWriteChild, void* PipeReadChild = nullptr, void* PipeStdErrChild = nullptr);

	static bool IsProcRunning(FProcHandle& ProcessHandle);
	/** Waits for the end without a limit of its own; prefer `IsProcRunning` with one. */
	static void WaitForProc(FProcHandle& ProcessHandle);
	/** @return false while it runs, or for an invalid handle. A child ended by a signal returns 128 plus its number. */
	static bool GetProcReturnCode(FProcHandle& ProcessHandle, int32* ReturnCode);
	/** Gives the handle up; a child that still runs goes on and is reaped when it ends. */
	static void CloseProc(FProcHandle& ProcessHandle);
	/** Ends the child at once, with its tree on demand. Its return code can still be asked for. */
	static void TerminateProc(FProcHandle& ProcessHandle, bool bKillTree = false);

	/**
	 * Runs a program to its end and keeps its output, each stream up to `MaxCapturedBytes`. @param LimitSeconds after it
	 * the tree is ended and the call fails. @return false when it couldn't be started or was ended.
	 */
	static bool ExecProcess(const TCHAR* URL, const TCHAR* Params, int32* OutReturnCode, FString* OutStdOut,
		FString* OutStdErr, const TCHAR* OptionalWorkingDirectory = nullptr, double LimitSeconds = 600.0);
	static constexpr int64 MaxCapturedBytes = 64ll * 1024 * 1024;

	/** @param bWritePipeLocal true when we write and a child reads, false the other way round. */
	static bool CreatePipe(void*& ReadPipe, void*& WritePipe, bool bWritePipeLocal = false);
	/** Closes both ends; either may be null. */
	static void ClosePipe(void* ReadPipe, void* WritePipe);
	/** What can be read at once, up to 1 MiB; empty when there is nothing. A character is never cut in two. */
	static FString ReadPipe(void* ReadPipe);
	/** As ReadPipe, in bytes. @return false when nothing was there. */
	static bool ReadPipeToArray(void* ReadPipe, TArray<uint8>& Output);
	/**
	 * Writes the message and a line end, all of it, waiting up to `PipeWriteLimitSeconds` for the reader.
	 * @param OutWritten what was written; may be null. @return false when it isn't all.
	 */
	static bool WritePipe(void* WritePipe, const FString& Message, FString* OutWritten = nullptr);
	static bool WritePipe(void* WritePipe, const uint8* Data, int32 DataLength, int32* OutDataLength = nullptr);
	static constexpr double PipeWriteLimitSeconds = 5.0;

	/** By the host's clock. */
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

	/** Opens a file, or a web address, as the desktop does. Doesn't wait. @return false when there is no desktop. */
	static bool LaunchFileInDefaultExternalApplication(const TCHAR* FileName);
	static void LaunchURL(const TCHAR* URL, const TCHAR* Params, FString* Error);
};
