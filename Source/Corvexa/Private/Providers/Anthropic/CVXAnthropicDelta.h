#pragma once

#include "Core/CVXJsonFrame.h"

enum class ECVXAnthropicDeltaType : uint8
{
	Other,
	Text,
	InputJson,
	Thinking
};

/** The event `content_block_delta`, which a stream carries once a word. One object reads the events of a stream. */
struct FCVXAnthropicDelta
{
	int32 Index = INDEX_NONE;
	ECVXAnthropicDeltaType Type = ECVXAnthropicDeltaType::Other;
	TOptional<FString> Text;
	TOptional<FString> PartialJson;
	TOptional<FString> Thinking;

	/** Replaces what the last event told. @return false when the text isn't a JSON object. */
	bool Read(const FString& Data);

private:
	bool ReadWhole(const FString& Data);
	bool ReadMember(FCVXJsonCursor& Json, FStringView Name);
	bool ReadDelta(FCVXJsonCursor& Json);
	bool ReadDeltaMember(FCVXJsonCursor& Json, FStringView Name);
	bool ReadString(FCVXJsonCursor& Json, int32 Role);
	bool ReadType(FCVXJsonCursor& Json);
	TOptional<FString>& StringOf(int32 Role);

	/** The last event, and what may differ in the next. */
	FCVXJsonFrame Frame;
	TArray<FCVXJsonHole> Holes;
};
