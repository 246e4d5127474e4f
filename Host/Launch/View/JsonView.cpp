#include "Launch/View/JsonView.h"

#include "Policies/CondensedJsonPrintPolicy.h"
#include "Serialization/JsonSerializer.h"

namespace
{
using FWriter = TJsonWriter<TCHAR, TCondensedJsonPrintPolicy<TCHAR>>;

FJsonObject MakeEvent(const TCHAR* Kind)
{
	FJsonObject Event;
	Event.SetStringField(TEXT("event"), Kind);
	return Event;
}

/** JSON lets these pass as they are; a terminal that shows the line must not. */
FString EscapeDeleteAndC1(const FString& Line)
{
	FString Escaped;
	Escaped.Reserve(Line.Len());
	for (const TCHAR Char : Line)
	{
		if (Char >= 0x7F && Char < 0xA0)
		{
			Escaped += FString::Printf(TEXT("\\u%04x"), static_cast<uint32>(Char));
		}
		else
		{
			Escaped += Char;
		}
	}
	return Escaped;
}

const TCHAR* GetStateName(ECVXTaskState State)
{
	static constexpr const TCHAR* Names[] = {TEXT("idle"), TEXT("streaming"), TEXT("waiting_approval"),
		TEXT("waiting_for_sub_agent"), TEXT("waiting_clarification"), TEXT("executing_tool"), TEXT("complete"),
		TEXT("error"), TEXT("cancelled")};
	return Names[static_cast<int32>(State)];
}

TSharedPtr<FJsonValue> MakeText(const FString& Text)
{
	return MakeShared<FJsonValueString>(Text);
}
} // namespace

FJsonView::FJsonView(TFunction<void(const FString&)> InSink)
	: Sink(MoveTemp(InSink))
{
}

void FJsonView::Emit(const FJsonObject& Event)
{
	FString Line;
	FWriter Writer(Line);
	verify(FJsonSerializer::Serialize(Event, Writer));
	Sink(EscapeDeleteAndC1(Line) + TEXT("\n"));
}

void FJsonView::EmitText(const TCHAR* Kind, const FString& Text)
{
	FJsonObject Event = MakeEvent(Kind);
	Event.SetStringField(TEXT("text"), Text);
	Emit(Event);
}

void FJsonView::ShowNotice(const FString& Text)
{
	EmitText(TEXT("notice"), Text);
}

void FJsonView::ShowSpeaker(const FString& Agent, int32 Depth)
{
	FJsonObject Event = MakeEvent(TEXT("agent"));
	Event.SetStringField(TEXT("name"), Agent);
	Event.SetNumberField(TEXT("depth"), Depth);
	Emit(Event);
}

void FJsonView::ShowText(const FString& Delta)
{
	EmitText(TEXT("text"), Delta);
}

void FJsonView::ShowReasoning(const FString& Delta)
{
	EmitText(TEXT("reasoning"), Delta);
}

void FJsonView::ShowState(ECVXTaskState State)
{
	FJsonObject Event = MakeEvent(TEXT("state"));
	Event.SetStringField(TEXT("state"), GetStateName(State));
	Emit(Event);
}

void FJsonView::ShowCall(const FShownCall& Call)
{
	FJsonObject Event = MakeEvent(TEXT("tool_call"));
	Event.SetStringField(TEXT("id"), Call.Id);
	Event.SetStringField(TEXT("name"), Call.Name);
	Event.SetStringField(TEXT("label"), Call.Label);
	Event.SetStringField(TEXT("arguments"), Call.Arguments);
	Emit(Event);
}

void FJsonView::ShowOutcome(const FShownOutcome& Outcome)
{
	FJsonObject Event = MakeEvent(TEXT("tool_result"));
	Event.SetStringField(TEXT("id"), Outcome.Call.Id);
	Event.SetStringField(TEXT("name"), Outcome.Call.Name);
	Event.SetBoolField(TEXT("is_error"), Outcome.bIsError);
	Event.SetStringField(TEXT("output"), Outcome.Output);
	if (Outcome.Seconds >= 0.0)
	{
		Event.SetNumberField(TEXT("seconds"), Outcome.Seconds);
	}
	Emit(Event);
}

