#pragma once

#include "Agent/CVXTask.h"
#include "Launch/View/ConversationView.h"

/**
 * One conversation between a person, or a script, and an agent: shows what the agent does, and hands back what it asks
 * for. Game thread.
 */
class FConversation
{
public:
	/** How the last message of the user stands. */
	enum class EOutcome : uint8
	{
		None,
		Running,
		Complete,
		Failed,
		/** It waits for somebody. */
		NeedsPerson,
		Interrupted,
	};

	/** @param InView must outlive the conversation. @param bInAsk whether somebody is there to decide and to answer. */
	FConversation(TSharedRef<FCVXTask> InTask, IConversationView& InView, bool bInAsk);
	~FConversation();
	FConversation(const FConversation&) = delete;
	FConversation& operator=(const FConversation&) = delete;

	/** Begins a run. Only while none is running. */
	void Submit(const FString& Text);
	/** Ends the run; the next message goes on with the conversation. Does nothing without a run. */
	void Interrupt();
	/** Whether a decision or an answer is asked for. */
	bool IsAsking() const { return !Approvals.IsEmpty() || Questions.Questions.Num() > 0; }
	/** Takes the answer to what is asked for. */
	void Answer(const FString& Line);
	/** Some times a second: shows how time passes, and notices a run that has come to rest. */
	void Tick();

	EOutcome GetOutcome() const { return Outcome; }
	bool IsRunning() const { return Outcome == EOutcome::Running; }

private:
	struct FApproval
	{
		FString ToolUseId;
		FCVXApprovalRequest Request;
	};

	void BindLoop();
	void OnMessage(const FCVXMessage& Message);
	void OnState(ECVXTaskState State);
	/** Says that a completion didn't end the run. */
	void NoteRefusedCompletion();
	void OnApproval(const FString& ToolUseId, const FCVXApprovalRequest& Request);
	void OnClarification(const FCVXClarificationRequest& Request);
	void OnComplete(const FString& Result);
	void OnError(const FString& Error);
	void ShowCalls(const FCVXMessage& Message);
	void ShowResults(const FCVXMessage& Message);
	void AnswerApproval(const FString& Line);
	void AnswerQuestion(const FString& Line);
	void AskNextApproval();
	/** Ends the run with what it took. Later events of it change nothing. */
	void Finish(EOutcome NewOutcome);
	void StopForPerson(const FString& WaitedFor);
	FShownCall FindCall(const FString& ToolUseId) const;
	FString DescribeActivity() const;
	FCVXAgentLoop& GetLoop() const { return *Task->GetAgentLoop(); }

	TSharedRef<FCVXTask> Task;
	IConversationView& View;
	const bool bAsk;
	EOutcome Outcome = EOutcome::None;
	/** The calls of the present turn. */
	TArray<FShownCall> Calls;
	/** Those that wait for a decision; the first is asked about. */
	TArray<FApproval> Approvals;
	/** The questions that are open, and the answers so far. */
	FCVXClarificationRequest Questions;
	TArray<FString> Answers;
	FCVXTokenUsage UsageBefore;
	double StartTime = 0.0;
	double StateTime = 0.0;
	/** Seconds that tools have run in this turn, without the waits for a person. */
	double ToolSeconds = 0.0;
	ECVXTaskState LastState = ECVXTaskState::Idle;
	bool bRetrying = false;
	/** Listeners are told apart from those of an earlier conversation by it. */
	TSharedRef<bool> Alive = MakeShared<bool>(true);
};
