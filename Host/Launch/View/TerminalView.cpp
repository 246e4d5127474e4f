#include "Launch/View/TerminalView.h"

#include "Launch/Terminal/SafeText.h"
#include "Launch/View/ShownTexts.h"

namespace
{
/** Of a page of a change, besides the change itself. */
constexpr int32 LinesAroundPage = 6;
/** What a sub-agent shows is indented so far for each level. */
constexpr int32 IndentChars = 2;
constexpr int32 MaxDepth = 8;

ETerminalLook LookOfDiffLine(const FString& Line)
{
	if (Line.StartsWith(TEXT("+++")) || Line.StartsWith(TEXT("---")))
	{
		return ETerminalLook::Bold;
	}
	if (Line.StartsWith(TEXT("@@")))
	{
		return ETerminalLook::Name;
	}
	return Line.StartsWith(TEXT("+")) ? ETerminalLook::Good
		: Line.StartsWith(TEXT("-"))  ? ETerminalLook::Bad
									  : ETerminalLook::Plain;
}

const TCHAR* GetTodoMark(ECVXTodoStatus Status)
{
	switch (Status)
	{
	case ECVXTodoStatus::InProgress:
		return TEXT("[>]");
	case ECVXTodoStatus::Completed:
		return TEXT("[x]");
	case ECVXTodoStatus::Cancelled:
		return TEXT("[-]");
	case ECVXTodoStatus::Pending:
		break;
	}
	return TEXT("[ ]");
}

FString Pretty(const FShownCall& Call)
{
	return MakeSafeText(Call.Label).Replace(TEXT("\n"), TEXT(" "));
}
} // namespace

FTerminalView::FTerminalView(FTerminalOut& InOut, FTerminalOut& InErrors)
	: Out(InOut)
	, Errors(InErrors)
{
}

void FTerminalView::WriteError(const FString& Text)
{
	Out.EndLine();
	Out.ClearStatus();
	Errors.WriteLine(MakeSafeText(Text), ETerminalLook::Bad);
	Streamed = EStream::None;
}

void FTerminalView::WriteLine(const FString& Text, ETerminalLook Look)
{
	Out.WriteLine(Indent + Text.Replace(TEXT("\n"), *(TEXT("\n") + Indent)), Look);
	Streamed = EStream::None;
}

void FTerminalView::Stream(EStream Kind, const FString& Delta, ETerminalLook Look)
{
	FString Text = MakeSafeText(Delta);
	if (Streamed != Kind)
	{
		Out.EndLine();
		Text = Indent + Text;
	}
	Streamed = Kind;
	Out.Write(Indent.IsEmpty() ? Text : Text.Replace(TEXT("\n"), *(TEXT("\n") + Indent)), Look);
}

void FTerminalView::ShowNotice(const FString& Text)
{
	WriteLine(MakeSafeText(Text), ETerminalLook::Dim);
}

void FTerminalView::ShowSpeaker(const FString& Agent, int32 Depth)
{
	Indent = FString::ChrN(FMath::Min(Depth, MaxDepth) * IndentChars, TEXT(' '));
	WriteLine(TEXT("[") + MakeSafeText(Agent) + TEXT("]"), ETerminalLook::Bold);
}

void FTerminalView::ShowText(const FString& Delta)
{
	Stream(EStream::Text, Delta, ETerminalLook::Plain);
}

void FTerminalView::ShowReasoning(const FString& Delta)
{
	Stream(EStream::Reasoning, Delta, ETerminalLook::Dim);
}

void FTerminalView::ShowState(ECVXTaskState State)
{
	const FString Text = ShownTexts::DescribeState(State);
	if (!Out.GetStyle().bCursor && !Text.IsEmpty())
	{
		WriteLine(TEXT("-- ") + Text, ETerminalLook::Dim);
	}
}

void FTerminalView::ShowCall(const FShownCall& Call)
{
	WriteLine(TEXT("* ") + Pretty(Call), ETerminalLook::Name);
}

void FTerminalView::ShowOutcome(const FShownOutcome& Outcome)
{
	const FString Time = Outcome.Seconds < 0.0 ? FString() : TEXT(", ") + ShownTexts::FormatSeconds(Outcome.Seconds);
	const FString Head = FString::Printf(
		TEXT("  %s %s%s: "), Outcome.bIsError ? TEXT("failed") : TEXT("done"), *MakeSafeText(Outcome.Call.Name), *Time);
	const int32 Room = FMath::Max(Out.GetStyle().Columns - Head.Len(), 40);
	WriteLine(Head + ShownTexts::SumUp(MakeSafeText(Outcome.Output), Room),
		Outcome.bIsError ? ETerminalLook::Bad : ETerminalLook::Dim);
}

void FTerminalView::ShowTodoList(const TArray<FCVXTodoItem>& Items)
{
	WriteLine(TEXT("Plan:"), ETerminalLook::Bold);
	for (const FCVXTodoItem& Item : Items)
	{
		const bool bOpen = FCVXTodoList::IsOpen(Item.Status);
		WriteLine(FString::Printf(TEXT("  %s %s"), GetTodoMark(Item.Status), *MakeSafeText(Item.Content)),
			Item.Status == ECVXTodoStatus::InProgress ? ETerminalLook::Asking
				: bOpen                               ? ETerminalLook::Plain
													  : ETerminalLook::Dim);
	}
}

