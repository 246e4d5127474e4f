#pragma once

#include "Containers/Array.h"
#include "Containers/UnrealString.h"

#include <sys/types.h>

/** What a new child gets. */
struct FSpawnRequest
{
	/** A path, or a name that is looked up in the PATH of the children's environment. */
	FString Program;
	/** Without the program itself. */
	TArray<FString> Arguments;
	/** Empty for our own. */
	FString WorkingDirectory;
	/** Descriptors of ours; -1 gives an empty input, an output that goes nowhere, and errors that join the output. */
	int Input = -1;
	int Output = -1;
	int Errors = -1;

	/**
	 * Starts the child as the leader of a session of its own, without a terminal, with every signal as the system sets
	 * it and no descriptor but the three. @return the child's process id, or 0 with `errno` set.
	 */
	pid_t Spawn() const;
};
