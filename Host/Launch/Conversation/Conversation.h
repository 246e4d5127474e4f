#pragma once

#include "Launch/Conversation/TaskWatch.h"
#include "Templates/UniquePtr.h"

/**
 * One conversation between a person, or a script, and an agent: shows what the agent and its sub-agents do, and hands
 * back what they ask for. Game thread.
 */
class FConversation final : public ITaskListener
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

	/** The view and the keys that it hides must outlive the conversation. @param bInAsk whether somebody is there to
	 * decide and to answer. */
	FConversation(const TSharedRef<FCVXTask>& Task, IConversationView& InView, const FKeyMask& InKeys, bool bInAsk);
	~FConversation() override;
	FConversation(const FConversation&) = delete;
	FConversation& operator=(const FConversation&) = delete;

	/** Begins a run. Only while none is running. */
	void Submit(const FString& Text);
	/** Ends the run; the next message goes on with the conversation. Does nothing without a run. */
	void Interrupt();
	/** Whether a decision or an answer is asked for. */
	bool IsAsking() const { return !Approvals.IsEmpty() || !Questions.IsEmpty(); }
	/** @param Call runs ahead of each question and each approval that is asked for. */
	void SetBeforeAsking(TFunction<void()> Call) { BeforeAsking = MoveTemp(Call); }
	/** Takes the answer to what is asked for. */
	void Answer(const FString& Line);
	/** Some times a second: shows how time passes, and notices a run that has come to rest. */
	void Tick();

	EOutcome GetOutcome() const { return Outcome; }
	bool IsRunning() const { return Outcome == EOutcome::Running; }

private:
	struct FApproval
	{
		FTaskWatch* Watch;
		FString ToolUseId;
		FCVXApprovalRequest Request;
	};
	struct FQuestions
	{
		FTaskWatch* Watch;
		FCVXClarificationRequest Request;
	};

	void OnTaskState(FTaskWatch& Watch, ECVXTaskState State) override;
	void OnTaskApproval(FTaskWatch& Watch, const FString& ToolUseId, const FCVXApprovalRequest& Request) override;
	void OnTaskQuestions(FTaskWatch& Watch, const FCVXClarificationRequest& Request) override;
	void OnTaskComplete(FTaskWatch& Watch, const FString& Result) override;
	void OnTaskError(FTaskWatch& Watch, const FString& Error) override;
	void OnTaskSpeaks(FTaskWatch& Watch) override;

	void AddSubTask(const TSharedPtr<FCVXTask>& Task);
	void AnswerApproval(const FString& Line);
	void AnswerQuestion(const FString& Line);
	/** Asks about the first of what waits. */
	void AskNext();
	bool TickRetry();
	/** Ends the run with what it took. Later events of it change nothing. */
	void Finish(EOutcome NewOutcome);
	void StopForPerson(const FString& WaitedFor);
	void StopLoops();
	FCVXTokenUsage SumUsage() const;
	bool IsMain(const FTaskWatch& Watch) const { return &Watch == Watches[0].Get(); }
	/** The task that works now: the last that was begun and isn't at rest. */
	FTaskWatch& GetWorking() const;

	IConversationView& View;
	const FKeyMask& Keys;
	const bool bAsk;
	EOutcome Outcome = EOutcome::None;
	/** The conversation's own task, and those of its sub-agents in the order in which they began. */
	TArray<TUniquePtr<FTaskWatch>> Watches;
	const FTaskWatch* Speaker = nullptr;
	TFunction<void()> BeforeAsking;
	/** What waits, oldest first. Approvals are asked about ahead of questions. */
	TArray<FApproval> Approvals;
	TArray<FQuestions> Questions;
	/** Those given to the first of the questions. */
	TArray<FString> Answers;
	FCVXTokenUsage UsageBefore;
	double StartTime = 0.0;
	bool bRetrying = false;
	/** False once this is gone. */
	TSharedRef<bool> Alive = MakeShared<bool>(true);
};
