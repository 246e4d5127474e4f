#include "Agent/CVXAgentLog.h"
#include "Agent/Loop/CVXAgentLoop.h"
#include "Core/CVXSettings.h"
#include "CoreGlobals.h"
#include "HAL/PlatformTime.h"

// What a turn waits for besides the model: decisions, answers and sub-agents. Several may wait at once; the state tells
// the most urgent, and the turn goes on with the last of them.

namespace
{
/** Seconds between two looks at the deadlines. */
constexpr float ApprovalTickSeconds = 2.0f;
constexpr float SubAgentTickSeconds = 1.0f;

/** The answers that auto-selection gives: the first option of each question. */
FString AnswerWithFirstOptions(const TArray<FCVXClarificationQuestion>& Questions)
{
	FString Text;
	for (const FCVXClarificationQuestion& Question : Questions)
	{
		Text += FString::Printf(TEXT("Q: %s\n"), *Question.Question);
		Text += Question.Options.IsEmpty() ? TEXT("A: (auto-selected, no options)\n\n")
										   : FString::Printf(TEXT("A: %s\n\n"), *Question.Options[0].Title);
	}
	return Text;
}

FString NumberSelections(const TArray<FString>& Selections)
{
	FString Text;
	for (int32 Index = 0; Index < Selections.Num(); ++Index)
	{
		Text += FString::Printf(TEXT("Selection %d: %s\n"), Index + 1, *Selections[Index]);
	}
	return Text;
}

FCVXToolExecutionResult MakeResult(const FString& Output, bool bIsError)
{
	FCVXToolExecutionResult Result;
	Result.Output = Output;
	Result.bIsError = bIsError;
	return Result;
}
} // namespace

void FCVXAgentLoop::UpdateWaitingState()
{
	if (!Turn.ApprovalDeadlines.IsEmpty())
	{
		SetState(ECVXTaskState::WaitingApproval);
	}
	else if (!Turn.Clarifications.IsEmpty())
	{
		SetState(ECVXTaskState::WaitingClarification);
	}
	else if (!Turn.SubAgents.IsEmpty())
	{
		SetState(ECVXTaskState::WaitingForSubAgent);
	}
	else
	{
		SetState(ECVXTaskState::ExecutingTool);
	}
}

// ---------------------------------------------------------------------------------------------------------------------
// Decisions.

void FCVXAgentLoop::AskForApproval(const FString& ToolUseId, const FCVXApprovalRequest& Request)
{
	Turn.ApprovalDeadlines.Add(ToolUseId, FPlatformTime::Seconds() + ApprovalSeconds);
	FTSTicker::RemoveTicker(ApprovalTicker);
	ApprovalTicker = FTSTicker::GetCoreTicker().AddTicker(TEXT("CVXApproval"), ApprovalTickSeconds,
		[Weak = AsWeak()](float)
		{
			const TSharedPtr<FCVXAgentLoop> Loop = Weak.Pin();
			return Loop && Loop->TickApprovals();
		});
	UpdateWaitingState();
	OnApprovalNeeded.Broadcast(ToolUseId, Request);
}

bool FCVXAgentLoop::TickApprovals()
{
	const double Now = FPlatformTime::Seconds();
	TArray<FString> Expired;
	for (const auto& Waiting : Turn.ApprovalDeadlines)
	{
		if (Now > Waiting.Value)
		{
			Expired.Add(Waiting.Key);
		}
	}
	for (const FString& ToolUseId : Expired)
	{
		UE_LOG(
			LogCVXAgentLoop, Warning, TEXT("Approval timed out after 10 minutes — auto-denying tool '%s'"), *ToolUseId);
		ResolveApproval(ToolUseId, ECVXApprovalState::Denied, false);
	}
	return !Turn.ApprovalDeadlines.IsEmpty();
}

