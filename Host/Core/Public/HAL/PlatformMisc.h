#pragma once

#include "Containers/UnrealString.h"

/**
 * The environment and the machine. The environment is the process's own at its start and what was set here since; the C
 * library's copy stays as it was. Any thread.
 */
struct FPlatformMisc
{
	/** The variable's value; empty when it isn't set. */
	static FString GetEnvironmentVariable(const TCHAR* VariableName);
	/** An empty value removes the variable. Children started from then on see it. */
	static void SetEnvironmentVar(const TCHAR* VariableName, const TCHAR* Value);

	/** At least 1. What the system counts as a processor counts as a core. */
	static int32 NumberOfCores();
	static int32 NumberOfCoresIncludingHyperthreads();
};
