#pragma once

#include "Core/CVXTypes.h"

struct FCVXAgentProfile;
class FCVXContextManager;
class FCVXTodoList;

/** What the rules of discipline remember between turns. */
struct FCVXGuardState
{
	/** Something in the project was changed. Kept for the loop's life. */
	bool bHadSideEffects = false;
	/** The last compile_and_check reported logical problems. Kept for the loop's life. */
	bool bValidationProblemsOpen = false;
	/** The completion gate has once pointed at open todo items. Kept for the loop's life. */
	bool bTodoGateFired = false;
	/** Lines of what was done, newest last. Kept for the loop's life. */
	TArray<FString> CompletedWork;
	/** Turns since the viewport was last looked at. */
	int32 TurnsSinceCapture = 0;
	/** execute_python calls in a row without output that proves anything. */
	int32 UnverifiedPythonStreak = 0;
	/** Text-only answers in a row. */
	int32 NoToolNudgeCount = 0;

	int32 PythonCallCount = 0;
	int32 PythonFailCount = 0;
	int32 PythonErrorStreak = 0;
	/** A hash of each turn's calls, newest last. */
	TArray<uint32> RecentCallHashes;
	/** The names of the newest tool calls, newest last. */
	TArray<FString> RecentToolNames;
	bool bDiversityWarned = false;
	int32 SelfHealRetries = 0;
	bool bCompileErrorsOpen = false;
	bool bCppWritten = false;
	bool bCppCompiled = false;
	bool bCppNudgeSent = false;
	bool bTurnBudgetWarned = false;

	/** A new user message starts most of it afresh. */
	void ResetForUserMessage();
};

/** A picture that a turn produced. */
struct FCVXTurnImage
{
	FString Base64;
	FString MediaType;
};

/** What the results of one turn add up to. */
struct FCVXTurnFindings
{
	TArray<FCVXTurnImage> Images;
	bool bCompileError = false;
	bool bPythonError = false;
};

/** What a rule sees of the loop, and where it puts its messages. Made for one step; game thread. */
struct FCVXGuardContext
{
	FCVXGuardState& State;
	FCVXContextManager& ContextManager;
	const FCVXAgentProfile& Profile;
	/** The turn's calls, in stream order. */
	const TArray<FCVXToolCall>& Calls;
	/** The turn's results so far, in order of arrival. */
	const TArray<FCVXCompletedToolResult>& Results;
	/** The plan of the loop's task; null for a loop without one. */
	const FCVXTodoList* TodoList = nullptr;
	/** Whether the model reads images. */
	bool bModelHasVision = false;
	int32 SubAgentDepth = 0;
	int32 TurnCount = 0;
	/** 0 or less means no limit. */
	int32 MaxTurns = 0;

	/** Adds a message that the model reads and the panel doesn't show. */
	void AddHidden(const FString& Text, const FString& Tag) const;
	/** The call of that id; null when this turn made none. */
	const FCVXToolCall* FindCall(const FString& ToolUseId) const;
};