void FCVXAgentLoop::ResolveApproval(const FString& ToolUseId, ECVXApprovalState Decision, bool bRemember)
{
	const TSharedRef<FCVXAgentLoop> KeepAlive = AsShared();
	if (Turn.ApprovalDeadlines.Remove(ToolUseId) == 0)
	{
		return;
	}
	UpdateWaitingState();
	const bool bParked = ToolExecutor.IsPending(ToolUseId);
	ToolExecutor.ResolveApproval(ToolUseId, Decision, bRemember);
	if (!bParked && !IsStopped() && IsWaitedFor(ToolUseId))
	{
		UE_LOG(LogCVXAgentLoop, Warning,
			TEXT("ResolveApproval: executor did not produce a result for '%s' — injecting denied result"), *ToolUseId);
		OnToolCallResult(ToolUseId, MakeResult(TEXT("Tool execution denied by user."), true));
	}
}

// ---------------------------------------------------------------------------------------------------------------------
// Answers.

void FCVXAgentLoop::AskForClarification(const FString& ToolUseId, const FCVXToolExecutionResult& Result)
{
	const UCVXSettings* Settings = UCVXSettings::Get();
	if (Settings && Settings->bAutoSelectClarifications)
	{
		AddResult(ToolUseId, MakeResult(AnswerWithFirstOptions(Result.Questions), false));
		return;
	}
	Turn.Clarifications.Add({ToolUseId, Result.Questions});
	if (Turn.Clarifications.Num() == 1)
	{
		PutNextQuestion();
	}
}

void FCVXAgentLoop::PutNextQuestion()
{
	UpdateWaitingState();
	if (!Turn.Clarifications.IsEmpty())
	{
		const FCVXClarificationRequest Request = Turn.Clarifications[0];
		OnClarificationNeeded.Broadcast(Request.ToolUseId, Request);
	}
}

void FCVXAgentLoop::ResolveClarification(const FString& ToolUseId, const TArray<FString>& Selections)
{
	check(IsInGameThread());
	if (Turn.Clarifications.IsEmpty() || Turn.Clarifications[0].ToolUseId != ToolUseId)
	{
		return;
	}
	const TSharedRef<FCVXAgentLoop> KeepAlive = AsShared();
	Turn.Clarifications.RemoveAt(0);
	AddResult(ToolUseId, MakeResult(NumberSelections(Selections), false));
	PutNextQuestion();
	ContinueWhenAllResultsAreIn();
}

// ---------------------------------------------------------------------------------------------------------------------
// Sub-agents.

void FCVXAgentLoop::RequestSubAgent(const FString& ToolUseId, const FCVXToolExecutionResult& Result)
{
	UE_LOG(LogCVXAgentLoop, Log, TEXT("Delegation requested: profile='%s' task='%s' (depth=%d)"),
		*Result.DelegateProfile, *Result.DelegateTask.Left(150), SubAgentDepth);
	if (SubAgentDepth >= MaxDelegationDepth)
	{
		AddResult(ToolUseId,
			MakeResult(TEXT("Delegation not allowed: maximum nesting depth (3) reached. Complete the "
							"current task directly instead of delegating further."),
				true));
		return;
	}
	float Overlap = 0.0f;
	if (const FCVXDelegationRecord* Done =
			FCVXDelegationHistory::Get().FindDuplicate(LoopId, Result.DelegateProfile, Result.DelegateTask, Overlap))
	{
		UE_LOG(LogCVXAgentLoop, Warning, TEXT("BLOCKED duplicate delegation (overlap=%.0f%%): '%s'"), Overlap * 100.0f,
			*Result.DelegateTask.Left(120));
		AddResult(ToolUseId,
			MakeResult(
				FString::Printf(TEXT("DELEGATION BLOCKED — this work was already completed:\nAgent: %s\nOriginal "
									 "task: %s\nResult: %s\n\nThis work is DONE. Do NOT re-delegate.\nVerify with "
									 "read_file/list_files, then call attempt_completion."),
					*Done->AgentProfile, *Done->TaskDescription.Left(300), *Done->ResultSummary.Left(800)),
				true));
		return;
	}
	const float Seconds =
		Result.DelegateTimeoutSeconds > 0.0f ? Result.DelegateTimeoutSeconds : DefaultDelegationSeconds;
	FPendingSubAgent& SubAgent =
		Turn.SubAgents.Add(ToolUseId, {Result.DelegateProfile, Result.DelegateTask, Seconds, {}});
	WatchSubAgentTime(ToolUseId, SubAgent);
	UpdateWaitingState();
	OnSubAgentRequired.Broadcast(
		ToolUseId, Result.DelegateProfile, Result.DelegateTask, Result.DelegateContext, Result.DelegateMaxTurns);
}

