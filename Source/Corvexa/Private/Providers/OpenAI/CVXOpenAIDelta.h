#pragma once

#include "CoreMinimal.h"

class FCVXJsonCursor;

/** A piece of one tool call, which pieces of the same index continue. */
struct FCVXOpenAICallDelta
{
	int32 Index = 0;
	FString Id;
	FString Name;
	FString Arguments;
};

/** One string of a chunk, and where it stands in the data, with its quotes. */
struct FCVXOpenAIString
{
	FString Text;
	int32 Start = 0;
	int32 End = 0;
};

/** One chunk of a streamed chat completion, as far as it is of use: its counters and its first choice. */
struct FCVXOpenAIDelta
{
	TOptional<int32> PromptTokens;
	TOptional<int32> CompletionTokens;
	/** Whether the choice has a delta; without one, nothing else of it counts. */
	bool bHasDelta = false;
	FCVXOpenAIString Reasoning;
	FCVXOpenAIString Content;
	TArray<FCVXOpenAICallDelta> Calls;
	FString FinishReason;

	/** @return false when the text isn't a JSON object. */
	bool Read(const FString& Data);

	/** Whether one text or one reasoning is all that the chunk tells. */
	bool IsText() const { return IsPlain() && Reasoning.Text.IsEmpty() && !Content.Text.IsEmpty(); }
	bool IsReasoning() const { return IsPlain() && Content.Text.IsEmpty() && !Reasoning.Text.IsEmpty(); }

private:
	bool IsPlain() const;
	bool ReadMember(FCVXJsonCursor& Json, FStringView Name);
	bool ReadUsage(FCVXJsonCursor& Json);
	bool ReadChoices(FCVXJsonCursor& Json);
	bool ReadChoice(FCVXJsonCursor& Json);
	bool ReadDelta(FCVXJsonCursor& Json);
	bool ReadDeltaMember(FCVXJsonCursor& Json, FStringView Name);
	bool ReadString(FCVXJsonCursor& Json, FCVXOpenAIString& Out) const;
	bool ReadCall(FCVXJsonCursor& Json);

	/** The length of the data, from whose end the cursor counts. */
	int32 Size = 0;
};
