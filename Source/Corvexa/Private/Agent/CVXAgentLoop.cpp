#include "Agent/CVXAgentLoop.h"

#include "Agent/CVXAgentLog.h"
#include "Agent/CVXProviderRecovery.h"
#include "Agent/CVXRequestLog.h"
#include "Agent/CVXTaskManager.h"
#include "Agent/CVXUserInput.h"
#include "Agent/Guards/CVXCallCycle.h"
#include "Agent/Guards/CVXCompletionGate.h"
#include "Agent/Guards/CVXNudges.h"
#include "Agent/Guards/CVXPythonErrorStreak.h"
#include "Agent/Guards/CVXResultBookkeeping.h"
#include "Agent/Guards/CVXSelfHealing.h"
#include "Agent/Guards/CVXToolDiversity.h"
#include "Agent/Guards/CVXTurnScan.h"
#include "Agent/Guards/CVXVerificationHint.h"
#include "Agent/Guards/CVXVisualVerification.h"
#include "Agent/Prompt/CVXSystemPrompt.h"
#include "Algo/AnyOf.h"
#include "Async/Async.h"
#include "Core/CVXSettings.h"
#include "CoreGlobals.h"
#include "Diagnostics/CVXPerformanceMonitor.h"
#include "HAL/PlatformTime.h"
#include "Misc/Guid.h"
#include "ProfilingDebugging/CpuProfilerTrace.h"
#include "Providers/CVXProviderFactory.h"
#include "Tools/CVXToolRegistry.h"

namespace
{
/** Characters of a call's input and of a result that the log shows. */
constexpr int32 MaxLoggedChars = 200;
/** A batch of tool calls longer than this many seconds is worth a warning. */
constexpr double LongToolBatchSeconds = 120.0;

FString CutForLog(const FString& Text)
{
	return Text.Len() > MaxLoggedChars ? Text.Left(MaxLoggedChars) + TEXT("...") : Text;
}

/** Changes with everything that the provider is made from. */
FString MakeFingerprint(const FCVXProviderProfile& Profile)
{
	return FString::Printf(TEXT("%s|%d|%s|%s|%s|%d|%.2f|%d|%.0f"), *Profile.ProfileName,
		static_cast<int32>(Profile.ProviderType), *Profile.BaseURL, *Profile.ModelId, *Profile.ApiKeyEnvVar,
		Profile.MaxContextTokens, Profile.Temperature, Profile.MaxTokens, Profile.TimeoutSeconds);
}

/** For a model that takes no tools: the conversation without their traces. */
void RemoveToolTraces(TArray<FCVXMessage>& Messages)
{
	Messages.RemoveAll([](const FCVXMessage& Message) { return Message.Role == ECVXMessageRole::Tool; });
	for (FCVXMessage& Message : Messages)
	{
		Message.Content.RemoveAll([](const FCVXContentBlock& Block) { return Block.Type == TEXT("tool_use"); });
	}
}

FCVXContentBlock MakeToolUseBlock(const FCVXToolCall& Call)
{
	FCVXContentBlock Block;
	Block.Type = TEXT("tool_use");
	Block.ToolUseId = Call.Id;
	Block.ToolName = Call.Name;
	Block.InputJson = Call.Arguments;
	return Block;
}

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

FCVXMessage MakeAgentMessage(ECVXMessageRole Role, const FString& AgentName)
{
	FCVXMessage Message;
	Message.MessageId = FGuid::NewGuid().ToString(EGuidFormats::Digits);
	Message.Role = Role;
	Message.Timestamp = FDateTime::UtcNow();
	Message.AgentName = AgentName;
	return Message;
}
} // namespace

FCVXAgentLoop::FCVXAgentLoop(TUniquePtr<ICVXProvider> InProvider, const FCVXAgentProfile& InAgentProfile)
	: Provider(MoveTemp(InProvider))
	, AgentProfile(InAgentProfile)
	, ContextManager(Provider ? Provider->GetMaxContextTokens() : DefaultContextTokens)
	, LoopId(FGuid::NewGuid().ToString(EGuidFormats::Digits))
{
}

FCVXAgentLoop::~FCVXAgentLoop()
{
	FCVXDelegationHistory::Get().Remove(LoopId);
	StopWork();
}

// ---------------------------------------------------------------------------------------------------------------------
// What the owner asks for.

