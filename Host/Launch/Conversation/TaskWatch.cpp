#include "Launch/Conversation/TaskWatch.h"

#include "Algo/AnyOf.h"
#include "HAL/PlatformTime.h"
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

bool IsToolState(ECVXTaskState State)
{
	return State == ECVXTaskState::ExecutingTool || State == ECVXTaskState::WaitingForSubAgent;
}
} // namespace

FTaskWatch::FTaskWatch(
	TSharedRef<FCVXTask> InTask, IConversationView& InView, const FKeyMask& InKeys, ITaskListener& InListener)
	: Task(MoveTemp(InTask))
	, View(InView)
	, Keys(InKeys)
	, Listener(InListener)
	, StateTime(FPlatformTime::Seconds())
{
	BindLoop();
}

FTaskWatch::~FTaskWatch()
{
	*Alive = false;
}

void FTaskWatch::BindLoop()
{
	const auto Guarded = [this](auto Call)
	{
		return [Alive = Alive, Call](const auto&... Arguments)
		{
			if (*Alive)
			{
				Call(Arguments...);
			}
		};
	};
	const auto Streamed = [this, Guarded](FStream& Stream)
	{
		return Guarded(
			[this, &Stream](const FString& Piece)
			{
				Listener.OnTaskSpeaks(*this);
				ShowPiece(Stream, Piece);
			});
	};
	const auto Spoken = [this, Guarded](auto Call)
	{
		return Guarded(
			[this, Call](const auto&... Arguments)
			{
				Listener.OnTaskSpeaks(*this);
				ShowHeld();
				Call(Arguments...);
			});
	};
	FCVXAgentLoop& Loop = GetLoop();
	Loop.OnTextDelta.AddLambda(Streamed(Text));
	Loop.OnReasoningDelta.AddLambda(Streamed(Reasoning));
	Loop.OnMessageComplete.AddLambda(Spoken([this](const FCVXMessage& Message) { OnMessage(Message); }));
	Loop.OnStateChanged.AddLambda(Guarded([this](ECVXTaskState State) { OnState(State); }));
	Loop.OnError.AddLambda(Spoken([this](const FString& Error) { Listener.OnTaskError(*this, Error); }));
	Loop.OnComplete.AddLambda(Guarded([this](const FString& Result) { Listener.OnTaskComplete(*this, Result); }));
	Loop.OnApprovalNeeded.AddLambda(Spoken([this](const FString& Id, const FCVXApprovalRequest& Request)
		{ Listener.OnTaskApproval(*this, Id, Request); }));
	Loop.OnClarificationNeeded.AddLambda(Spoken(
		[this](const FString&, const FCVXClarificationRequest& Request) { Listener.OnTaskQuestions(*this, Request); }));
	Task->GetTodoList().OnChanged.AddLambda(Spoken([this]() { View.ShowTodoList(Task->GetTodoList().GetItems()); }));
}

void FTaskWatch::ShowPiece(FStream& Stream, const FString& Piece)
{
	if (&Stream == &Text ? !Reasoning.Held.IsEmpty() : !Text.Held.IsEmpty())
	{
		ShowHeld();
	}
	const FString Shown = Keys.ApplyToPiece(Piece, Stream.Held);
	if (!Shown.IsEmpty())
	{
		(View.*Stream.Show)(Shown);
	}
}

void FTaskWatch::ShowHeld()
{
	for (FStream* Stream : {&Reasoning, &Text})
	{
		if (!Stream->Held.IsEmpty())
		{
			const FString Held = MoveTemp(Stream->Held);
			Stream->Held.Empty();
			Listener.OnTaskSpeaks(*this);
			(View.*Stream->Show)(Held);
		}
	}
}

void FTaskWatch::BeginRun()
{
	Calls.Empty();
	StateTime = FPlatformTime::Seconds();
}

void FTaskWatch::OnState(ECVXTaskState State)
{
	const double Now = FPlatformTime::Seconds();
	if (IsToolState(LastState))
	{
		ToolSeconds += Now - StateTime;
	}
	LastState = State;
	StateTime = Now;
	ShowHeld();
	Listener.OnTaskState(*this, State);
	if (State == ECVXTaskState::Streaming)
	{
		NoteRefusedCompletion();
	}
}

void FTaskWatch::NoteRefusedCompletion()
{
	if (Calls.ContainsByPredicate([](const FShownCall& Call) { return Call.Name == TEXT("attempt_completion"); }))
	{
		View.ShowNotice(TEXT("The result isn't accepted yet; the agent goes on."));
	}
}

void FTaskWatch::OnMessage(const FCVXMessage& Message)
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

void FTaskWatch::ShowCalls(const FCVXMessage& Message)
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

void FTaskWatch::ShowResults(const FCVXMessage& Message)
{
	const double Seconds = ToolSeconds + (IsToolState(LastState) ? FPlatformTime::Seconds() - StateTime : 0.0);
	for (const FCVXContentBlock& Block : Message.Content)
	{
		const FShownCall Call = FindCall(Block.ToolUseId);
		if (Block.Type == TEXT("tool_result") && (Block.bIsError || !HasOwnDisplay(Call.Name)))
		{
			View.ShowOutcome({Call, Block.ToolResultContent, Block.bIsError, Calls.Num() == 1 ? Seconds : -1.0});
		}
	}
}

FShownCall FTaskWatch::FindCall(const FString& ToolUseId) const
{
	const FShownCall* Call = Calls.FindByPredicate([&](const FShownCall& Each) { return Each.Id == ToolUseId; });
	return Call ? *Call : FShownCall{ToolUseId, {}, {}, {}};
}

FString FTaskWatch::DescribeActivity() const
{
	if (GetLoop().GetState() != ECVXTaskState::ExecutingTool || Calls.IsEmpty())
	{
		return ShownTexts::DescribeState(GetLoop().GetState());
	}
	const FString More = Calls.Num() > 1 ? FString::Printf(TEXT(" and %d more"), Calls.Num() - 1) : FString();
	return Calls[0].Label + More;
}
