#pragma once

#include "Core/CVXJsonFrame.h"

/** One part of a chunk: a text, a function call, or both in this order. */
struct FCVXGeminiPart
{
	FString Text;
	bool bIsCall = false;
	FString CallName;
	/** The call's arguments as compact JSON; "{}" when it has none. */
	FString CallArguments;
};

/**
 * One chunk of a streamed answer, as far as it is of use: its counters and its first candidate. One object reads the
 * chunks of a stream.
 */
struct FCVXGeminiDelta
{
	TOptional<int32> PromptTokens;
	TOptional<int32> CandidatesTokens;
	TArray<FCVXGeminiPart> Parts;
	FString FinishReason;

	/** Replaces what the last chunk told. @return false when the text isn't a JSON object. */
	bool Read(const FString& Data);

private:
	bool ReadHole(int32 Role, FCVXJsonCursor& Value);
	bool ReadWhole(const FString& Data);
	bool ReadMember(FCVXJsonCursor& Json, FStringView Name);
	bool ReadUsage(FCVXJsonCursor& Json);
	bool ReadCandidates(FCVXJsonCursor& Json);
	bool ReadCandidate(FCVXJsonCursor& Json);
	bool ReadContent(FCVXJsonCursor& Json);
	bool ReadPart(FCVXJsonCursor& Json);

	/** The last chunk, and what may differ in the next. */
	FCVXJsonFrame Frame;
	TArray<FCVXJsonHole> Holes;
};
