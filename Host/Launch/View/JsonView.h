#pragma once

#include "Launch/View/ConversationView.h"
#include "Templates/Function.h"

class FJsonObject;

/** Shows a conversation to a program: an event a line, a JSON object with its kind in "event". */
class FJsonView final : public IConversationView
{
public:
	/** @param InSink takes each line with its end. */
	explicit FJsonView(TFunction<void(const FString&)> InSink);

	void ShowNotice(const FString& Text) override;
	void ShowSpeaker(const FString& Agent, int32 Depth) override;
	void ShowText(const FString& Delta) override;
	void ShowReasoning(const FString& Delta) override;
	void ShowState(ECVXTaskState State) override;
	void ShowCall(const FShownCall& Call) override;
	void ShowOutcome(const FShownOutcome& Outcome) override;
	void ShowTodoList(const TArray<FCVXTodoItem>& Items) override;
	void ShowApproval(const FShownCall& Call, const FCVXApprovalRequest& Request, bool bAsk) override;
	void ShowMoreOfApproval() override {}
	void ShowQuestion(const FCVXClarificationRequest& Request, int32 Index, bool bAsk) override;
	void ShowHint(const FString& Hint) override;
	void ShowRetry(double SecondsLeft) override;
	void ShowError(const FString& Text) override;
	void ShowResult(const FString& Text) override;
	void ShowUsage(const FShownUsage& Usage) override;
	void ShowNeedsPerson(const FString& WaitedFor) override;
	void ShowActivity(const FString&, double) override {}
	void ShowPrompt() override;

private:
	void Emit(const FJsonObject& Event);
	void EmitText(const TCHAR* Kind, const FString& Text);

	TFunction<void(const FString&)> Sink;
	bool bRetryTold = false;
};