bool FCVXAgentLoop::IsBusyState(ECVXTaskState State)
{
	return State == ECVXTaskState::Streaming || State == ECVXTaskState::WaitingApproval ||
		State == ECVXTaskState::WaitingForSubAgent || State == ECVXTaskState::ExecutingTool;
}

void FCVXAgentLoop::SubmitUserMessage(const FString& Text)
{
	if (IsBusy())
	{
		UE_LOG(LogCVXAgentLoop, Warning, TEXT("Cannot submit: agent is busy (state=%d)"), static_cast<int32>(State));
		return;
	}
	const TSharedRef<FCVXAgentLoop> KeepAlive = AsShared();
	CancelRetry();
	TurnCount = 0;
	bInterrupted = false;
	Guards.ResetForUserMessage();
	InjectedKnowledgeIds.Empty();

	const FCVXUserInput Input = FCVXUserInput::Prepare(Text);
	const int32 Serial = TurnSerial;
	OnMessageComplete.Broadcast(Input.DisplayMessage);
	ContextManager.AddMessage(Input.ConversationMessage);
	if (TurnSerial == Serial)
	{
		SendRequest();
	}
}

void FCVXAgentLoop::Cancel()
{
	const TSharedRef<FCVXAgentLoop> KeepAlive = AsShared();
	StopWork();
	SetState(ECVXTaskState::Cancelled);
}

void FCVXAgentLoop::Interrupt()
{
	const TSharedRef<FCVXAgentLoop> KeepAlive = AsShared();
	StopWork();
	bInterrupted = true;
	SetState(ECVXTaskState::Idle);
}

void FCVXAgentLoop::ClearHistory()
{
	ContextManager.Clear();
	InjectedKnowledgeIds.Empty();
	Guards.CompletedWork.Empty();
}

TArray<FString> FCVXAgentLoop::GetExecutingToolNames() const
{
	TArray<FString> Names;
	if (State == ECVXTaskState::ExecutingTool)
	{
		for (const FCVXToolCall& Call : Turn.Calls)
		{
			Names.Add(Call.Name);
		}
	}
	return Names;
}

// ---------------------------------------------------------------------------------------------------------------------
// The request of a turn.

void FCVXAgentLoop::SendRequest()
{
	TRACE_CPUPROFILER_EVENT_SCOPE_STR("CVX::SendRequest");
	if (!Provider)
	{
		OnError.Broadcast(TEXT("No provider configured."));
		return;
	}
	if (State == ECVXTaskState::Streaming)
	{
		UE_LOG(LogCVXAgentLoop, Warning, TEXT("SendRequest: already streaming — ignoring re-entrant call"));
		return;
	}
	BeginTurn();
	if (State != ECVXTaskState::Streaming)
	{
		return;
	}
	const FCVXProviderProfile* ProviderProfile = RefreshFromSettings();
	const FCVXProviderRequest Request = BuildRequest(ProviderProfile);
	CVXRequestLog::Write(Request);

	FCVXPerformanceMonitor::Get().OnStreamStart();
	ActiveRequestHandle = Provider->StreamRequest(Request, MakeCallbacks());
	if (!ActiveRequestHandle.IsEmpty())
	{
		UE_LOG(LogCVXAgentLoop, Log, TEXT("SendRequest: started request handle='%s'"), *ActiveRequestHandle);
		return;
	}
	UE_LOG(LogCVXAgentLoop, Error,
		TEXT("SendRequest: Provider->StreamRequest returned empty handle — request was not started"));
	if (State != ECVXTaskState::Error)
	{
		OnProviderError(TEXT("Request could not be started — check provider configuration and API key."));
	}
}

void FCVXAgentLoop::BeginTurn()
{
	FCVXPerformanceMonitor::Get().OnTurnStart(TurnCount);
	UE_LOG(
		LogCVXAgentLoop, Log, TEXT("SendRequest: turn=%d, messages=%d"), TurnCount, ContextManager.GetHistory().Num());
	CancelRetry();
	for (const auto& SubAgent : Turn.SubAgents)
	{
		FTSTicker::RemoveTicker(SubAgent.Value.Ticker);
	}
	ToolExecutor.ForgetPending();
	Turn = FTurn();
	++TurnSerial;
	SetState(ECVXTaskState::Streaming);
}

