#pragma once

#include "Containers/UnrealString.h"

/** The environment and the machine. Any thread: our own changes to the environment are guarded against each other. */
struct FPlatformMisc
{
	/** The variable's value; empty when it isn't set. */
	static FString GetEnvironmentVariable(const TCHAR* VariableName);
	/** An empty value removes the variable. Children started from then on see it. */
	static void SetEnvironmentVar(const TCHAR* VariableName, const TCHAR* Value);

	static int32 NumberOfCores();
	static int32 NumberOfCoresIncludingHyperthreads();
};
