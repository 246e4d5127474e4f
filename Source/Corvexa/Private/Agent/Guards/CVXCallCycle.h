#pragma once

#include "CoreMinimal.h"

struct FCVXGuardContext;

/** Finds a model that makes the same calls turn after turn. */
namespace CVXCallCycle
{
/** Identical turns in a row that end the task. */
constexpr int32 MaxRepeats = 3;

/** Notes the turn's calls. @return the identical turns in a row, this one included; order and case of the calls don't
 * count. */
int32 CountRepeats(FCVXGuardContext& Context);
} // namespace CVXCallCycle
