#pragma once

#include "Containers/Map.h"
#include "Containers/UnrealString.h"

/** A tool call that the model made, with its result once there is one. */
struct FDemoCall
{
	FString Id;
	FString Tool;
	FString Result;
	bool bIsError = false;
	bool bHasResult = false;
};

/** What a request tells the demo model, whichever the wire dialect. */
struct FDemoRequest
{
	/** The names of the tools offered, in order. */
	TArray<FString> Tools;
	/** What the user asked last, without what the agent added for the model alone. */
	FString Question;
	/** What the agent has added for the model since the question, if that is the last thing it said. */
	FString Note;
	/** The calls since the question, in order. */
	TArray<FDemoCall> Calls;

	/** A text that the user or the agent said. The agent's own stand in brackets. */
	void AddUserText(const FString& Text);
	void AddCall(const FString& Id, const FString& Tool);
	void AddResult(const FString& Id, const FString& Result, bool bIsError);
	/** The last finished call of a tool; null when there is none. */
	const FDemoCall* FindLastCall(const FString& Tool) const;
};

/** One tool call of an answer. */
struct FDemoAnswerCall
{
	FString Tool;
	FString ArgumentsJson;
};

/** What the demo model says in one turn. */
struct FDemoAnswer
{
	FString Thinking;
	FString Text;
	TArray<FDemoAnswerCall> Calls;
};
