#pragma once

#include "Agent/Tasks/CVXTodoList.h"
#include "Core/CVXTypes.h"
#include "Tools/CVXApprovalRequest.h"

/** A tool call as it is shown. */
struct FShownCall
{
	FString Id;
	FString Name;
	/** What the tool does to what, for people. */
	FString Label;
	/** As the model wrote them. */
	FString Arguments;
};

/** How a tool call ended. */
struct FShownOutcome
{
	FShownCall Call;
	/** What the model reads. */
	FString Output;
	bool bIsError = false;
	/** How long it took; negative when that can't be told of this call alone. */
	double Seconds = -1.0;
};

/** What one message of the user took. */
struct FShownUsage
{
	FCVXTokenUsage Tokens;
	double Seconds = 0.0;
};

/** Shows one conversation as it goes. Texts are as they came from outside. Game thread. */
class IConversationView
{
public:
	virtual ~IConversationView() = default;

	/** Something that the program itself has to say. */
	virtual void ShowNotice(const FString& Text) = 0;
	/** Another agent speaks from here on. @param Depth 0 for the conversation's own, greater for a sub-agent. */
	virtual void ShowSpeaker(const FString& Agent, int32 Depth) = 0;
	virtual void ShowText(const FString& Delta) = 0;
	virtual void ShowReasoning(const FString& Delta) = 0;
	virtual void ShowState(ECVXTaskState State) = 0;
	virtual void ShowCall(const FShownCall& Call) = 0;
	virtual void ShowOutcome(const FShownOutcome& Outcome) = 0;
	virtual void ShowTodoList(const TArray<FCVXTodoItem>& Items) = 0;
	/** @param bAsk whether somebody is there to answer. */
	virtual void ShowApproval(const FShownCall& Call, const FCVXApprovalRequest& Request, bool bAsk) = 0;
	/** The next page of the change that is asked about. */
	virtual void ShowMoreOfApproval() = 0;
	/** @param Index of the question that is to be answered now. */
	virtual void ShowQuestion(const FCVXClarificationRequest& Request, int32 Index, bool bAsk) = 0;
	/** The answer wasn't understood. */
	virtual void ShowHint(const FString& Hint) = 0;
	/** A failed request will be tried again. Called again as time passes. @param SecondsLeft 0 when it is now. */
	virtual void ShowRetry(double SecondsLeft) = 0;
	virtual void ShowError(const FString& Text) = 0;
	virtual void ShowResult(const FString& Text) = 0;
	virtual void ShowUsage(const FShownUsage& Usage) = 0;
	/** Why the run can't go on without a person. */
	virtual void ShowNeedsPerson(const FString& WaitedFor) = 0;
	/** What goes on, some times a second. @param Seconds since it began. */
	virtual void ShowActivity(const FString& What, double Seconds) = 0;
	/** The next message is to be typed. */
	virtual void ShowPrompt() = 0;
};
