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
	/** Where the text stands in the data, with its quotes. */
	int32 TextStart = 0;
	int32 TextEnd = 0;
	TOptional<FString> PartialJson;
	TOptional<FString> Thinking;

	/** @return false when the text isn't a JSON object. */
	bool Read(const FString& Data);

private:
	bool ReadMember(FCVXJsonCursor& Json, FStringView Name);
	bool ReadDelta(FCVXJsonCursor& Json);
	bool ReadDeltaMember(FCVXJsonCursor& Json, FStringView Name);
	bool ReadText(FCVXJsonCursor& Json);
	bool ReadType(FCVXJsonCursor& Json);

	/** The length of the data, from whose end the cursor counts. */
	int32 Size = 0;
};
