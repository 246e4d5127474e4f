#pragma once

#include "CoreMinimal.h"

struct FCVXAgentProfile;
class FCVXContextManager;
struct FCVXProviderProfile;
class FCVXTodoList;
class UCVXSettings;

/** What the blocks of a system prompt are made from. Made for one request; game thread. */
struct FCVXPromptContext
{
	const FCVXAgentProfile& Profile;
	const FCVXContextManager& ContextManager;
	const FString& LoopId;
	/** Lines of what was done, newest last. */
	const TArray<FString>& CompletedWork;
	/** The knowledge modules that this run has shown already. */
	TSet<FString>& InjectedKnowledgeIds;
	/** Null without settings. */
	const UCVXSettings* Settings = nullptr;
	/** Null when none was found. */
	const FCVXProviderProfile* ProviderProfile = nullptr;
	/** Null for a loop without a task. */
	const FCVXTodoList* TodoList = nullptr;
	int32 TurnCount = 0;
};
