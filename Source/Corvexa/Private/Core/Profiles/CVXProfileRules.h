#pragma once

#include "Containers/ArrayView.h"
#include "CoreMinimal.h"

struct FCVXAgentProfile;

/** One sign that a stored built-in profile is of an earlier release. */
struct FCVXProfileRule
{
	/** Whether the sign is there. */
	bool (*IsOutdated)(const FCVXAgentProfile& Profile);
	/** What is then set to the built-in value. */
	bool bPrompt = true;
	bool bTools = false;
};

/**
 * The rules of each built-in profile, in the order in which they are applied. Rules look for texts and tools that came
 * or went with a release, so that an edited prompt stays as long as it keeps what the system counts on.
 */
namespace CVXProfileRules
{
TArrayView<const FCVXProfileRule> Orchestrator();
TArrayView<const FCVXProfileRule> Coder();
TArrayView<const FCVXProfileRule> Architect();
TArrayView<const FCVXProfileRule> Reviewer();
TArrayView<const FCVXProfileRule> LevelDesigner();
} // namespace CVXProfileRules
