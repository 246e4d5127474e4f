#pragma once

#include "CoreMinimal.h"

class FCVXTask;

/** The text form of a stored conversation. Game thread. */
namespace CVXCheckpointJson
{
/** A task with its whole history, its plan and its identity. */
FString Write(const FCVXTask& Task);

/** How reading a text ended. */
enum class EReadResult : uint8
{
	Done,
	/** It is no JSON object. The task is as it was. */
	NoObject,
	/** It has no array "messages". The task's history is empty, which is logged. */
	NoMessages,
};

/**
 * Fills the task, which has a loop, from such a text. What can't be used, such as a message of no known role, is left
 * out and logged; a member of another kind than the one written counts as missing.
 * @param Path names the file in log lines. @param OutMessageCount the messages that came back.
 */
EReadResult Read(const FString& Json, const FString& Path, FCVXTask& Task, int32& OutMessageCount);
} // namespace CVXCheckpointJson
