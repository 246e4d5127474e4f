#pragma once

#include "Containers/UnrealString.h"
#include "Core/CVXTypes.h"
#include "Misc/Optional.h"

/** What the command line asks for. */
struct FLaunchOptions
{
	/** The first word; empty without one. */
	FString Command;
	/** The words behind it, in order. A single dash stands for standard input. */
	TArray<FString> Words;

	/** Directory or project file; empty means the working directory. */
	FString Project;
	FString Provider;
	FString Model;
	FString Agent;
	/** The conversation to go on with, by its id or "last"; empty begins a new one. Not with the next. */
	FString Resume;
	/** The conversation to branch, by its id or "last"; empty branches none. */
	FString Fork;
	/** How many of its messages the branch begins with, at most. */
	int32 ForkMessages = MAX_int32;
	TOptional<ECVXApprovalMode> ApprovalMode;
	bool bJson = false;
	bool bVerbose = false;
	bool bHelp = false;
	bool bVersion = false;
};

/** One option, as the help shows it. */
struct FLaunchOptionHelp
{
	/** With its dashes, and with what its value is called. */
	FString Usage;
	FString Help;
};

namespace LaunchOptions
{
/**
 * Reads `--name value`, `--name=value` and flags, in any order with the words; behind `--` all are words. A value that
 * may be missing is taken from the next argument only when that looks like one.
 * @param Arguments without the program's name. @param OutError one line for the user. @return false for wrong usage.
 */
bool Parse(const TArray<FString>& Arguments, FLaunchOptions& OutOptions, FString& OutError);

/** All options, in the order of the help. */
TArray<FLaunchOptionHelp> GetHelp();
} // namespace LaunchOptions
