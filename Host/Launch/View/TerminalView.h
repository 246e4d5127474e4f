#pragma once

#include "Launch/Terminal/TerminalOut.h"
#include "Launch/View/ConversationView.h"

/** Shows a conversation to a person, or to a file in plain lines. Makes every text safe to show. */
class FTerminalView final : public IConversationView
{
public:
	/** @param InErrors takes what went wrong. Both must outlive the view. */
	FTerminalView(FTerminalOut& InOut, FTerminalOut& InErrors);

	void ShowNotice(const FString& Text) override;
	void ShowSpeaker(const FString& Agent, int32 Depth) override;
	void ShowText(const FString& Delta) override;
	void ShowReasoning(const FString& Delta) override;
	void ShowState(ECVXTaskState State) override;
	void ShowCall(const FShownCall& Call) override;
	void ShowOutcome(const FShownOutcome& Outcome) override;
	void ShowTodoList(const TArray<FCVXTodoItem>& Items) override;
	void ShowApproval(const FShownCall& Call, const FCVXApprovalRequest& Request, bool bAsk) override;
	void ShowMoreOfApproval() override;
	void ShowQuestion(const FCVXClarificationRequest& Request, int32 Index, bool bAsk) override;
	void ShowHint(const FString& Hint) override;
	void ShowRetry(double SecondsLeft) override;
	void ShowError(const FString& Text) override;
	void ShowResult(const FString& Text) override;
	void ShowUsage(const FShownUsage& Usage) override;
	void ShowNeedsPerson(const FString& WaitedFor) override;
	void ShowActivity(const FString& What, double Seconds) override;
	void ShowPrompt() override;

private:
	/** What the last piece of streamed output was, so that another kind begins a line of its own. */
	enum class EStream : uint8
	{
		None,
		Text,
		Reasoning,
	};

	void Stream(EStream Kind, const FString& Delta, ETerminalLook Look);
	void WriteError(const FString& Text);
	void WriteLine(const FString& Text, ETerminalLook Look = ETerminalLook::Plain);
	void WriteDiffPage(int32 MaxLines);
	void AskForApproval();

	FTerminalOut& Out;
	FTerminalOut& Errors;
	/** What each line of the present speaker begins with. */
	FString Indent;
	EStream Streamed = EStream::None;
	/** Of the change that is asked about: its lines, and the first that hasn't been shown. */
	TArray<FString> DiffLines;
	int32 NextDiffLine = 0;
	/** The wait that has been told of, where no status line shows it. */
	bool bRetryTold = false;
};
