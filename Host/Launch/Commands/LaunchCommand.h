#pragma once

#include "Containers/Array.h"
#include "Containers/UnrealString.h"

struct FLaunchOptions;

/** One of the things that the program does, by its first word. */
struct FLaunchCommand
{
	const TCHAR* Name;
	/** What stands behind the name, for the help; may be empty. */
	const TCHAR* Arguments;
	/** One line. */
	const TCHAR* Summary;
	/** What the command's own help adds; lines with their ends. */
	const TCHAR* Details;
	/** @return the exit status. */
	int (*Run)(const FLaunchOptions& Options);
	/** Whether it goes on with a stored conversation, or with a branch of one, when it is told to. */
	bool bConverses = false;
};

/** All commands, in the order of the help. */
TArrayView<const FLaunchCommand> GetLaunchCommands();

/** Writes one line about wrong usage, and where help is, to standard error. @return the exit status for it. */
int ReportUsageError(const FString& Error);
