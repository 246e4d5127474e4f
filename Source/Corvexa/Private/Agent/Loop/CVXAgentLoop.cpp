#include "Agent/Loop/CVXAgentLoop.h"

#include "Agent/CVXAgentLog.h"
#include "Agent/Loop/CVXUserInput.h"
#include "Agent/Tasks/CVXTaskManager.h"
#include "Misc/Guid.h"

// What the owner asks of a loop, and its state. The files beside this one follow a turn in order: CVXAgentLoopRequest,
// CVXAgentLoopAnswer, CVXAgentLoopTools, CVXAgentLoopWaiting.

FCVXAgentLoop::FCVXAgentLoop(TUniquePtr<ICVXProvider> InProvider, const FCVXAgentProfile& InAgentProfile)
	: Provider(MoveTemp(InProvider))
	, AgentProfile(CVXSharedProfile::Share(InAgentProfile))
	, ContextManager(Provider ? Provider->GetMaxContextTokens() : DefaultContextTokens)
	, LoopId(FGuid::NewGuid().ToString(EGuidFormats::Digits))
{
}

FCVXAgentLoop::~FCVXAgentLoop()
{
	FCVXDelegationHistory::Get().Remove(LoopId);
	StopWork();
}

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

FCVXMessage FCVXAgentLoop::MakeOwnMessage(ECVXMessageRole Role) const
{
	FCVXMessage Message;
	Message.MessageId = FGuid::NewGuid().ToString(EGuidFormats::Digits);
	Message.Role = Role;
	Message.Timestamp = FDateTime::UtcNow();
	Message.AgentName = AgentProfile->ProfileName;
	return Message;
}

FCVXGuardContext FCVXAgentLoop::MakeGuardContext()
{
	FCVXGuardContext Guard{Guards, ContextManager, *AgentProfile, Turn.Calls, Turn.Results};
	// The manager keeps the task for as long as a step lasts.
	const TSharedPtr<FCVXTask> Task = FindOwnTask();
	Guard.TodoList = Task ? &Task->GetTodoList() : nullptr;
	Guard.bModelHasVision = bModelHasVision;
	Guard.SubAgentDepth = SubAgentDepth;
	Guard.TurnCount = TurnCount;
	Guard.MaxTurns = MaxTurns;
	return Guard;
}
