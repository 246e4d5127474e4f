#pragma once

#include "CoreMinimal.h"
#include "Serialization/JsonReader.h"

/**
 * The event `content_block_delta`, which a stream carries once a word: read token by token, since a tree of values for
 * each would cost more than all the rest.
 */
struct FCVXAnthropicDelta
{
	int32 Index = INDEX_NONE;
	FString Type;
	TOptional<FString> Text;
	TOptional<FString> PartialJson;
	TOptional<FString> Thinking;

	/** @return false when the text isn't a JSON object. */
	bool Read(const FString& Data);

private:
	bool ReadMember(FJsonReader& Reader, EJsonNotation Notation);
	bool ReadDelta(FJsonReader& Reader);
};
