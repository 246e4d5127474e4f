#include "Agent/Loop/CVXAgentLoop.h"

#include "Agent/CVXAgentLog.h"
#include "Agent/Guards/CVXCompletionGate.h"
#include "Agent/Guards/CVXNudges.h"
#include "Agent/Guards/CVXPythonErrorStreak.h"
#include "Agent/Guards/CVXResultBookkeeping.h"
#include "Agent/Guards/CVXSelfHealing.h"
#include "Agent/Guards/CVXToolDiversity.h"
#include "Agent/Guards/CVXTurnScan.h"
#include "Agent/Guards/CVXVerificationHint.h"
#include "Agent/Guards/CVXVisualVerification.h"
#include "Async/Async.h"
#include "CoreGlobals.h"
#include "Diagnostics/CVXPerformanceMonitor.h"
#include "HAL/PlatformTime.h"
#include "ProfilingDebugging/CpuProfilerTrace.h"

// The third part of a turn: the calls of the answer, their results, and whether a completion is accepted.

namespace
{
/** A batch of tool calls longer than this many seconds is worth a warning. */
constexpr double LongToolBatchSeconds = 120.0;

FCVXContentBlock MakeToolResultBlock(const FCVXCompletedToolResult& Result)
{
	FCVXContentBlock Block;
	Block.Type = TEXT("tool_result");
	Block.ToolUseId = Result.ToolUseId;
	Block.ToolName = Result.ToolName;
	Block.ToolResultContent = Result.Output;
	Block.bIsError = Result.bIsError;
	return Block;
}
} // namespace

void FCVXAgentLoop::ProcessPendingToolCalls()
{
	TRACE_CPUPROFILER_EVENT_SCOPE_STR("CVX::ProcessPendingToolCalls");
	if (IsStopped())
	{
		return;
	}
	Turn.Results.Empty();
	Turn.bCompletionRequested = false;
	Turn.CompletionMessage.Empty();
	Turn.ToolBatchStartTime = FPlatformTime::Seconds();
	SetState(ECVXTaskState::ExecutingTool);

	TArray<FCVXToolCall> BackgroundCalls;
	TArray<FCVXToolCall> GameThreadCalls;
	for (const FCVXToolCall& Call : Turn.Calls)
	{
		const bool bBackground = ToolExecutor.CanExecuteOnBackgroundThread(Call, *AgentProfile);
		(bBackground ? BackgroundCalls : GameThreadCalls).Add(Call);
	}
	StartBackgroundCalls(BackgroundCalls);
	RunGameThreadCalls(GameThreadCalls);
}

void FCVXAgentLoop::StartBackgroundCalls(const TArray<FCVXToolCall>& Calls)
{
	for (const FCVXToolCall& Call : Calls)
	{
		AsyncTask(ENamedThreads::AnyBackgroundThreadNormalTask,
			[Weak = AsWeak(), Call, Profile = AgentProfile]
			{
				FCVXToolExecutionResult Result = FCVXToolExecutor::ExecuteToolDirect(Call, *Profile);
				AsyncTask(ENamedThreads::GameThread,
					[Weak, Id = Call.Id, Result = MoveTemp(Result)]
					{
						if (const TSharedPtr<FCVXAgentLoop> Loop = Weak.Pin())
						{
							Loop->OnToolCallResult(Id, Result);
						}
					});
			});
	}
}

void FCVXAgentLoop::RunGameThreadCalls(const TArray<FCVXToolCall>& Calls)
{
	const FCVXOnToolComplete OnToolComplete = FCVXOnToolComplete::CreateSP(this, &FCVXAgentLoop::OnToolCallResult);
	const FCVXOnToolApprovalNeeded OnToolApprovalNeeded =
		FCVXOnToolApprovalNeeded::CreateSP(this, &FCVXAgentLoop::AskForApproval);
	const int32 Serial = TurnSerial;
	for (const FCVXToolCall& Call : Calls)
	{
		if (!IsStillTurn(Serial))
		{
			return;
		}
		ToolExecutor.ExecuteToolCall(Call, *AgentProfile, OnToolComplete, OnToolApprovalNeeded);
	}
}

void FCVXAgentLoop::OnToolCallResult(const FString& ToolUseId, const FCVXToolExecutionResult& Result)
{
	check(IsInGameThread());
	if (IsStopped())
	{
		UE_LOG(LogCVXAgentLoop, Log, TEXT("Discarding tool result '%s' — task was cancelled/interrupted"), *ToolUseId);
		return;
	}
	if (!IsWaitedFor(ToolUseId))
	{
		UE_LOG(
			LogCVXAgentLoop, Log, TEXT("Discarding tool result '%s' — no call of this turn waits for it"), *ToolUseId);
		return;
	}
	if (Result.bIsDelegation)
	{
		RequestSubAgent(ToolUseId, Result);
	}
	else if (Result.bHasQuestions && !Result.Questions.IsEmpty())
	{
		AskForClarification(ToolUseId, Result);
	}
	else
	{
		AddResult(ToolUseId, Result);
	}
	ContinueWhenAllResultsAreIn();
}

bool FCVXAgentLoop::IsWaitedFor(const FString& ToolUseId) const
{
	int32 Missing = 0;
	for (const FCVXToolCall& Call : Turn.Calls)
	{
		Missing += Call.Id == ToolUseId ? 1 : 0;
	}
	for (const FCVXCompletedToolResult& Result : Turn.Results)
	{
		Missing -= Result.ToolUseId == ToolUseId ? 1 : 0;
	}
	return Missing > 0;
}

