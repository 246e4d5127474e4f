#pragma once

#include "Core/CVXProfiles.h"

/** The five agents that ship: Orchestrator, Coder, Architect, Reviewer and LevelDesigner. */
namespace CVXBuiltInProfiles
{
/**
 * Adds the built-in profiles that are missing to the end, in the order above, and brings stored copies up to date.
 * Names compare without regard to case. Saves nothing. Game thread.
 */
void Ensure(TArray<FCVXAgentProfile>& Profiles);
} // namespace CVXBuiltInProfiles
