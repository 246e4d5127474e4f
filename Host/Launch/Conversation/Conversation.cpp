#include "Launch/Conversation/Conversation.h"

#include "Algo/AnyOf.h"
#include "HAL/PlatformTime.h"
#include "Launch/Conversation/ApprovalAnswer.h"
#include "Launch/View/ShownTexts.h"
#include "Tools/CVXToolRegistry.h"

namespace
{
/** These show themselves: as the result, the questions, the plan. */
bool HasOwnDisplay(const FString& ToolName)
{
	static constexpr const TCHAR* Names[] = {
		TEXT("attempt_completion"), TEXT("ask_followup_question"), TEXT("update_todo_list")};
	return Algo::AnyOf(Names, [&](const TCHAR* Name) { return ToolName == Name; });
}

FCVXTokenUsage Since(const FCVXTokenUsage& Before, const FCVXTokenUsage& Now)
{
	FCVXTokenUsage Difference;
	Difference.InputTokens = Now.InputTokens - Before.InputTokens;
	Difference.OutputTokens = Now.OutputTokens - Before.OutputTokens;
	Difference.CacheRead = Now.CacheRead - Before.CacheRead;
	Difference.CacheWrite = Now.CacheWrite - Before.CacheWrite;
	return Difference;
}

/** A number stands for the option that it names; all else for itself. */
FString ToSelection(const FCVXClarificationQuestion& Question, const FString& Line)
{
	const FString Typed = Line.TrimStartAndEnd();
	const int32 Number = Typed.IsNumeric() ? FCString::Atoi(*Typed) : 0;
	return Question.Options.IsValidIndex(Number - 1) ? Question.Options[Number - 1].Title : Typed;
}
} // namespace

FConversation::FConversation(TSharedRef<FCVXTask> InTask, IConversationView& InView, bool bInAsk)
	: Task(MoveTemp(InTask))
	, View(InView)
	, bAsk(bInAsk)
{
	BindLoop();
}

FConversation::~FConversation()
{
	*Alive = false;
	Outcome = EOutcome::None;
	if (GetLoop().IsBusy())
	{
		GetLoop().Interrupt();
	}
}

void FConversation::BindLoop()
{
	// The loop outlives this, and may be told things afterwards.
	const auto Guarded = [this](auto Call)
	{
		return [this, Alive = Alive, Call](const auto&... Arguments)
		{
			if (*Alive)
			{
				Call(Arguments...);
			}
		};
	};
	FCVXAgentLoop& Loop = GetLoop();
	Loop.OnTextDelta.AddLambda(Guarded([this](const FString& Text) { View.ShowText(Text); }));
	Loop.OnReasoningDelta.AddLambda(Guarded([this](const FString& Text) { View.ShowReasoning(Text); }));
	Loop.OnMessageComplete.AddLambda(Guarded([this](const FCVXMessage& Message) { OnMessage(Message); }));
	Loop.OnStateChanged.AddLambda(Guarded([this](ECVXTaskState State) { OnState(State); }));
	Loop.OnError.AddLambda(Guarded([this](const FString& Error) { OnError(Error); }));
	Loop.OnComplete.AddLambda(Guarded([this](const FString& Result) { OnComplete(Result); }));
	Loop.OnApprovalNeeded.AddLambda(
		Guarded([this](const FString& Id, const FCVXApprovalRequest& Request) { OnApproval(Id, Request); }));
	Loop.OnClarificationNeeded.AddLambda(
		Guarded([this](const FString&, const FCVXClarificationRequest& Request) { OnClarification(Request); }));
	Task->GetTodoList().OnChanged.AddLambda(Guarded([this]() { View.ShowTodoList(Task->GetTodoList().GetItems()); }));
}

void FConversation::Submit(const FString& Text)
{
	check(!IsRunning());
	Outcome = EOutcome::Running;
	Calls.Empty();
	UsageBefore = GetLoop().GetTotalUsage();
	StartTime = FPlatformTime::Seconds();
	StateTime = StartTime;
	Questions = FCVXClarificationRequest();
	GetLoop().SubmitUserMessage(Text);
}