void FCVXAgentLoop::AddResult(const FString& ToolUseId, const FCVXToolExecutionResult& Result)
{
	Turn.Results.Add(
		{ToolUseId, GetToolName(ToolUseId), Result.Output, Result.bIsError, Result.ImageBase64, Result.ImageMediaType});
	FCVXGuardContext Guard = MakeGuardContext();
	CVXResultBookkeeping::Note(Guard, Turn.Results.Last());
	if (Result.bIsCompletion)
	{
		Turn.bCompletionRequested = true;
		Turn.CompletionMessage = Result.Output;
	}
}

void FCVXAgentLoop::ContinueWhenAllResultsAreIn()
{
	if (State != ECVXTaskState::ExecutingTool || Turn.Results.Num() < Turn.Calls.Num())
	{
		return;
	}
	if (Turn.bCompletionRequested)
	{
		JudgeCompletion();
		return;
	}
	AddToolResultsAndContinue();
}

void FCVXAgentLoop::JudgeCompletion()
{
	FCVXGuardContext Guard = MakeGuardContext();
	const FCVXGateVerdict Verdict = CVXCompletionGate::Judge(Guard);
	const int32 Serial = TurnSerial;
	const FString Result = MoveTemp(Turn.CompletionMessage);
	Turn.CompletionMessage.Empty();
	Turn.bCompletionRequested = false;
	if (Verdict.Kind == FCVXGateVerdict::EKind::Drop)
	{
		AddToolResultsAndContinue();
		return;
	}
	if (Verdict.bKeepResults)
	{
		AddToolResultsToHistory();
	}
	if (!IsStillTurn(Serial))
	{
		return;
	}
	EndTurn();
	if (Verdict.Kind == FCVXGateVerdict::EKind::Accept)
	{
		Complete(Result);
		return;
	}
	Guard.AddHidden(Verdict.Message, Verdict.Tag);
	SendRequest();
}

void FCVXAgentLoop::AddToolResultsToHistory()
{
	FCVXMessage Message = MakeOwnMessage(ECVXMessageRole::Tool);
	UE_LOG(LogCVXAgentLoop, Log, TEXT("AddToolResultsToHistory: %d results"), Turn.Results.Num());
	for (const FCVXCompletedToolResult& Result : Turn.Results)
	{
		UE_LOG(LogCVXAgentLoop, Log, TEXT("  ToolResult: %s (id=%s) error=%s len=%d preview='%s'"), *Result.ToolName,
			*Result.ToolUseId, Result.bIsError ? TEXT("true") : TEXT("false"), Result.Output.Len(),
			*CVXAgentLog::Cut(Result.Output));
		Message.Content.Add(MakeToolResultBlock(Result));
	}
	ContextManager.AddMessage(Message);
	OnMessageComplete.Broadcast(Message);
}

void FCVXAgentLoop::AddToolResultsAndContinue()
{
	if (IsStopped())
	{
		return;
	}
	const int32 Serial = TurnSerial;
	AddToolResultsToHistory();
	if (!IsStillTurn(Serial))
	{
		return;
	}
	FCVXGuardContext Guard = MakeGuardContext();
	CVXToolDiversity::Check(Guard);
	FCVXTurnFindings Findings = CVXTurnScan::Scan(Guard);
	CVXPythonErrorStreak::Update(Guard, Findings);
	CVXVisualVerification::Verify(Guard, Findings);
	CVXVerificationHint::Check(Guard, Findings);
	AddScreenshotMessage(Findings);
	CVXSelfHealing::Run(Guard, Findings);
	CVXNudges::RemindToCompileCpp(Guard);
	CVXNudges::WarnOfTurnBudget(Guard);
	EndTurn();
	if (IsStillTurn(Serial))
	{
		SendRequest();
	}
}

void FCVXAgentLoop::AddScreenshotMessage(const FCVXTurnFindings& Findings)
{
	if (Findings.Images.IsEmpty())
	{
		return;
	}
	FCVXMessage Message =
		FCVXMessage::MakeUserText(FString::Printf(TEXT("[%d viewport screenshot(s) captured — analyze the image(s) and "
													   "verify your changes. If anything looks wrong "
													   "(floating objects, disconnected geometry, missing elements, "
													   "wrong proportions), fix it in the next step.]"),
			Findings.Images.Num()));
	for (const FCVXTurnImage& Image : Findings.Images)
	{
		FCVXContentBlock Block;
		Block.Type = TEXT("image");
		Block.ImageBase64 = Image.Base64;
		Block.ImageMediaType = Image.MediaType;
		Message.Content.Add(MoveTemp(Block));
	}
	ContextManager.AddMessage(Message);
	OnMessageComplete.Broadcast(Message);
}

void FCVXAgentLoop::EndTurn()
{
	const double Seconds = FPlatformTime::Seconds() - Turn.ToolBatchStartTime;
	FCVXPerformanceMonitor::Get().OnTurnEnd(Turn.Results.Num(), Seconds);
	if (Seconds > LongToolBatchSeconds)
	{
		UE_LOG(LogCVXAgentLoop, Warning, TEXT("Tool execution took %.1fs (>2 min) — consider if a tool is hanging"),
			Seconds);
	}
}
