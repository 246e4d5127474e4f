#pragma once

#include "Containers/UnrealString.h"

/** How a command ended. */
enum class ECVXCommandEnd : uint8
{
	NotStarted,
	Finished,
	TimedOut,
	/** It wrote more than it may. */
	Flooded,
};

/** A command and what it may use. */
struct FCVXCommand
{
	/** Program and arguments; double quotes keep blanks together, `\"` is a plain quote. No shell reads them. */
	FString CommandLine;
	FString WorkingDir;
	/** The files in the temporary directory that the output goes to; "%s" stands for what makes them unique. */
	FString OutputFile;
	FString ErrorFile;
	double LimitSeconds = 30.0;
	/** Of both files together, watched every 0.05 seconds. */
	int64 MaxOutputBytes = 1024ll * 1024 * 1024;
	/** Whether what the command leaves running ends with it. Past a limit everything ends in any case. */
	bool bEndLeftovers = false;
	/** Whether the files of a command that ran out of time stay, for who wants to know how far it came. */
	bool bKeepFilesOnTimeout = false;
};

/** What a command did. */
struct FCVXCommandResult
{
	ECVXCommandEnd End = ECVXCommandEnd::NotStarted;
	int32 ReturnCode = 0;
	/** The first `MaxLoadedBytes` of each stream, as far as it was written. */
	FString Output;
	FString Errors;

	static constexpr int64 MaxLoadedBytes = 1024 * 1024;
};

/**
 * Runs a command with its output in files under the project's saved directory, so that what it writes takes no memory
 * and no reader holds it up. Waits for its end or a limit. Any thread but the game's, where waiting would be felt.
 */
FCVXCommandResult RunCommand(const FCVXCommand& Command);

/** An argument as a command line takes it, whatever characters it has but NUL. */
FString QuoteArgument(FStringView Argument);

/** The command line by which the system's shell runs a text. */
FString MakeShellCommandLine(const FString& ShellText);

/** The program that `RunCommand` starts. */
const TCHAR* GetCommandProgram();