void FConversation::Interrupt()
{
	if (IsRunning())
	{
		// Ended first, so that the loop's way to rest isn't taken for a question.
		Finish(EOutcome::Interrupted);
		GetLoop().Interrupt();
	}
}

void FConversation::OnState(ECVXTaskState State)
{
	const double Now = FPlatformTime::Seconds();
	if (LastState == ECVXTaskState::ExecutingTool)
	{
		ToolSeconds += Now - StateTime;
	}
	if (State != ECVXTaskState::WaitingApproval)
	{
		Approvals.Empty();
	}
	LastState = State;
	StateTime = Now;
	View.ShowState(State);
	if (State == ECVXTaskState::Streaming)
	{
		NoteRefusedCompletion();
	}
	if (State == ECVXTaskState::Cancelled && IsRunning())
	{
		View.ShowError(TEXT("The connection to the model failed too often; the log tells more."));
		Finish(EOutcome::Failed);
	}
}

void FConversation::NoteRefusedCompletion()
{
	if (Calls.ContainsByPredicate([](const FShownCall& Call) { return Call.Name == TEXT("attempt_completion"); }))
	{
		View.ShowNotice(TEXT("The result isn't accepted yet; the agent goes on."));
	}
}

void FConversation::OnMessage(const FCVXMessage& Message)
{
	if (Message.Role == ECVXMessageRole::Assistant)
	{
		ShowCalls(Message);
	}
	else if (Message.Role == ECVXMessageRole::Tool)
	{
		ShowResults(Message);
	}
}

void FConversation::ShowCalls(const FCVXMessage& Message)
{
	Calls.Empty();
	ToolSeconds = 0.0;
	for (const FCVXContentBlock& Block : Message.Content)
	{
		if (Block.Type != TEXT("tool_use"))
		{
			continue;
		}
		const FString Label = FCVXToolRegistry::Get().GetToolDisplayLabel(Block.ToolName, Block.InputJson);
		const FShownCall& Call = Calls.Add_GetRef({Block.ToolUseId, Block.ToolName, Label, Block.InputJson});
		if (!HasOwnDisplay(Call.Name))
		{
			View.ShowCall(Call);
		}
	}
}

void FConversation::ShowResults(const FCVXMessage& Message)
{
	const double Seconds =
		ToolSeconds + (LastState == ECVXTaskState::ExecutingTool ? FPlatformTime::Seconds() - StateTime : 0.0);
	for (const FCVXContentBlock& Block : Message.Content)
	{
		const FShownCall Call = FindCall(Block.ToolUseId);
		if (Block.Type == TEXT("tool_result") && (Block.bIsError || !HasOwnDisplay(Call.Name)))
		{
			View.ShowOutcome({Call, Block.ToolResultContent, Block.bIsError, Calls.Num() == 1 ? Seconds : -1.0});
		}
	}
}

FShownCall FConversation::FindCall(const FString& ToolUseId) const
{
	const FShownCall* Call = Calls.FindByPredicate([&](const FShownCall& Each) { return Each.Id == ToolUseId; });
	return Call ? *Call : FShownCall{ToolUseId, {}, {}, {}};
}

// ---------------------------------------------------------------------------------------------------------------------
// What the agent asks for.

void FConversation::OnApproval(const FString& ToolUseId, const FCVXApprovalRequest& Request)
{
	Approvals.Add({ToolUseId, Request});
	if (!bAsk)
	{
		View.ShowApproval(FindCall(ToolUseId), Request, false);
		StopForPerson(FString::Printf(TEXT("approval of %s: %s"), *Request.ToolName, *Request.Description));
		return;
	}
	if (Approvals.Num() == 1)
	{
		AskNextApproval();
	}
}

void FConversation::AskNextApproval()
{
	View.ShowApproval(FindCall(Approvals[0].ToolUseId), Approvals[0].Request, true);
}

