#pragma once

/** What the program's exit status tells scripts. */
enum EExitStatus : int
{
	ExitComplete = 0,
	ExitError = 1,
	ExitUsage = 2,
	/** A decision or an answer is needed, and nobody was there to give it. */
	ExitNeedsPerson = 3,
	ExitInterrupted = 130,
};
