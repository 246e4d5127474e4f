#pragma once

#include "CoreMinimal.h"

class FCVXJsonCursor;

enum class ECVXAnthropicDeltaType : uint8
{
	Other,
	Text,
	InputJson,
	Thinking
};

/** The event `content_block_delta`, which a stream carries once a word. */
struct FCVXAnthropicDelta
{
	int32 Index = INDEX_NONE;
	ECVXAnthropicDeltaType Type = ECVXAnthropicDeltaType::Other;
	TOptional<FString> Text;
	TOptional<FString> PartialJson;
	TOptional<FString> Thinking;

	/** @return false when the text isn't a JSON object. */
	bool Read(const FString& Data);

private:
	bool ReadMember(FCVXJsonCursor& Json, FStringView Name);
	bool ReadDelta(FCVXJsonCursor& Json);
	bool ReadDeltaMember(FCVXJsonCursor& Json, FStringView Name);
	bool ReadType(FCVXJsonCursor& Json);
};
