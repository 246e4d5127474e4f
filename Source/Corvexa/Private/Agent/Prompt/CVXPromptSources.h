#pragma once

#include "Core/CVXTypes.h"

/** What knowledge modules are chosen by. */
struct FCVXKnowledgeQuery
{
	/** The newest first, at most three. */
	TArray<FCVXMessage> RecentUserMessages;
	/** The beginning of what the model last said; empty on a first turn. */
	FString AssistantContext;
	TSet<FString> ActiveTools;
	FString AgentProfileName;
	int32 TokenBudget = 0;
};

/**
 * Where the system prompt gets what the agent doesn't know itself. Each is set by the component that owns the knowledge
 * and answers from memory; an unset one gives nothing. Game thread.
 */
struct FCVXPromptSources
{
	TFunction<FString()> ProjectDescription;
	TFunction<FString()> ProjectFramework;
	TFunction<FString()> Memory;
	/** Adds the ids of the modules it gives to the set, and gives none whose id is in it. */
	TFunction<FString(const FCVXKnowledgeQuery&, TSet<FString>& InjectedIds)> Knowledge;
	/** Source snippets for a query. */
	TFunction<FString(const FString& Query, int32 MaxResults, int32 TokenBudget)> CodeContext;

	/** Made at the first call and kept to the end of the process. */
	static FCVXPromptSources& Get();
};
