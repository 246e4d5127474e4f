#pragma once

#include "CoreMinimal.h"

/**
 * The role prompts of the built-in agents. What they say of tools, Python calls and result texts must stay true of
 * those, and the markers of `CVXProfileRules` must agree with them. Any thread.
 */
namespace CVXBuiltInPrompts
{
/** Plans and delegates. */
FString Orchestrator();
/** Writes C++ and Blueprints. */
FString Coder();
/** Designs, without changing files. */
FString Architect();
/** Checks, without changing files. */
FString Reviewer();
/** Places and lights. */
FString LevelDesigner();
} // namespace CVXBuiltInPrompts
