#include "Agent/Context/CVXCondenserService.h"

#include "Agent/Context/CVXHiddenMessage.h"
#include "Agent/Loop/CVXAgentLoop.h"

namespace
{
constexpr int32 MaxDelegationChars = 500;
constexpr const TCHAR* DestroyedText = TEXT("Agent loop destroyed during condensing.");
constexpr float SummaryTemperature = 0.3f;
constexpr int32 SummaryMaxTokens = 2048;

constexpr const TCHAR* SummarizerPrompt = TEXT("You are a conversation summarizer. Produce a concise but complete "
											   "summary of the conversation below. The summary will "
											   "be used as context for continuing the conversation. Include: goals "
											   "discussed, decisions made, files modified, errors "
											   "encountered, and any other important details. Be factual and brief. "
											   "IMPORTANT: If the conversation contains 'Completed "
											   "Sub-Agent Delegations', you MUST preserve the delegation results in "
											   "your summary — these represent completed work by "
											   "sub-agents that should not be re-delegated.");

const TCHAR* GetLabel(ECVXMessageRole Role)
{
	static constexpr const TCHAR* Labels[] = {TEXT("System"), TEXT("User"), TEXT("Assistant"), TEXT("Tool")};
	return Labels[static_cast<int32>(Role)];
}

bool IsDelegationResult(const FCVXContentBlock& Block)
{
	return Block.Type == TEXT("tool_result") && !Block.ToolResultContent.IsEmpty() &&
		(Block.ToolName == TEXT("delegate_to_agent") || Block.ToolResultContent.Contains(TEXT("DELEGATION COMPLETE")));
}

FString TellDelegations(const FCVXMessage& Message)
{
	FString Text;
	for (const FCVXContentBlock& Block : Message.Content)
	{
		if (IsDelegationResult(Block))
		{
			const bool bCut = Block.ToolResultContent.Len() > MaxDelegationChars;
			Text += FString::Printf(TEXT("[Delegation Result — %s]: %s%s\n\n"), *Block.ToolName,
				*Block.ToolResultContent.Left(MaxDelegationChars), bCut ? TEXT("... (truncated)") : TEXT(""));
		}
	}
	return Text;
}

/** The older messages as the summarizer reads them. */
FString BuildBody(const TArray<FCVXMessage>& Older)
{
	FString Body;
	FString Delegations;
	for (const FCVXMessage& Message : Older)
	{
		const FCVXContentBlock* Spoken = Message.Content.FindByPredicate(
			[](const FCVXContentBlock& Block) { return Block.Type == TEXT("text") && !Block.Text.IsEmpty(); });
		if (Spoken)
		{
			Body += FString::Printf(TEXT("[%s]: %s\n\n"), GetLabel(Message.Role), *Spoken->Text);
		}
		Delegations += TellDelegations(Message);
	}
	if (!Delegations.IsEmpty())
	{
		Body += TEXT("=== Completed Sub-Agent Delegations (IMPORTANT — preserve these) ===\n") + Delegations;
	}
	return Body;
}

void ReplaceHistory(FCVXContextManager& Context, const FString& Summary, const TArray<FCVXMessage>& Recent)
{
	Context.Clear();
	Context.AddMessage(CVXHiddenMessage::Make(
		TEXT("[Condensed context — this is an AI-generated summary of earlier conversation]\n\n") + Summary,
		TEXT("condensed-context")));
	for (const FCVXMessage& Message : Recent)
	{
		Context.AddMessage(Message);
	}
}

/** One condensation under way. */
struct FCondensation
{
	FCondensation() = default;
	FCondensation(const FCondensation&) = delete;
	FCondensation& operator=(const FCondensation&) = delete;

	TWeakPtr<FCVXAgentLoop> Loop;
	TArray<FCVXMessage> Recent;
	FString Summary;
	FCVXCondenserService::FOnDone OnDone;
	bool bDone = false;

	/** A provider that goes with its loop drops the callbacks, and with them the last hold on this. */
	~FCondensation() { End(false, DestroyedText); }

	void Finish()
	{
		const TSharedPtr<FCVXAgentLoop> Living = Loop.Pin();
		if (!Living)
		{
			End(false, DestroyedText);
			return;
		}
		if (Summary.IsEmpty())
		{
			End(false, TEXT("Condenser produced an empty summary."));
			return;
		}
		ReplaceHistory(Living->GetContextManager(), Summary, Recent);
		End(true, Summary);
	}

	void End(bool bSuccess, const FString& Text)
	{
		if (!bDone)
		{
			bDone = true;
			OnDone.ExecuteIfBound(bSuccess, Text);
		}
	}
};

FCVXProviderCallbacks MakeCallbacks(const TSharedRef<FCondensation>& Work)
{
	FCVXProviderCallbacks Callbacks;
	Callbacks.OnTextDelta = [Work](const FString& Text) { Work->Summary += Text; };
	Callbacks.OnStreamFinished = [Work](const FCVXTokenUsage&)
	{
		if (!Work->bDone)
		{
			Work->Finish();
		}
	};
	Callbacks.OnError = [Work](const FString& Text)
	{ Work->End(false, FString::Printf(TEXT("Condenser error: %s"), *Text)); };
	return Callbacks;
}
} // namespace

void FCVXCondenserService::Condense(
	FCVXAgentLoop& Loop, ICVXProvider& Provider, const FCVXAgentProfile&, int32 KeepRecent, FOnDone OnDone)
{
	const TArray<FCVXMessage>& History = Loop.GetContextManager().GetHistory();
	const int32 OlderCount = History.Num() - FMath::Max(0, KeepRecent);
	if (OlderCount <= 0)
	{
		OnDone.ExecuteIfBound(false, TEXT("Conversation is already short — nothing to condense."));
		return;
	}
	const FString Body = BuildBody(TArray<FCVXMessage>(History.GetData(), OlderCount));
	if (Body.IsEmpty())
	{
		OnDone.ExecuteIfBound(false, TEXT("No summarizable content found."));
		return;
	}
	const TSharedRef<FCondensation> Work = MakeShared<FCondensation>();
	Work->Loop = Loop.AsShared();
	Work->Recent = TArray<FCVXMessage>(History.GetData() + OlderCount, History.Num() - OlderCount);
	Work->OnDone = MoveTemp(OnDone);

	FCVXProviderRequest Request;
	Request.SystemPrompt = SummarizerPrompt;
	Request.Messages.Add(
		FCVXMessage::MakeUserText(TEXT("Please summarize the following conversation history:\n\n") + Body));
	Request.Temperature = SummaryTemperature;
	Request.MaxTokens = SummaryMaxTokens;
	if (Provider.StreamRequest(Request, MakeCallbacks(Work)).IsEmpty())
	{
		Work->End(false, TEXT("Condenser error: the request could not be started."));
	}
}