void FCVXAgentLoop::WatchSubAgentTime(const FString& ToolUseId, FPendingSubAgent& SubAgent)
{
	const float Seconds = SubAgent.TimeoutSeconds;
	const double Deadline = FPlatformTime::Seconds() + static_cast<double>(Seconds);
	SubAgent.Ticker = FTSTicker::GetCoreTicker().AddTicker(TEXT("CVXSubAgent"), SubAgentTickSeconds,
		[Weak = AsWeak(), ToolUseId, Seconds, Deadline](float)
		{
			const TSharedPtr<FCVXAgentLoop> Loop = Weak.Pin();
			if (!Loop || !Loop->Turn.SubAgents.Contains(ToolUseId))
			{
				return false;
			}
			if (FPlatformTime::Seconds() <= Deadline)
			{
				return true;
			}
			UE_LOG(LogCVXAgentLoop, Warning, TEXT("Sub-agent timed out after %.0fs — force-resolving"), Seconds);
			Loop->ResolveSubAgent(ToolUseId,
				TEXT(
					"Sub-agent timed out before completing the task.\nYou MUST handle this — do NOT call "
					"attempt_completion without finishing the work.\nOptions:\n1. Re-delegate with a SMALLER, more "
					"focused sub-task and higher timeout_seconds.\n2. Break the original task into multiple smaller "
					"delegations.\n3. If the sub-agent made partial progress, delegate only the REMAINING work.\nCheck "
					"what was already created (list_files, execute_python) before re-delegating."),
				true, false);
			return false;
		});
}

void FCVXAgentLoop::ResolveSubAgent(const FString& ToolUseId, const FString& Result, bool bIsError, bool bIncomplete)
{
	check(IsInGameThread());
	const TSharedRef<FCVXAgentLoop> KeepAlive = AsShared();
	UE_LOG(LogCVXAgentLoop, Log, TEXT("ResolveSubAgent: toolUseId='%s' error=%s resultLen=%d preview='%s'"), *ToolUseId,
		bIsError ? TEXT("true") : TEXT("false"), Result.Len(), *Result.Left(300));
	if (Turn.SubAgents.IsEmpty())
	{
		UE_LOG(LogCVXAgentLoop, Warning,
			TEXT("ResolveSubAgent: dropping stale result (state=%d, not WaitingForSubAgent)"),
			static_cast<int32>(State));
		return;
	}
	FPendingSubAgent SubAgent;
	if (!Turn.SubAgents.RemoveAndCopyValue(ToolUseId, SubAgent))
	{
		UE_LOG(LogCVXAgentLoop, Warning,
			TEXT("ResolveSubAgent: dropping unknown/already-resolved result (toolUseId='%s', %d pending)"), *ToolUseId,
			Turn.SubAgents.Num());
		return;
	}
	FTSTicker::RemoveTicker(SubAgent.Ticker);
	UpdateWaitingState();
	if (!Turn.SubAgents.IsEmpty())
	{
		UE_LOG(LogCVXAgentLoop, Log, TEXT("ResolveSubAgent: resolved '%s', still waiting for %d more sub-agent(s)"),
			*ToolUseId, Turn.SubAgents.Num());
	}
	FCVXDelegationHistory::Get().Add(LoopId, SubAgent.Profile, SubAgent.Task, Result, bIsError, bIncomplete);
	OnToolCallResult(ToolUseId,
		MakeResult(FString::Printf(TEXT("[DELEGATION COMPLETE — Status: %s]\n%s\n[END DELEGATION RESULT]"),
					   *FCVXDelegationRecord::FormatStatus(bIsError, bIncomplete), *Result),
			bIsError));
}
