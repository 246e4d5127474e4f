#pragma once

#include "Containers/UnrealString.h"
#include "HAL/CriticalSection.h"
#include "HAL/PlatformProcess.h"

#include <atomic>

struct FCVXMCPServerConfig;

/** A pipe to or from a child. Goes with this. One thread at a time. */
class FCVXMCPPipe : private FNoncopyable
{
public:
	~FCVXMCPPipe() { Close(); }

	/** @return false when the system has no more. */
	bool Open(bool bWeWrite);
	void CloseRead();
	void CloseWrite();
	void Close();

	void* GetRead() const { return Read; }
	void* GetWrite() const { return Write; }

private:
	void* Read = nullptr;
	void* Write = nullptr;
};

/**
 * A server's process, and the pipes to it. `IsRunning` and `Terminate` are for any thread at any time; all else is for
 * one thread at a time.
 */
class FCVXMCPProcess : private FNoncopyable
{
public:
	~FCVXMCPProcess() { Close(); }

	/**
	 * Starts the command with its arguments and environment variables; our own environment is afterwards as before.
	 * Nothing may be running yet. @return false, with the reason in the log, when it can't be started.
	 */
	bool Launch(const FCVXMCPServerConfig& Config);

	bool IsRunning() const;

	/** Ends the process at once with all that it has started, whoever reads or writes. @return whether there was one.
	 */
	bool Terminate();

	/** Terminates, and lets go of the process and its pipes. */
	void Close();

	/**
	 * Sends a line, waiting for room no longer than the host does for a pipe. @param Line without its end.
	 * @return false when not all of it went.
	 */
	bool WriteLine(const FString& Line);

	/** What the process has written since the last call, if anything; never waits. What it says of errors is logged. */
	FString Read();

private:
	bool OpenPipes();
	FProcHandle Start(const FCVXMCPServerConfig& Config, const FString& Parameters);
	FProcHandle GetHandle() const;

	FString ServerName;
	/** Guards the handle alone; whoever has copied it needs it no more. */
	mutable FCriticalSection HandleLock;
	FProcHandle ProcHandle;
	std::atomic<bool> bTerminated{false};
	FCVXMCPPipe Stdin;
	FCVXMCPPipe Stdout;
	FCVXMCPPipe Stderr;
	/** A line was sent in part, so that the next one has to be told apart from it. */
	bool bLineCut = false;
};
