#pragma once

#include "Agent/Tasks/CVXTask.h"

/** Which stored conversation the command line means. */
struct FTaskChoice
{
	/** Null when none is meant. */
	TSharedPtr<FCVXTask> Task;
	/** One line for the user when it is null. */
	FString Error;

	/**
	 * @param Id the id or a beginning of it that no other has, or "last": the conversation that was active last, or,
	 * where that isn't stored, the one that was saved last.
	 */
	static FTaskChoice Find(const FString& Id);
	/** The conversation that leads a sub-agent's; any other itself. */
	static TSharedPtr<FCVXTask> FindLeader(TSharedPtr<FCVXTask> Task);
};
