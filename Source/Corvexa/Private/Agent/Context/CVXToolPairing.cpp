#include "Agent/Context/CVXToolPairing.h"

#include "Agent/Context/CVXHiddenMessage.h"
#include "Algo/AnyOf.h"
#include "Core/CVXLog.h"

namespace
{
/** Characters kept of an orphaned result that isn't a sub-agent's. */
constexpr int32 MaxPreservedResult = 500;

using FIdSet = TSet<FString>;

struct FOrphans
{
	FIdSet Uses;
	FIdSet Results;

	bool IsEmpty() const { return Uses.IsEmpty() && Results.IsEmpty(); }
};

bool IsToolUse(const FCVXContentBlock& Block)
{
	return Block.Type == TEXT("tool_use");
}

bool IsToolResult(const FCVXContentBlock& Block)
{
	return Block.Type == TEXT("tool_result");
}

/** Whether every block of From that passes the test has one of the same id in To that passes the other. */
template <typename TestType, typename PartnerTestType>
bool AllHavePartners(const FCVXMessage& From, TestType Test, const FCVXMessage& To, PartnerTestType PartnerTest)
{
	return !Algo::AnyOf(From.Content,
		[&](const FCVXContentBlock& Block)
		{
			return Test(Block) &&
				!Algo::AnyOf(To.Content,
					[&](const FCVXContentBlock& Partner)
					{ return PartnerTest(Partner) && Partner.ToolUseId.Equals(Block.ToolUseId); });
		});
}

/** Whether the messages at Index and behind it are an assistant's calls and all their results. */
bool IsPair(const TArray<FCVXMessage>& Messages, int32 Index)
{
	if (Index + 1 >= Messages.Num() || Messages[Index].Role != ECVXMessageRole::Assistant ||
		Messages[Index + 1].Role != ECVXMessageRole::Tool)
	{
		return false;
	}
	const FCVXMessage& Calls = Messages[Index];
	const FCVXMessage& Answers = Messages[Index + 1];
	return Algo::AnyOf(Calls.Content, IsToolUse) && AllHavePartners(Calls, IsToolUse, Answers, IsToolResult) &&
		AllHavePartners(Answers, IsToolResult, Calls, IsToolUse) && !Algo::AnyOf(Calls.Content, IsToolResult) &&
		!Algo::AnyOf(Answers.Content, IsToolUse);
}

/** Adds the ids of a message to those of its side. */
void CollectIds(const FCVXMessage& Message, bool bAnyRole, FOrphans& Out)
{
	for (const FCVXContentBlock& Block : Message.Content)
	{
		if (Block.ToolUseId.IsEmpty())
		{
			continue;
		}
		if (IsToolUse(Block) && (bAnyRole || Message.Role == ECVXMessageRole::Assistant))
		{
			Out.Uses.Add(Block.ToolUseId);
		}
		else if (IsToolResult(Block) && (bAnyRole || Message.Role == ECVXMessageRole::Tool))
		{
			Out.Results.Add(Block.ToolUseId);
		}
	}
}

/**
 * Finds the ids that stand on one side alone. Nearly all messages are calls with their results behind them, which are
 * whole at a glance; only what else there is goes through sets.
 * @param bAnyRole false looks for uses in assistant messages only, for results in tool messages only.
 */
FOrphans FindOrphans(const TArray<FCVXMessage>& Messages, bool bAnyRole)
{
	FOrphans Alone;
	TArray<int32> Pairs;
	for (int32 Index = 0; Index < Messages.Num(); ++Index)
	{
		if (IsPair(Messages, Index))
		{
			Pairs.Add(Index++);
			continue;
		}
		CollectIds(Messages[Index], bAnyRole, Alone);
	}
	FOrphans Orphans{Alone.Uses.Difference(Alone.Results), Alone.Results.Difference(Alone.Uses)};
	for (int32 Pair = 0; Pair < Pairs.Num() && !Orphans.IsEmpty(); ++Pair)
	{
		for (const FCVXContentBlock& Block : Messages[Pairs[Pair]].Content)
		{
			if (IsToolUse(Block))
			{
				Orphans.Uses.Remove(Block.ToolUseId);
				Orphans.Results.Remove(Block.ToolUseId);
			}
		}
	}
	return Orphans;
}

/** @return whether one was removed. */
bool RemoveLeadingNonUser(TArray<FCVXMessage>& Messages)
{
	int32 Count = 0;
	while (Count < Messages.Num() && Messages[Count].Role != ECVXMessageRole::User)
	{
		++Count;
	}
	Messages.RemoveAt(0, Count);
	return Count > 0;
}

void RemoveMessagesWithOrphanedUses(TArray<FCVXMessage>& Messages, const FIdSet& Orphans)
{
	Messages.RemoveAll(
		[&](const FCVXMessage& Message)
		{
			return Message.Role == ECVXMessageRole::Assistant &&
				Algo::AnyOf(Message.Content,
					[&](const auto& Block) { return IsToolUse(Block) && Orphans.Contains(Block.ToolUseId); });
		});
}

/** What an orphaned result leaves behind: all of a sub-agent's report, the beginning of anything else. */
FString PreserveResult(const FCVXContentBlock& Block)
{
	if (Block.ToolName == TEXT("delegate_to_agent"))
	{
		return Block.ToolResultContent + TEXT("\n");
	}
	const bool bCut = Block.ToolResultContent.Len() > MaxPreservedResult;
	return FString::Printf(TEXT("[Result of %s]: %s\n"), *Block.ToolName,
		*(Block.ToolResultContent.Left(MaxPreservedResult) + (bCut ? TEXT("...") : TEXT(""))));
}

/** Keeps the message, replaces it by its preserved text, or empties it for removal. */
void ConvertOrphanedResults(FCVXMessage& Message, const FIdSet& Orphans)
{
	FString Preserved;
	bool bOrphaned = false;
	for (const FCVXContentBlock& Block : Message.Content)
	{
		if (IsToolResult(Block) && Orphans.Contains(Block.ToolUseId))
		{
			bOrphaned = true;
			Preserved += Block.ToolResultContent.IsEmpty() ? FString() : PreserveResult(Block);
		}
	}
	if (!bOrphaned)
	{
		return;
	}
	if (Preserved.IsEmpty())
	{
		Message.Content.Empty();
		return;
	}
	UE_LOG(LogCorvexa, Log, TEXT("CVXContextManager: converted orphaned tool result(s) to user text (%d chars)"),
		Preserved.Len());
	Message =
		CVXHiddenMessage::Make(FString::Printf(TEXT("[Previously completed work — DO NOT repeat]\n%s"), *Preserved),
			TEXT("preserved-tool-result"));
}

void ConvertMessagesWithOrphanedResults(TArray<FCVXMessage>& Messages, const FIdSet& Orphans)
{
	for (int32 Index = Messages.Num() - 1; Index >= 0; --Index)
	{
		if (Messages[Index].Role != ECVXMessageRole::Tool)
		{
			continue;
		}
		const int32 BlocksBefore = Messages[Index].Content.Num();
		ConvertOrphanedResults(Messages[Index], Orphans);
		if (BlocksBefore > 0 && Messages[Index].Content.IsEmpty())
		{
			Messages.RemoveAt(Index);
		}
	}
}

/** @return whether anything changed, so that another pass must look. */
bool RunCleanupPass(TArray<FCVXMessage>& Messages)
{
	const bool bRemovedLeading = RemoveLeadingNonUser(Messages);
	const FOrphans Orphans = FindOrphans(Messages, false);
	if (Orphans.IsEmpty())
	{
		return bRemovedLeading;
	}
	UE_LOG(LogCorvexa, Warning,
		TEXT("CVXContextManager: tool-call pairing cleanup: %d orphaned uses, %d orphaned results"), Orphans.Uses.Num(),
		Orphans.Results.Num());
	RemoveMessagesWithOrphanedUses(Messages, Orphans.Uses);
	ConvertMessagesWithOrphanedResults(Messages, Orphans.Results);
	return true;
}

/** What the passes can't reach, such as a block in a message of another role, is cut out block by block. */
void StripRemainingOrphans(TArray<FCVXMessage>& Messages)
{
	const FOrphans Orphans = FindOrphans(Messages, true);
	if (Orphans.IsEmpty())
	{
		return;
	}
	UE_LOG(LogCorvexa, Warning, TEXT("CVXContextManager: safety-net stripping %d orphaned uses, %d orphaned results"),
		Orphans.Uses.Num(), Orphans.Results.Num());
	for (FCVXMessage& Message : Messages)
	{
		Message.Content.RemoveAll(
			[&](const FCVXContentBlock& Block)
			{
				return (Message.Role == ECVXMessageRole::Assistant && IsToolUse(Block) &&
						   Orphans.Uses.Contains(Block.ToolUseId)) ||
					(Message.Role == ECVXMessageRole::Tool && IsToolResult(Block) &&
						Orphans.Results.Contains(Block.ToolUseId));
			});
	}
	Messages.RemoveAll([](const FCVXMessage& Message) { return Message.Content.IsEmpty(); });
	RemoveLeadingNonUser(Messages);
}
} // namespace

void CVXToolPairing::Restore(TArray<FCVXMessage>& Messages)
{
	// Each pass that changes something removes a message or makes one a user's, so this ends.
	while (RunCleanupPass(Messages))
	{
	}
	StripRemainingOrphans(Messages);
}
