#pragma once

#include "CoreMinimal.h"

/** What the checkpoint files of a whole project may take. Any thread. */
namespace CVXCheckpointBudget
{
/** Deletes the oldest files, whatever task they are of, until the rest fits. @param TasksDir has the tasks'
 * directories. */
void PruneTo(const FString& TasksDir, int32 BudgetMB);
} // namespace CVXCheckpointBudget
