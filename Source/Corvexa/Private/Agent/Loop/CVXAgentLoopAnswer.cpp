#include "Agent/Loop/CVXAgentLoop.h"

#include "Agent/CVXAgentLog.h"
#include "Agent/Guards/CVXCallCycle.h"
#include "Agent/Guards/CVXNudges.h"
#include "Agent/Guards/CVXToolDiversity.h"
#include "Agent/Loop/CVXProviderRecovery.h"
#include "CoreGlobals.h"
#include "Diagnostics/CVXPerformanceMonitor.h"
#include "HAL/PlatformTime.h"
#include "Misc/Guid.h"
#include "ProfilingDebugging/CpuProfilerTrace.h"

// The second part of a turn: the streamed answer, its errors, and what becomes of it once it is whole.

namespace
{
/** What is put behind an id that is taken; ids stay short, because some vendors limit them. */
constexpr int32 UniqueIdChars = 8;

FCVXContentBlock MakeToolUseBlock(const FCVXToolCall& Call)
{
	FCVXContentBlock Block;
	Block.Type = TEXT("tool_use");
	Block.ToolUseId = Call.Id;
	Block.ToolName = Call.Name;
	Block.InputJson = Call.Arguments;
	return Block;
}
} // namespace

void FCVXAgentLoop::OnProviderTextDelta(const FString& Text)
{
	check(IsInGameThread());
	if (IsStopped())
	{
		return;
	}
	if (Turn.Text.IsEmpty())
	{
		FCVXPerformanceMonitor::Get().OnFirstToken();
	}
	Turn.Text += Text;
	OnTextDelta.Broadcast(Text);
}

void FCVXAgentLoop::OnProviderReasoningDelta(const FString& Text)
{
	check(IsInGameThread());
	if (IsStopped())
	{
		return;
	}
	Turn.Reasoning += Text;
	OnReasoningDelta.Broadcast(Text);
}

void FCVXAgentLoop::OnProviderToolCallComplete(const FCVXToolCall& Call)
{
	check(IsInGameThread());
	if (IsStopped())
	{
		return;
	}
	FCVXToolCall Unique = Call;
	// Some models give one id to several calls, in one answer or in each, by which results couldn't be told apart.
	while (Unique.Id.IsEmpty() || !GetToolName(Unique.Id).IsEmpty() || ContextManager.HasToolUse(Unique.Id))
	{
		Unique.Id = Call.Id + TEXT("_") + FGuid::NewGuid().ToString(EGuidFormats::Digits).Left(UniqueIdChars);
	}
	Turn.Calls.Add(MoveTemp(Unique));
}

void FCVXAgentLoop::OnProviderStreamFinished(const FCVXTokenUsage& Usage)
{
	check(IsInGameThread());
	ActiveRequestHandle.Empty();
	TransientRetries = 0;
	ConnectionRetries = 0;
	FCVXPerformanceMonitor::Get().OnStreamEnd(Usage.InputTokens, Usage.OutputTokens);
	TotalUsage.InputTokens += Usage.InputTokens;
	TotalUsage.OutputTokens += Usage.OutputTokens;
	TotalUsage.CacheRead += Usage.CacheRead;
	TotalUsage.CacheWrite += Usage.CacheWrite;
	if (IsStopped())
	{
		return;
	}
	if (Usage.bTruncated)
	{
		UE_LOG(LogCVXAgentLoop, Warning, TEXT("Output truncated by provider token limit (output_tokens=%d)"),
			Usage.OutputTokens);
		FCVXGuardContext Guard = MakeGuardContext();
		CVXNudges::WarnOfTruncation(Guard);
	}
	FinalizeAssistantMessage();
}

void FCVXAgentLoop::OnProviderError(const FString& Error)
{
	using namespace CVXProviderRecovery;
	check(IsInGameThread());
	UE_LOG(LogCVXAgentLoop, Error, TEXT("Provider error: %s"), *Error);
	ActiveRequestHandle.Empty();
	const EErrorClass Class = Classify(Error);
	if (Class == EErrorClass::Connection)
	{
		if (ConnectionRetries >= MaxConnectionRetries)
		{
			UE_LOG(LogCVXAgentLoop, Error, TEXT("Connection failed after %d retries — cancelling task"),
				MaxConnectionRetries);
			ConnectionRetries = 0;
			Cancel();
			return;
		}
		++ConnectionRetries;
		UE_LOG(LogCVXAgentLoop, Warning, TEXT("Connection failed — retrying in %.0fs (attempt %d/%d): %s"),
			ConnectionRetrySeconds, ConnectionRetries, MaxConnectionRetries, *Error);
		RetryAfter(ConnectionRetrySeconds);
		return;
	}
	if (Class == EErrorClass::Transient && TransientRetries < MaxTransientRetries)
	{
		const double Delay = GetTransientDelay(Error, TransientRetries);
		++TransientRetries;
		UE_LOG(LogCVXAgentLoop, Warning, TEXT("Transient provider error — auto-retrying in %.0fs (attempt %d/%d): %s"),
			Delay, TransientRetries, MaxTransientRetries, *Error);
		RetryAfter(Delay);
		return;
	}
	Fail(Error);
}

