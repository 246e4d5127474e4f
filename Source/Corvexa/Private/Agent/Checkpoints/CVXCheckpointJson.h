#pragma once

#include "CoreMinimal.h"

class FCVXTask;

/** The text form of a stored conversation. Game thread. */
namespace CVXCheckpointJson
{
/** A task with its whole history, its plan and its identity. */
FString Write(const FCVXTask& Task);

/**
 * Fills the task from such a text. What can't be used, such as a message of no known role, is left out and logged.
 * @param Path names the file in log lines. @return false for a text that holds no conversation; the task's history is
 * empty then.
 */
bool Read(const FString& Json, const FString& Path, FCVXTask& Task, int32& OutMessageCount);

/** Whether the text is a JSON object at all. */
bool IsObject(const FString& Json);
} // namespace CVXCheckpointJson
