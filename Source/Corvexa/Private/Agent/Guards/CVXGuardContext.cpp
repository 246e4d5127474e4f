#include "Agent/Guards/CVXGuardContext.h"

#include "Agent/Context/CVXContextManager.h"
#include "Agent/Context/CVXHiddenMessage.h"

void FCVXGuardState::ResetForUserMessage()
{
	FCVXGuardState Fresh;
	Fresh.bHadSideEffects = bHadSideEffects;
	Fresh.bValidationProblemsOpen = bValidationProblemsOpen;
	Fresh.bTodoGateFired = bTodoGateFired;
	Fresh.CompletedWork = MoveTemp(CompletedWork);
	Fresh.TurnsSinceCapture = TurnsSinceCapture;
	Fresh.UnverifiedPythonStreak = UnverifiedPythonStreak;
	Fresh.NoToolNudgeCount = NoToolNudgeCount;
	*this = MoveTemp(Fresh);
}

void FCVXGuardContext::AddHidden(const FString& Text, const FString& Tag) const
{
	ContextManager.AddMessage(CVXHiddenMessage::Make(Text, Tag));
}

const FCVXToolCall* FCVXGuardContext::FindCall(const FString& ToolUseId) const
{
	return Calls.FindByPredicate([&](const FCVXToolCall& Call) { return Call.Id == ToolUseId; });
}
