#pragma once

#include "Core/CVXTypes.h"

/** Chooses the knowledge that fits a conversation, and words it for the system prompt. Game thread. */
class FCVXPromptInjector
{
public:
	/**
	 * @param RecentUserMessages newest first. @param AssistantContext what the model last said; may be empty.
	 * @param ActiveTools the tools that the model may call. @param TokenBudget the most that the modules may take.
	 * @param InjectedIds modules that this conversation has been shown; they are left out, and what is shown now joins
	 * them. @return empty when there is nothing to show.
	 */
	static FString BuildKnowledgeInjection(const TArray<FCVXMessage>& RecentUserMessages,
		const FString& AssistantContext, const TSet<FString>& ActiveTools, const FString& ProfileName,
		int32 TokenBudget, TSet<FString>& InjectedIds);
};
