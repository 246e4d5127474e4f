#include "Agent/Context/CVXContextManager.h"

#include "Agent/Context/CVXHiddenMessage.h"
#include "Agent/Context/CVXToolPairing.h"
#include "Core/CVXLog.h"
#include "Diagnostics/CVXPerformanceMonitor.h"

namespace
{
/** The id of the message that stands for what a request left out. */
constexpr const TCHAR* SummaryMessageId = TEXT("context-summary");
} // namespace

void FCVXContextManager::AddMessage(const FCVXMessage& Message)
{
	const int32 Tokens = EstimateTokensForMessage(Message);
	RunningMessageTokens += Tokens;
	TokenCache.Add(Tokens);
	History.Add(Message);
}

void FCVXContextManager::Clear()
{
	History.Empty();
	TokenCache.Empty();
	RunningMessageTokens = 0;
}

int32 FCVXContextManager::GetMessageBudget(const FString& SystemPrompt) const
{
	return FMath::Max(MinMessageBudget, MaxContextTokens - EstimateTokensForString(SystemPrompt) - ReservedTokens);
}

int32 FCVXContextManager::GetMessageTokens(int32 Index) const
{
	return TokenCache.IsValidIndex(Index) ? TokenCache[Index] : EstimateTokensForMessage(History[Index]);
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
	for (int32 Index = Selection.CutIndex + 1; Index < History.Num(); ++Index)
	{
		if (History[Index].Role != ECVXMessageRole::System)
		{
			Kept.Add(History[Index]);
		}
	}
	if (Selection.CutIndex != INDEX_NONE)
	{
		UE_LOG(LogCorvexa, Log, TEXT("CVXContextManager: truncated %d/%d messages (budget=%d, used=%d tokens)"),
			Selection.CutIndex + 1, History.Num(), Budget, Selection.UsedTokens);
		PutSummaryOfDropped(Selection.CutIndex, Kept);
	}
	CVXToolPairing::Restore(Kept);
	return Kept;
}

void FCVXContextManager::PutSummaryOfDropped(int32 CutIndex, TArray<FCVXMessage>& Kept) const
{
	Kept.RemoveAll([](const FCVXMessage& Message) { return Message.MessageId == SummaryMessageId; });
	TArray<FCVXMessage> Dropped;
	for (int32 Index = 0; Index <= CutIndex; ++Index)
	{
		if (History[Index].Role != ECVXMessageRole::System)
		{
			Dropped.Add(History[Index]);
		}
	}
	const FString Summary = Dropped.IsEmpty() ? FString() : SummarizeDroppedMessages(Dropped, SummaryTokens);
	if (!Summary.IsEmpty())
	{
		Kept.Insert(CVXHiddenMessage::Make(Summary, SummaryMessageId), 0);
	}
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
