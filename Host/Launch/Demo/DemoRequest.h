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
	/** The user has asked to go on with the question. What was called before may not hold any more, and is left out. */
	bool bGoesOn = false;
	/** The calls since the question, or since the user asked to go on, in order. */
	TArray<FDemoCall> Calls;

	/** A text that the user or the agent said. The agent's own stand in brackets. "continue" is no new question. */
	void AddUserText(const FString& Text);
	void AddCall(const FString& Id, const FString& Tool);
	void AddResult(const FString& Id, const FString& Result, bool bIsError);
	/** The same where calls have no ids: answers the first call of the tool that has no result. */
	void AddResultOfOldest(const FString& Tool, const FString& Result, bool bIsError);
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
