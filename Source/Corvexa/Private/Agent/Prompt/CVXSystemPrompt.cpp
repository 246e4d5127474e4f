#include "Agent/Prompt/CVXSystemPrompt.h"

#include "Agent/CVXAgentLog.h"
#include "Agent/Context/CVXContextManager.h"
#include "Agent/Prompt/CVXPromptBlocks.h"

namespace
{
/** Characters that a token may take in a prompt that must be cut. */
constexpr int64 CharsPerToken = 4;

/** In the order in which they stand. */
constexpr FString (*Blocks[])(const FCVXPromptContext&) = {CVXPromptBlocks::Profile,
	CVXPromptBlocks::ProjectDescription, CVXPromptBlocks::ProjectFramework, CVXPromptBlocks::Memory,
	CVXPromptBlocks::Knowledge, CVXPromptBlocks::CodeContext, CVXPromptBlocks::CompletedDelegations,
	CVXPromptBlocks::TodoState, CVXPromptBlocks::CompletedWork, CVXPromptBlocks::NoVision};
} // namespace

FString CVXSystemPrompt::Build(const FCVXPromptContext& Context)
{
	FString Prompt;
	for (const auto Block : Blocks)
	{
		Prompt += Block(Context);
	}
	return Cap(Prompt, Context.ContextManager.GetMaxContextTokens());
}

FString CVXSystemPrompt::Cap(const FString& Prompt, int32 MaxContextTokens)
{
	const int64 TokenCap = FMath::Max<int64>(MinTokenCap, static_cast<int64>(MaxContextTokens) * 2 / 5);
	const int32 Estimate = FCVXContextManager::EstimateTokensForString(Prompt);
	if (Estimate <= TokenCap)
	{
		return Prompt;
	}
	UE_LOG(LogCVXAgentLoop, Warning, TEXT("System prompt overflow: %d tokens > cap %d (40%% of %d). Truncating."),
		Estimate, static_cast<int32>(TokenCap), MaxContextTokens);
	const int64 MaxChars = TokenCap * CharsPerToken;
	if (Prompt.Len() <= MaxChars)
	{
		return Prompt;
	}
	return Prompt.Left(static_cast<int32>(MaxChars)) + TEXT("\n\n[System prompt truncated due to size limits]");
}
