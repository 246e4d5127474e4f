#pragma once

#include "CoreMinimal.h"

/** Source code that the model didn't ask for: what the lexical index finds for the matter at hand. Game thread. */
class FCVXAutoRAG
{
public:
	/**
	 * A block of snippets for the system prompt. Loads the stored index if none is in memory.
	 * @param Text what the conversation is about. @param MaxResults the most snippets. @param TokenBudget the most
	 * tokens, estimated; the last snippet is cut to it where enough of it stays.
	 * @return empty when nothing was found.
	 */
	static FString GetCodeContext(const FString& Text, int32 MaxResults, int32 TokenBudget);
};