void FConversation::OnClarification(const FCVXClarificationRequest& Request)
{
	Questions = Request;
	Answers.Empty();
	View.ShowQuestion(Questions, 0, bAsk);
	if (!bAsk)
	{
		StopForPerson(FString::Printf(TEXT("an answer to: %s"), *Request.Questions[0].Question));
	}
}

void FConversation::Answer(const FString& Line)
{
	if (!Approvals.IsEmpty())
	{
		AnswerApproval(Line);
	}
	else if (Questions.Questions.Num() > 0)
	{
		AnswerQuestion(Line);
	}
}

void FConversation::AnswerApproval(const FString& Line)
{
	const FApprovalAnswer Typed = FApprovalAnswer::Parse(Line);
	if (Typed.Kind == FApprovalAnswer::EKind::More)
	{
		View.ShowMoreOfApproval();
		return;
	}
	if (Typed.Kind == FApprovalAnswer::EKind::Unclear)
	{
		View.ShowHint(TEXT("Please type y, n, a or v: "));
		return;
	}
	const FString ToolUseId = Approvals[0].ToolUseId;
	Approvals.RemoveAt(0);
	GetLoop().ResolveApproval(ToolUseId, Typed.Decision, Typed.bRemember);
	if (!Approvals.IsEmpty())
	{
		AskNextApproval();
	}
}

void FConversation::AnswerQuestion(const FString& Line)
{
	if (Line.TrimStartAndEnd().IsEmpty())
	{
		View.ShowHint(TEXT("Please type an answer: "));
		return;
	}
	Answers.Add(ToSelection(Questions.Questions[Answers.Num()], Line));
	if (Answers.Num() < Questions.Questions.Num())
	{
		View.ShowQuestion(Questions, Answers.Num(), true);
		return;
	}
	const FString ToolUseId = Questions.ToolUseId;
	Questions = FCVXClarificationRequest();
	GetLoop().ResolveClarification(ToolUseId, Answers);
}

// ---------------------------------------------------------------------------------------------------------------------
// The end of a run.

void FConversation::OnComplete(const FString& Result)
{
	if (IsRunning())
	{
		View.ShowResult(Result);
		Finish(EOutcome::Complete);
	}
}

void FConversation::OnError(const FString& Error)
{
	if (IsRunning())
	{
		View.ShowError(Error);
		Finish(EOutcome::Failed);
	}
}

void FConversation::StopForPerson(const FString& WaitedFor)
{
	if (IsRunning())
	{
		View.ShowNeedsPerson(WaitedFor);
		Finish(EOutcome::NeedsPerson);
	}
}

void FConversation::Finish(EOutcome NewOutcome)
{
	Outcome = NewOutcome;
	Approvals.Empty();
	Questions = FCVXClarificationRequest();
	View.ShowUsage({Since(UsageBefore, GetLoop().GetTotalUsage()), FPlatformTime::Seconds() - StartTime});
}

void FConversation::Tick()
{
	if (!IsRunning())
	{
		return;
	}
	const double Now = FPlatformTime::Seconds();
	const double RetryTime = GetLoop().GetRetryTime();
	if (RetryTime > 0.0 || bRetrying)
	{
		bRetrying = RetryTime > 0.0;
		View.ShowRetry(bRetrying ? FMath::Max(RetryTime - Now, 0.001) : 0.0);
		return;
	}
	if (GetLoop().GetState() == ECVXTaskState::Idle)
	{
		if (!bAsk)
		{
			View.ShowNeedsPerson(TEXT("an answer to the model's question"));
		}
		Finish(EOutcome::NeedsPerson);
		return;
	}
	if (!IsAsking())
	{
		View.ShowActivity(DescribeActivity(), Now - StateTime);
	}
}

FString FConversation::DescribeActivity() const
{
	if (GetLoop().GetState() != ECVXTaskState::ExecutingTool || Calls.IsEmpty())
	{
		return ShownTexts::DescribeState(GetLoop().GetState());
	}
	const FString More = Calls.Num() > 1 ? FString::Printf(TEXT(" and %d more"), Calls.Num() - 1) : FString();
	return Calls[0].Label + More;
}