const FCVXProviderProfile* FCVXAgentLoop::RefreshFromSettings()
{
	const UCVXSettings* Settings = UCVXSettings::Get();
	const FCVXAgentProfile* Stored = Settings ? Settings->FindAgentProfile(AgentProfile.ProfileName) : nullptr;
	if (Stored && Stored->ProfileName == AgentProfile.ProfileName)
	{
		AgentProfile = *Stored;
	}
	const FCVXProviderProfile* ProviderProfile =
		Settings ? Settings->FindProviderProfile(AgentProfile.ProviderProfileName) : nullptr;
	if (ProviderProfile)
	{
		RefreshProvider(*ProviderProfile);
	}
	else
	{
		UE_LOG(LogCVXAgentLoop, Warning, TEXT("SendRequest: provider profile not found, using cached provider"));
	}
	bModelHasVision = ProviderProfile && ProviderProfile->bSupportsVision;
	const bool bHasOverride = ProviderProfile && ProviderProfile->MaxContextTokens >= 1;
	ContextManager.SetMaxContextTokens(FMath::Max(
		MinContextTokens, bHasOverride ? ProviderProfile->MaxContextTokens : Provider->GetMaxContextTokens()));
	return ProviderProfile;
}

void FCVXAgentLoop::RefreshProvider(const FCVXProviderProfile& ProviderProfile)
{
	const FString Fingerprint = MakeFingerprint(ProviderProfile);
	if (Fingerprint == ProviderFingerprint)
	{
		return;
	}
	ProviderFingerprint = Fingerprint;
	if (TUniquePtr<ICVXProvider> Fresh = FCVXProviderFactory::CreateProvider(ProviderProfile))
	{
		Provider = MoveTemp(Fresh);
		UE_LOG(LogCVXAgentLoop, Log, TEXT("SendRequest: re-created provider for '%s'"), *ProviderProfile.ProfileName);
	}
}

FCVXProviderRequest FCVXAgentLoop::BuildRequest(const FCVXProviderProfile* ProviderProfile)
{
	const TSharedPtr<FCVXTask> Task = FindOwnTask();
	FCVXPromptContext PromptContext{AgentProfile, ContextManager, LoopId, Guards.CompletedWork, InjectedKnowledgeIds};
	PromptContext.Settings = UCVXSettings::Get();
	PromptContext.ProviderProfile = ProviderProfile;
	PromptContext.TodoList = Task ? &Task->GetTodoList() : nullptr;
	PromptContext.TurnCount = TurnCount;

	FCVXProviderRequest Request;
	Request.SystemPrompt = CVXSystemPrompt::Build(PromptContext);
	Request.Messages = ContextManager.GetMessagesForRequest(Request.SystemPrompt);
	OfferTools(Request, ProviderProfile);
	if (ProviderProfile)
	{
		Request.Temperature = ProviderProfile->Temperature;
		Request.MaxTokens = ProviderProfile->MaxTokens;
	}
	return Request;
}

void FCVXAgentLoop::OfferTools(FCVXProviderRequest& Request, const FCVXProviderProfile* ProviderProfile) const
{
	if (ProviderProfile && !ProviderProfile->bSupportsToolUse)
	{
		RemoveToolTraces(Request.Messages);
		return;
	}
	Request.Tools = FCVXToolRegistry::Get().GetToolDescriptors(AgentProfile);
	if (ProviderProfile && !ProviderProfile->bSupportsVision)
	{
		Request.Tools.RemoveAll([](const FCVXToolDescriptor& Tool) { return Tool.Name == TEXT("capture_viewport"); });
	}
}

FCVXProviderCallbacks FCVXAgentLoop::MakeCallbacks()
{
	// Holding the loop for the length of a callback, whatever the callback's listeners do to it.
	const auto Forward = [Weak = AsWeak()](auto Method)
	{
		return [Weak, Method](const auto& Argument)
		{
			if (const TSharedPtr<FCVXAgentLoop> Loop = Weak.Pin())
			{
				(Loop.Get()->*Method)(Argument);
			}
		};
	};
	FCVXProviderCallbacks Callbacks;
	Callbacks.OnTextDelta = Forward(&FCVXAgentLoop::OnProviderTextDelta);
	Callbacks.OnReasoningDelta = Forward(&FCVXAgentLoop::OnProviderReasoningDelta);
	Callbacks.OnToolCallComplete = Forward(&FCVXAgentLoop::OnProviderToolCallComplete);
	Callbacks.OnStreamFinished = Forward(&FCVXAgentLoop::OnProviderStreamFinished);
	Callbacks.OnError = Forward(&FCVXAgentLoop::OnProviderError);
	return Callbacks;
}