void FTerminalView::ShowApproval(const FShownCall& Call, const FCVXApprovalRequest& Request, bool bAsk)
{
	WriteLine(TEXT("Approval needed: ") + Pretty(Call), ETerminalLook::Asking);
	WriteLine(TEXT("  ") + MakeSafeText(Request.Description));
	if (Request.bIsDestructive)
	{
		WriteLine(TEXT("  This can destroy work."), ETerminalLook::Bad);
	}
	DiffLines.Empty();
	NextDiffLine = 0;
	MakeSafeText(Request.DiffPreview).TrimEnd().ParseIntoArrayLines(DiffLines, false);
	WriteDiffPage(bAsk ? FMath::Max(Out.GetStyle().Rows - LinesAroundPage, LinesAroundPage) : DiffLines.Num());
	if (bAsk)
	{
		AskForApproval();
	}
}

void FTerminalView::ShowMoreOfApproval()
{
	WriteDiffPage(FMath::Max(Out.GetStyle().Rows - LinesAroundPage, LinesAroundPage));
	AskForApproval();
}

void FTerminalView::WriteDiffPage(int32 MaxLines)
{
	const int32 End = FMath::Min(DiffLines.Num(), NextDiffLine + MaxLines);
	for (; NextDiffLine < End; ++NextDiffLine)
	{
		WriteLine(DiffLines[NextDiffLine], LookOfDiffLine(DiffLines[NextDiffLine]));
	}
}

void FTerminalView::AskForApproval()
{
	const int32 Left = DiffLines.Num() - NextDiffLine;
	const FString More = Left > 0 ? FString::Printf(TEXT(", (m)ore: %d lines"), Left) : FString();
	Out.Write(FString::Printf(TEXT("Allow it? (y)es, (n)o, (a)lways, ne(v)er%s: "), *More), ETerminalLook::Asking);
}

void FTerminalView::ShowQuestion(const FCVXClarificationRequest& Request, int32 Index, bool bAsk)
{
	const FCVXClarificationQuestion& Question = Request.Questions[Index];
	const FString Count = Request.Questions.Num() > 1
		? FString::Printf(TEXT("Question %d of %d: "), Index + 1, Request.Questions.Num())
		: FString(TEXT("Question: "));
	WriteLine(Count + MakeSafeText(Question.Question), ETerminalLook::Asking);
	for (int32 Option = 0; Option < Question.Options.Num(); ++Option)
	{
		const FString Description = MakeSafeText(Question.Options[Option].Description);
		WriteLine(FString::Printf(TEXT("  %d. %s"), Option + 1, *MakeSafeText(Question.Options[Option].Title)) +
			(Description.IsEmpty() ? FString() : TEXT(" - ") + Description));
	}
	if (bAsk)
	{
		Out.Write(Question.Options.IsEmpty() ? TEXT("Your answer: ") : TEXT("A number, or your own words: "),
			ETerminalLook::Asking);
	}
}

void FTerminalView::ShowHint(const FString& Hint)
{
	Out.Write(Hint, ETerminalLook::Asking);
}

void FTerminalView::ShowRetry(double SecondsLeft)
{
	const int32 Whole = static_cast<int32>(SecondsLeft + 0.999);
	if (SecondsLeft <= 0.0)
	{
		bRetryTold = false;
		return;
	}
	if (Out.GetStyle().bCursor)
	{
		Out.EndLine();
		Out.SetStatus(FString::Printf(TEXT("The request failed; trying again in %d s"), Whole));
	}
	else if (!bRetryTold)
	{
		bRetryTold = true;
		WriteLine(FString::Printf(TEXT("-- the request failed; trying again in %d s"), Whole), ETerminalLook::Dim);
	}
}

void FTerminalView::ShowError(const FString& Text)
{
	WriteError(TEXT("corvexa: ") + Text);
}

void FTerminalView::ShowResult(const FString& Text)
{
	WriteLine(TEXT("\n== Result =="), ETerminalLook::Good);
	WriteLine(MakeSafeText(Text).TrimEnd());
}

void FTerminalView::ShowUsage(const FShownUsage& Usage)
{
	WriteLine(TEXT("-- ") + ShownTexts::DescribeUsage(Usage), ETerminalLook::Dim);
}

void FTerminalView::ShowNeedsPerson(const FString& WaitedFor)
{
	WriteError(TEXT("corvexa: this needs a person: ") + WaitedFor);
}

void FTerminalView::ShowActivity(const FString& What, double Seconds)
{
	const FString Safe = MakeSafeText(What).Replace(TEXT("\n"), TEXT(" "));
	Out.SetStatus(FString::Printf(TEXT("... %s, %s"), *Safe, *ShownTexts::FormatSeconds(Seconds)));
}

void FTerminalView::ShowPrompt()
{
	Indent.Empty();
	Out.EndLine();
	Out.Write(TEXT("\n> "), ETerminalLook::Bold);
	Streamed = EStream::None;
}