void FJsonView::ShowTodoList(const TArray<FCVXTodoItem>& Items)
{
	TArray<TSharedPtr<FJsonValue>> Values;
	for (const FCVXTodoItem& Item : Items)
	{
		const TSharedRef<FJsonObject> Value = MakeShared<FJsonObject>();
		Value->SetStringField(TEXT("id"), Item.Id);
		Value->SetStringField(TEXT("content"), Item.Content);
		Value->SetStringField(TEXT("status"), FCVXTodoList::StatusToString(Item.Status));
		Values.Add(MakeShared<FJsonValueObject>(Value));
	}
	FJsonObject Event = MakeEvent(TEXT("todo_list"));
	Event.SetArrayField(TEXT("items"), Values);
	Emit(Event);
}

void FJsonView::ShowApproval(const FShownCall& Call, const FCVXApprovalRequest& Request, bool bAsk)
{
	FJsonObject Event = MakeEvent(TEXT("approval_needed"));
	Event.SetStringField(TEXT("id"), Call.Id);
	Event.SetStringField(TEXT("name"), Call.Name);
	Event.SetStringField(TEXT("description"), Request.Description);
	Event.SetStringField(TEXT("path"), Request.FilePath);
	Event.SetStringField(TEXT("diff"), Request.DiffPreview);
	Event.SetBoolField(TEXT("is_destructive"), Request.bIsDestructive);
	Event.SetBoolField(TEXT("answer_expected"), bAsk);
	Emit(Event);
}

void FJsonView::ShowQuestion(const FCVXClarificationRequest& Request, int32 Index, bool bAsk)
{
	const FCVXClarificationQuestion& Question = Request.Questions[Index];
	TArray<TSharedPtr<FJsonValue>> Options;
	for (const FCVXClarificationOption& Option : Question.Options)
	{
		const TSharedRef<FJsonObject> Value = MakeShared<FJsonObject>();
		Value->SetField(TEXT("title"), MakeText(Option.Title));
		Value->SetField(TEXT("description"), MakeText(Option.Description));
		Options.Add(MakeShared<FJsonValueObject>(Value));
	}
	FJsonObject Event = MakeEvent(TEXT("question"));
	Event.SetStringField(TEXT("id"), Request.ToolUseId);
	Event.SetStringField(TEXT("question"), Question.Question);
	Event.SetArrayField(TEXT("options"), Options);
	Event.SetBoolField(TEXT("answer_expected"), bAsk);
	Emit(Event);
}

void FJsonView::ShowHint(const FString& Hint)
{
	EmitText(TEXT("hint"), Hint);
}

void FJsonView::ShowRetry(double SecondsLeft)
{
	if (SecondsLeft > 0.0 && !bRetryTold)
	{
		FJsonObject Event = MakeEvent(TEXT("retry"));
		Event.SetNumberField(TEXT("seconds"), SecondsLeft);
		Emit(Event);
	}
	bRetryTold = SecondsLeft > 0.0;
}

void FJsonView::ShowError(const FString& Text)
{
	EmitText(TEXT("error"), Text);
}

void FJsonView::ShowResult(const FString& Text)
{
	EmitText(TEXT("result"), Text);
}

void FJsonView::ShowUsage(const FShownUsage& Usage)
{
	FJsonObject Event = MakeEvent(TEXT("usage"));
	Event.SetNumberField(TEXT("input_tokens"), Usage.Tokens.InputTokens);
	Event.SetNumberField(TEXT("output_tokens"), Usage.Tokens.OutputTokens);
	Event.SetNumberField(TEXT("cache_read"), Usage.Tokens.CacheRead);
	Event.SetNumberField(TEXT("cache_write"), Usage.Tokens.CacheWrite);
	Event.SetNumberField(TEXT("seconds"), Usage.Seconds);
	Emit(Event);
}

void FJsonView::ShowNeedsPerson(const FString& WaitedFor)
{
	EmitText(TEXT("needs_person"), WaitedFor);
}

void FJsonView::ShowPrompt()
{
	Emit(MakeEvent(TEXT("prompt")));
}
