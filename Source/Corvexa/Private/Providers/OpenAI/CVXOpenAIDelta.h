#pragma once

#include "Core/CVXJsonFrame.h"

/** A piece of one tool call, which pieces of the same index continue. */
struct FCVXOpenAICallDelta
{
	int32 Index = 0;
	FString Id;
	FString Name;
	FString Arguments;
};

/**
 * One chunk of a streamed chat completion, as far as it is of use: its counters and its first choice. One object reads
 * the chunks of a stream.
 */
struct FCVXOpenAIDelta
{
	TOptional<int32> PromptTokens;
	TOptional<int32> CompletionTokens;
	/** Whether the choice has a delta; without one, nothing else of it counts. */
	bool bHasDelta = false;
	FString Reasoning;
	FString Content;
	TArray<FCVXOpenAICallDelta> Calls;
	FString FinishReason;

	/** Replaces what the last chunk told. @return false when the text isn't a JSON object. */
	bool Read(const FString& Data);

private:
	bool ReadHole(int32 Role, FCVXJsonCursor& Value);
	bool ReadWhole(const FString& Data);
	void Reset();
	bool ReadMember(FCVXJsonCursor& Json, FStringView Name);
	bool ReadUsage(FCVXJsonCursor& Json);
	bool ReadChoices(FCVXJsonCursor& Json);
	bool ReadChoice(FCVXJsonCursor& Json);
	bool ReadDelta(FCVXJsonCursor& Json);
	bool ReadDeltaMember(FCVXJsonCursor& Json, FStringView Name);
	bool ReadCall(FCVXJsonCursor& Json);

	/** The last chunk, and what may differ in the next. */
	FCVXJsonFrame Frame;
	TArray<FCVXJsonHole> Holes;
};
