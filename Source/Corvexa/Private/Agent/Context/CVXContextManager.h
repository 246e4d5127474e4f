#pragma once

#include "Agent/Context/CVXContextSummary.h"

/**
 * The history of one agent loop, and what of it each request shows the model. The history is never trimmed: a request
 * gets a copy that fits the window, in which a summary stands for what was dropped. Game thread.
 */
class FCVXContextManager
{
public:
	/** Tokens left free for what the estimates leave out, the tool definitions among them. */
	static constexpr int32 ReservedTokens = 1300;
	/** The least that the messages of a request may fill, in tokens. */
	static constexpr int32 MinMessageBudget = 2000;
	/** The size of the summary that stands for dropped messages, in tokens. */
	static constexpr int32 SummaryTokens = 800;

	explicit FCVXContextManager(int32 InMaxContextTokens)
		: MaxContextTokens(InMaxContextTokens)
	{
	}

	/** Adds a message at the end. */
	void AddMessage(FCVXMessage Message);
	void Clear();

	const TArray<FCVXMessage>& GetHistory() const { return History; }
	/** Whether a call of this id stands in the history. */
	bool HasToolUse(const FString& ToolUseId) const;
	int32 GetMaxContextTokens() const { return MaxContextTokens; }
	void SetMaxContextTokens(int32 Tokens) { MaxContextTokens = Tokens; }
	/** The sum of the estimates of all messages added. */
	int32 GetRunningMessageTokens() const;

	/**
	 * The newest messages that fit beside the prompt. The list is empty or begins with a user message, holds no system
	 * message, and every tool use in it has its result.
	 */
	TArray<FCVXMessage> GetMessagesForRequest(const FString& SystemPrompt) const;

	/** Tokens that a request with this prompt would fill, at most the window. */
	int32 EstimateTokenCount(const FString& SystemPrompt) const;
	/** The same as a share of the window, 0 to 1. */
	float GetContextUtilization(const FString& SystemPrompt) const;

	static int32 EstimateTokensForString(const FString& Text);
	static int32 EstimateTokensForMessage(const FCVXMessage& Message);

	/** A mechanical summary of messages that a request leaves out. @param MaxTokens its limit. */
	static FString SummarizeDroppedMessages(const TArray<FCVXMessage>& Dropped, int32 MaxTokens);

private:
	/** The newest messages within the budget: those above CutIndex, system messages aside. */
	struct FSelection
	{
		int32 CutIndex = INDEX_NONE;
		int32 UsedTokens = 0;
	};

	int32 GetMessageBudget(const FString& SystemPrompt) const;
	FSelection SelectNewest(int32 Budget) const;
	int32 GetMessageTokens(int32 Index) const;
	const FCVXContextSummary& SummarizeUpTo(int32 CutIndex) const;

	TArray<FCVXMessage> History;
	/** The estimate of each message of History, index for index; below 0 until somebody asks for it. What was restored
	 * and never asked about again costs nothing. */
	mutable TArray<int32> TokenCache;
	int32 MaxContextTokens;
	/** The summary of the messages below SummarizedEnd. From request to request the cut moves on by a few messages, of
	 * which alone it must take note. */
	mutable FCVXContextSummary DroppedSummary;
	mutable int32 SummarizedEnd = 0;
};
