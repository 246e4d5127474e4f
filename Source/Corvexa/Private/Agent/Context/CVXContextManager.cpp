#include "Agent/Context/CVXContextManager.h"

#include "Agent/Context/CVXHiddenMessage.h"
#include "Agent/Context/CVXToolPairing.h"
#include "Algo/AnyOf.h"
#include "Core/CVXLog.h"
#include "Diagnostics/CVXPerformanceMonitor.h"

namespace
{
/** The id of the message that stands for what a request left out. */
constexpr const TCHAR* SummaryMessageId = TEXT("context-summary");
constexpr int32 NotEstimated = -1;
} // namespace

void FCVXContextManager::AddMessage(FCVXMessage Message)
{
	TokenCache.Add(NotEstimated);
	History.Add(MoveTemp(Message));
}

void FCVXContextManager::Clear()
{
	History.Empty();
	TokenCache.Empty();
	DroppedSummary = FCVXContextSummary();
	SummarizedEnd = 0;
}

bool FCVXContextManager::HasToolUse(const FString& ToolUseId) const
{
	const auto IsIt = [&](const FCVXContentBlock& Block)
	{ return Block.ToolUseId.Equals(ToolUseId) && Block.Type == TEXT("tool_use"); };
	return Algo::AnyOf(History, [&](const FCVXMessage& Message) { return Algo::AnyOf(Message.Content, IsIt); });
}

int32 FCVXContextManager::GetMessageBudget(const FString& SystemPrompt) const
{
	return FMath::Max(MinMessageBudget, MaxContextTokens - EstimateTokensForString(SystemPrompt) - ReservedTokens);
}

int32 FCVXContextManager::GetMessageTokens(int32 Index) const
{
	int32& Tokens = TokenCache[Index];
	if (Tokens == NotEstimated)
	{
		Tokens = EstimateTokensForMessage(History[Index]);
	}
	return Tokens;
}

int32 FCVXContextManager::GetRunningMessageTokens() const
{
	int32 Sum = 0;
	for (int32 Index = 0; Index < History.Num(); ++Index)
	{
		Sum += GetMessageTokens(Index);
	}
	return Sum;
}

FCVXContextManager::FSelection FCVXContextManager::SelectNewest(int32 Budget) const
{
	FSelection Selection;
	bool bAnyKept = false;
	for (int32 Index = History.Num() - 1; Index >= 0; --Index)
	{
		if (History[Index].Role == ECVXMessageRole::System)
		{
			continue;
		}
		const int32 Tokens = GetMessageTokens(Index);
		if (bAnyKept && Selection.UsedTokens + Tokens > Budget)
		{
			Selection.CutIndex = Index;
			break;
		}
		Selection.UsedTokens += Tokens;
		bAnyKept = true;
	}
	return Selection;
}

TArray<FCVXMessage> FCVXContextManager::GetMessagesForRequest(const FString& SystemPrompt) const
{
	const FCVXPerformanceMonitor& Monitor = FCVXPerformanceMonitor::Get();
	const auto Timer = Monitor.ScopeTimer(
		FString::Printf(TEXT("GetMessagesForRequest(%d msgs)"), History.Num()), Monitor.SlowScopeThresholdMs);

	const int32 Budget = GetMessageBudget(SystemPrompt);
	const FSelection Selection = SelectNewest(Budget);
	TArray<FCVXMessage> Kept;
	Kept.Reserve(History.Num() - Selection.CutIndex);
	if (Selection.CutIndex != INDEX_NONE)
	{
		UE_LOG(LogCorvexa, Log, TEXT("CVXContextManager: truncated %d/%d messages (budget=%d, used=%d tokens)"),
			Selection.CutIndex + 1, History.Num(), Budget, Selection.UsedTokens);
		const FCVXContextSummary& Summary = SummarizeUpTo(Selection.CutIndex);
		if (Summary.GetMessageCount() > 0)
		{
			Kept.Add(CVXHiddenMessage::Make(Summary.Write(SummaryTokens), SummaryMessageId));
		}
	}
	for (int32 Index = Selection.CutIndex + 1; Index < History.Num(); ++Index)
	{
		const FCVXMessage& Message = History[Index];
		// An older summary would stand beside the one of now.
		const bool bReplaced = Selection.CutIndex != INDEX_NONE && Message.MessageId == SummaryMessageId;
		if (Message.Role != ECVXMessageRole::System && !bReplaced)
		{
			Kept.Add(Message);
		}
	}
	CVXToolPairing::Restore(Kept);
	return Kept;
}

const FCVXContextSummary& FCVXContextManager::SummarizeUpTo(int32 CutIndex) const
{
	if (CutIndex + 1 < SummarizedEnd)
	{
		// The window has grown since.
		DroppedSummary = FCVXContextSummary();
		SummarizedEnd = 0;
	}
	for (; SummarizedEnd <= CutIndex; ++SummarizedEnd)
	{
		DroppedSummary.Add(History[SummarizedEnd]);
	}
	return DroppedSummary;
}

int32 FCVXContextManager::EstimateTokenCount(const FString& SystemPrompt) const
{
	if (MaxContextTokens <= 0)
	{
		return 0;
	}
	const FCVXPerformanceMonitor& Monitor = FCVXPerformanceMonitor::Get();
	const auto Timer = Monitor.ScopeTimer(
		FString::Printf(TEXT("EstimateTokenCount(%d msgs)"), History.Num()), Monitor.SlowScopeThresholdMs);
	const int32 Used = SelectNewest(GetMessageBudget(SystemPrompt)).UsedTokens;
	return FMath::Min(MaxContextTokens, Used + EstimateTokensForString(SystemPrompt));
}

float FCVXContextManager::GetContextUtilization(const FString& SystemPrompt) const
{
	if (MaxContextTokens < 1)
	{
		return 0.0f;
	}
	const float Share = static_cast<float>(EstimateTokenCount(SystemPrompt)) / static_cast<float>(MaxContextTokens);
	return FMath::Clamp(Share, 0.0f, 1.0f);
}
