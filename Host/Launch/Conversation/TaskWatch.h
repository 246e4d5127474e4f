#pragma once

#include "Agent/Tasks/CVXTask.h"
#include "Launch/Terminal/KeyMask.h"
#include "Launch/View/ConversationView.h"

class FTaskWatch;

/** What a watched task needs of whoever leads the conversation. Game thread. */
class ITaskListener
{
public:
	virtual ~ITaskListener() = default;

	virtual void OnTaskState(FTaskWatch& Watch, ECVXTaskState State) = 0;
	virtual void OnTaskApproval(FTaskWatch& Watch, const FString& ToolUseId, const FCVXApprovalRequest& Request) = 0;
	virtual void OnTaskQuestions(FTaskWatch& Watch, const FCVXClarificationRequest& Request) = 0;
	virtual void OnTaskComplete(FTaskWatch& Watch, const FString& Result) = 0;
	virtual void OnTaskError(FTaskWatch& Watch, const FString& Error) = 0;
	/** Called ahead of all that the task shows. */
	virtual void OnTaskSpeaks(FTaskWatch& Watch) = 0;
};

/** Shows what one task does as long as the watch lives, and tells a listener what the task waits for. Game thread. */
class FTaskWatch
{
public:
	/** View, keys and listener must outlive the watch. */
	FTaskWatch(
		TSharedRef<FCVXTask> InTask, IConversationView& InView, const FKeyMask& InKeys, ITaskListener& InListener);
	~FTaskWatch();
	FTaskWatch(const FTaskWatch&) = delete;
	FTaskWatch& operator=(const FTaskWatch&) = delete;

	FCVXTask& GetTask() const { return *Task; }
	FCVXAgentLoop& GetLoop() const { return *Task->GetAgentLoop(); }

	/** A new message of the user follows: earlier calls are over. */
	void BeginRun();
	/** A call of the present turn, as it is shown. */
	FShownCall FindCall(const FString& ToolUseId) const;
	/** What goes on, in words, and since when in `FPlatformTime::Seconds`. */
	FString DescribeActivity() const;
	double GetStateTime() const { return StateTime; }

private:
	/** A stream of the model's words, and what of it may yet turn out to be a key. */
	struct FStream
	{
		void (IConversationView::*Show)(const FString&);
		FString Held;
	};

	void BindLoop();
	void ShowPiece(FStream& Stream, const FString& Piece);
	/** Shows what streams have kept back; called ahead of all else that is shown. */
	void ShowHeld();
	void OnMessage(const FCVXMessage& Message);
	void OnState(ECVXTaskState State);
	/** Says that a completion didn't end the run. */
	void NoteRefusedCompletion();
	void ShowCalls(const FCVXMessage& Message);
	void ShowResults(const FCVXMessage& Message);

	TSharedRef<FCVXTask> Task;
	IConversationView& View;
	const FKeyMask& Keys;
	ITaskListener& Listener;
	FStream Text{&IConversationView::ShowText, {}};
	FStream Reasoning{&IConversationView::ShowReasoning, {}};
	/** The calls of the present turn. */
	TArray<FShownCall> Calls;
	double StateTime = 0.0;
	/** Seconds that tools have run in this turn, without the waits for a person. */
	double ToolSeconds = 0.0;
	ECVXTaskState LastState = ECVXTaskState::Idle;
	/** False once the watch is gone; the loop lives on, and may speak. */
	TSharedRef<bool> Alive = MakeShared<bool>(true);
};
