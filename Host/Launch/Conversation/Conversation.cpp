#include "Launch/Conversation/Conversation.h"

#include "Agent/Tasks/CVXTaskManager.h"
#include "HAL/PlatformTime.h"
#include "Launch/Conversation/ApprovalAnswer.h"

namespace
{
void Add(FCVXTokenUsage& Sum, const FCVXTokenUsage& Usage, int32 Sign)
{
	Sum.InputTokens += Sign * Usage.InputTokens;
	Sum.OutputTokens += Sign * Usage.OutputTokens;
	Sum.CacheRead += Sign * Usage.CacheRead;
	Sum.CacheWrite += Sign * Usage.CacheWrite;
}

/** A number stands for the option that it names; all else for itself. */
FString ToSelection(const FCVXClarificationQuestion& Question, const FString& Line)
{
	const FString Typed = Line.TrimStartAndEnd();
	const int32 Number = Typed.IsNumeric() ? FCString::Atoi(*Typed) : 0;
	return Question.Options.IsValidIndex(Number - 1) ? Question.Options[Number - 1].Title : Typed;
}
} // namespace

FConversation::FConversation(
	const TSharedRef<FCVXTask>& Task, IConversationView& InView, const FKeyMask& InKeys, bool bInAsk)
	: View(InView)
	, Keys(InKeys)
	, bAsk(bInAsk)
{
	Watches.Add(MakeUnique<FTaskWatch>(Task, View, Keys, *this));
	Speaker = Watches[0].Get();
	FCVXTaskManager::Get().OnTaskCreated.AddLambda(
		[this, Alive = Alive](const TSharedPtr<FCVXTask>& Created)
		{
			if (*Alive)
			{
				AddSubTask(Created);
			}
		});
}

FConversation::~FConversation()
{
	*Alive = false;
	Outcome = EOutcome::None;
	StopLoops();
}

void FConversation::AddSubTask(const TSharedPtr<FCVXTask>& Task)
{
	const bool bOurs = Task && Task->bIsSubTask &&
		Watches.ContainsByPredicate(
			[&](const TUniquePtr<FTaskWatch>& Each) { return Each->GetTask().GetTaskId() == Task->ParentTaskId; });
	if (bOurs && IsRunning())
	{
		Watches.Add(MakeUnique<FTaskWatch>(Task.ToSharedRef(), View, Keys, *this));
	}
}

void FConversation::Submit(const FString& Text)
{
	check(!IsRunning());
	Outcome = EOutcome::Running;
	// Sub-agents belong to a run.
	Watches.SetNum(1);
	Speaker = Watches[0].Get();
	UsageBefore = SumUsage();
	StartTime = FPlatformTime::Seconds();
	Watches[0]->BeginRun();
	Watches[0]->GetLoop().SubmitUserMessage(Text);
}

void FConversation::Interrupt()
{
	if (IsRunning())
	{
		// Ended first, so that the loop's way to rest isn't taken for a question.
		Finish(EOutcome::Interrupted);
		StopLoops();
	}
}

void FConversation::StopLoops()
{
	// The parent first: it then waits for nobody.
	for (const TUniquePtr<FTaskWatch>& Watch : Watches)
	{
		if (Watch->GetLoop().IsBusy() || Watch->GetLoop().GetRetryTime() > 0.0 ||
			Watch->GetLoop().GetState() == ECVXTaskState::WaitingClarification)
		{
			Watch->GetLoop().Interrupt();
		}
	}
}

void FConversation::OnTaskSpeaks(FTaskWatch& Watch)
{
	if (Speaker != &Watch)
	{
		Speaker = &Watch;
		View.ShowSpeaker(Watch.GetTask().GetAgentProfileName(), Watch.GetTask().NestingDepth);
	}
}

void FConversation::OnTaskState(FTaskWatch& Watch, ECVXTaskState State)
{
	if (State != ECVXTaskState::WaitingApproval)
	{
		Approvals.RemoveAll([&](const FApproval& Each) { return Each.Watch == &Watch; });
	}
	// A sub-agent that has come to its end has told so by its result.
	const bool bAtRest = State == ECVXTaskState::Complete || State == ECVXTaskState::Idle;
	if (!IsRunning() || (bAtRest && !IsMain(Watch)))
	{
		return;
	}
	OnTaskSpeaks(Watch);
	View.ShowState(State);
	if (IsMain(Watch) && State == ECVXTaskState::Cancelled)
	{
		View.ShowError(TEXT("The connection to the model failed too often; the log tells more."));
		Finish(EOutcome::Failed);
	}
}

// ---------------------------------------------------------------------------------------------------------------------
// What the agents ask for.