// ---------------------------------------------------------------------------------------------------------------------
// The streamed answer.

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
	// Some models give one id to several calls, by which their results couldn't be told apart.
	while (Unique.Id.IsEmpty() || !GetToolName(Unique.Id).IsEmpty())
	{
		Unique.Id += FGuid::NewGuid().ToString(EGuidFormats::Digits);
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

// ---------------------------------------------------------------------------------------------------------------------
// The end of the answer.

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
	FCVXMessage Message = MakeAgentMessage(ECVXMessageRole::Assistant, AgentProfile.ProfileName);
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
			*CutForLog(Call.Arguments));
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

// ---------------------------------------------------------------------------------------------------------------------
// The calls of the answer.

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
		const bool bBackground = ToolExecutor.CanExecuteOnBackgroundThread(Call, AgentProfile);
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
				FCVXToolExecutionResult Result = FCVXToolExecutor::ExecuteToolDirect(Call, Profile);
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
		ToolExecutor.ExecuteToolCall(Call, AgentProfile, OnToolComplete, OnToolApprovalNeeded);
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
	FCVXMessage Message = MakeAgentMessage(ECVXMessageRole::Tool, AgentProfile.ProfileName);
	UE_LOG(LogCVXAgentLoop, Log, TEXT("AddToolResultsToHistory: %d results"), Turn.Results.Num());
	for (const FCVXCompletedToolResult& Result : Turn.Results)
	{
		UE_LOG(LogCVXAgentLoop, Log, TEXT("  ToolResult: %s (id=%s) error=%s len=%d preview='%s'"), *Result.ToolName,
			*Result.ToolUseId, Result.bIsError ? TEXT("true") : TEXT("false"), Result.Output.Len(),
			*CutForLog(Result.Output));
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

// ---------------------------------------------------------------------------------------------------------------------
// State.

void FCVXAgentLoop::SetState(ECVXTaskState NewState)
{
	if (State != NewState)
	{
		State = NewState;
		OnStateChanged.Broadcast(NewState);
	}
}

void FCVXAgentLoop::Complete(const FString& Result)
{
	Guards.RecentCallHashes.Empty();
	FinalizeTodoList();
	SetState(ECVXTaskState::Complete);
	OnComplete.Broadcast(Result);
}

void FCVXAgentLoop::StopWork()
{
	if (!ActiveRequestHandle.IsEmpty())
	{
		Provider->CancelRequest(ActiveRequestHandle);
		ActiveRequestHandle.Empty();
	}
	CancelRetry();
	ToolExecutor.ForgetPending();
	FTSTicker::RemoveTicker(ApprovalTicker);
	for (const auto& SubAgent : Turn.SubAgents)
	{
		FTSTicker::RemoveTicker(SubAgent.Value.Ticker);
	}
	Turn.SubAgents.Empty();
	Turn.ApprovalDeadlines.Empty();
	Turn.Clarifications.Empty();
	Turn.Calls.Empty();
	Turn.Results.Empty();
	++TurnSerial;
}

void FCVXAgentLoop::CancelRetry()
{
	FTSTicker::RemoveTicker(RetryTicker);
	RetryTicker.Reset();
	RetryTime = 0.0;
}

void FCVXAgentLoop::FinalizeTodoList()
{
	if (const TSharedPtr<FCVXTask> Task = FindOwnTask())
	{
		Task->GetTodoList().MarkInProgressAsCompleted();
	}
}

TSharedPtr<FCVXTask> FCVXAgentLoop::FindOwnTask() const
{
	return FCVXTaskManager::Get().FindTaskOfLoop(this);
}

FString FCVXAgentLoop::GetToolName(const FString& ToolUseId) const
{
	const FCVXToolCall* Call =
		Turn.Calls.FindByPredicate([&](const FCVXToolCall& Each) { return Each.Id == ToolUseId; });
	return Call ? Call->Name : FString();
}

FCVXGuardContext FCVXAgentLoop::MakeGuardContext()
{
	FCVXGuardContext Guard{Guards, ContextManager, AgentProfile, Turn.Calls, Turn.Results};
	// The manager keeps the task for as long as a step lasts.
	const TSharedPtr<FCVXTask> Task = FindOwnTask();
	Guard.TodoList = Task ? &Task->GetTodoList() : nullptr;
	Guard.bModelHasVision = bModelHasVision;
	Guard.SubAgentDepth = SubAgentDepth;
	Guard.TurnCount = TurnCount;
	Guard.MaxTurns = MaxTurns;
	return Guard;
}
