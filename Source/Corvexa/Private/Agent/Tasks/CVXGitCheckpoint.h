#pragma once

#include "CoreMinimal.h"

/** A commit of the whole project before a sub-agent starts, so that its work can be taken back. */
namespace CVXGitCheckpoint
{
/** Does nothing in a project without ".git". Blocks while git runs. @return whether there is such a commit. */
bool Commit(const FString& AgentProfile, const FString& Task);
} // namespace CVXGitCheckpoint