void FConversation::OnTaskApproval(FTaskWatch& Watch, const FString& ToolUseId, const FCVXApprovalRequest& Request)
{
	if (!bAsk)
	{
		View.ShowApproval(Watch.FindCall(ToolUseId), Request, false);
		StopForPerson(FString::Printf(TEXT("approval of %s: %s"), *Request.ToolName, *Request.Description));
		return;
	}
	const bool bFirst = !IsAsking();
	Approvals.Add({&Watch, ToolUseId, Request});
	if (bFirst)
	{
		AskNext();
	}
}

void FConversation::OnTaskQuestions(FTaskWatch& Watch, const FCVXClarificationRequest& Request)
{
	if (!bAsk)
	{
		View.ShowQuestion(Request, 0, false);
		StopForPerson(FString::Printf(TEXT("an answer to: %s"), *Request.Questions[0].Question));
		return;
	}
	const bool bFirst = !IsAsking();
	Questions.Add({&Watch, Request});
	if (bFirst)
	{
		AskNext();
	}
}

void FConversation::AskNext()
{
	if (IsAsking() && BeforeAsking)
	{
		BeforeAsking();
	}
	if (!Approvals.IsEmpty())
	{
		View.ShowApproval(Approvals[0].Watch->FindCall(Approvals[0].ToolUseId), Approvals[0].Request, true);
	}
	else if (!Questions.IsEmpty())
	{
		View.ShowQuestion(Questions[0].Request, Answers.Num(), true);
	}
}

void FConversation::Answer(const FString& Line)
{
	if (!Approvals.IsEmpty())
	{
		AnswerApproval(Line);
	}
	else if (!Questions.IsEmpty())
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
	const FApproval Decided = Approvals[0];
	const int32 Waiting = Approvals.Num();
	Approvals.RemoveAt(0);
	Decided.Watch->GetLoop().ResolveApproval(Decided.ToolUseId, Typed.Decision, Typed.bRemember);
	// Otherwise the run has moved on, and has asked for what it needs by itself.
	if (Waiting > 1 && Approvals.Num() == Waiting - 1)
	{
		AskNext();
	}
}

void FConversation::AnswerQuestion(const FString& Line)
{
	if (Line.TrimStartAndEnd().IsEmpty())
	{
		View.ShowHint(TEXT("Please type an answer: "));
		return;
	}
	const FQuestions Asked = Questions[0];
	Answers.Add(ToSelection(Asked.Request.Questions[Answers.Num()], Line));
	if (Answers.Num() < Asked.Request.Questions.Num())
	{
		AskNext();
		return;
	}
	const TArray<FString> Given = MoveTemp(Answers);
	Answers.Empty();
	Questions.RemoveAt(0);
	Asked.Watch->GetLoop().ResolveClarification(Asked.Request.ToolUseId, Given);
}

// ---------------------------------------------------------------------------------------------------------------------
// The end of a run.

void FConversation::OnTaskComplete(FTaskWatch& Watch, const FString& Result)
{
	if (IsRunning() && IsMain(Watch))
	{
		OnTaskSpeaks(Watch);
		View.ShowResult(Result);
		Finish(EOutcome::Complete);
	}
}

void FConversation::OnTaskError(FTaskWatch& Watch, const FString& Error)
{
	if (IsRunning())
	{
		View.ShowError(Error);
	}
	if (IsRunning() && IsMain(Watch))
	{
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
	Questions.Empty();
	Answers.Empty();
	FCVXTokenUsage Used = SumUsage();
	Add(Used, UsageBefore, -1);
	View.ShowUsage({Used, FPlatformTime::Seconds() - StartTime});
}

FCVXTokenUsage FConversation::SumUsage() const
{
	FCVXTokenUsage Sum;
	for (const TUniquePtr<FTaskWatch>& Watch : Watches)
	{
		Add(Sum, Watch->GetLoop().GetTotalUsage(), 1);
	}
	return Sum;
}

FTaskWatch& FConversation::GetWorking() const
{
	for (int32 Index = Watches.Num() - 1; Index > 0; --Index)
	{
		if (Watches[Index]->GetLoop().IsBusy() || Watches[Index]->GetLoop().GetRetryTime() > 0.0)
		{
			return *Watches[Index];
		}
	}
	return *Watches[0];
}

void FConversation::Tick()
{
	if (!IsRunning() || TickRetry())
	{
		return;
	}
	const FTaskWatch& Working = GetWorking();
	if (Working.GetLoop().GetState() == ECVXTaskState::Idle)
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
		View.ShowActivity(Working.DescribeActivity(), FPlatformTime::Seconds() - Working.GetStateTime());
	}
}

bool FConversation::TickRetry()
{
	const double RetryTime = GetWorking().GetLoop().GetRetryTime();
	if (RetryTime <= 0.0 && !bRetrying)
	{
		return false;
	}
	bRetrying = RetryTime > 0.0;
	View.ShowRetry(bRetrying ? FMath::Max(RetryTime - FPlatformTime::Seconds(), 0.001) : 0.0);
	return bRetrying;
}