void FCVXAgentLoop::Fail(const FString& Error)
{
	const int32 RetriesMade = TransientRetries;
	TransientRetries = 0;
	ConnectionRetries = 0;
	SetState(ECVXTaskState::Error);
	OnError.Broadcast(CVXProviderRecovery::DescribeForUser(Error, RetriesMade));
}

void FCVXAgentLoop::RetryAfter(double Seconds)
{
	RetryTime = FPlatformTime::Seconds() + Seconds;
	RetryTicker = FTSTicker::GetCoreTicker().AddTicker(TEXT("CVXProviderRetry"), static_cast<float>(Seconds),
		[Weak = AsWeak()](float)
		{
			const TSharedPtr<FCVXAgentLoop> Loop = Weak.Pin();
			if (Loop && !Loop->IsStopped())
			{
				Loop->SendRequest();
			}
			return false;
		});
	SetState(ECVXTaskState::Idle);
}

void FCVXAgentLoop::FinalizeAssistantMessage()
{
	TRACE_CPUPROFILER_EVENT_SCOPE_STR("CVX::FinalizeAssistantMessage");
	if (IsStopped())
	{
		return;
	}
	const int32 Serial = TurnSerial;
	SetState(ECVXTaskState::Idle);
	if (!IsStillTurn(Serial))
	{
		return;
	}
	++TurnCount;
	if (MaxTurns >= 1 && TurnCount >= MaxTurns)
	{
		StopAtTurnLimit();
		return;
	}
	AddAssistantMessage();
	if (!IsStillTurn(Serial))
	{
		return;
	}
	if (Turn.Calls.IsEmpty())
	{
		HandleTextOnlyAnswer();
		return;
	}
	Guards.NoToolNudgeCount = 0;
	if (!StopAtCallCycle())
	{
		FCVXGuardContext Guard = MakeGuardContext();
		CVXToolDiversity::NoteCalls(Guard);
		ProcessPendingToolCalls();
	}
}

void FCVXAgentLoop::StopAtTurnLimit()
{
	UE_LOG(LogCVXAgentLoop, Warning, TEXT("Max turns limit (%d) reached."), MaxTurns);
	Complete(Turn.Text.IsEmpty()
			? FString::Printf(TEXT("Max turns limit (%d) reached. Stopping agent."), MaxTurns)
			: FString::Printf(TEXT("Max turns limit (%d) reached. Agent's last output:\n%s"), MaxTurns, *Turn.Text));
}

void FCVXAgentLoop::AddAssistantMessage()
{
	FCVXMessage Message = MakeOwnMessage(ECVXMessageRole::Assistant);
	Message.ReasoningContent = Turn.Reasoning;
	if (!Turn.Text.IsEmpty())
	{
		FCVXContentBlock Block;
		Block.Type = TEXT("text");
		Block.Text = Turn.Text;
		Message.Content.Add(MoveTemp(Block));
	}
	for (const FCVXToolCall& Call : Turn.Calls)
	{
		UE_LOG(LogCVXAgentLoop, Log, TEXT("  ToolCall: %s (id=%s) input=%s"), *Call.Name, *Call.Id,
			*CVXAgentLog::Cut(Call.Arguments));
		Message.Content.Add(MakeToolUseBlock(Call));
	}
	if (!Message.Content.IsEmpty())
	{
		ContextManager.AddMessage(Message);
		OnMessageComplete.Broadcast(Message);
	}
}

void FCVXAgentLoop::HandleTextOnlyAnswer()
{
	++Guards.NoToolNudgeCount;
	FCVXPerformanceMonitor::Get().OnTurnEnd(0, 0.0);
	if (Guards.NoToolNudgeCount == 1 && !Turn.Text.IsEmpty())
	{
		FCVXGuardContext Guard = MakeGuardContext();
		CVXNudges::AskForToolCall(Guard);
		SendRequest();
		return;
	}
	Guards.NoToolNudgeCount = 0;
	if (Turn.Text.Contains(TEXT("?")))
	{
		UE_LOG(LogCVXAgentLoop, Log,
			TEXT("No tool calls but text contains questions — pausing for user response instead of completing."));
		return;
	}
	Complete(Turn.Text);
}

bool FCVXAgentLoop::StopAtCallCycle()
{
	FCVXGuardContext Guard = MakeGuardContext();
	const int32 Repeats = CVXCallCycle::CountRepeats(Guard);
	if (Repeats < CVXCallCycle::MaxRepeats)
	{
		return false;
	}
	UE_LOG(LogCVXAgentLoop, Warning,
		TEXT("Cycle detected: identical tool calls repeated %d consecutive turns. Force-completing."), Repeats);
	Complete(Turn.Text.IsEmpty() ? TEXT("Agent stopped: detected repeated tool-call cycle.") : Turn.Text);
	return true;
}
