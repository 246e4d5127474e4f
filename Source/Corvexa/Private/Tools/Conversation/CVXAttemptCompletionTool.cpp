#include "Tools/Conversation/CVXAttemptCompletionTool.h"

#include "Tools/CVXToolArguments.h"

namespace
{
constexpr int32 MinResultChars = 20;
/** Questions to the user stand at a result's end. */
constexpr int32 QuestionWindow = 300;
constexpr int32 MaxQuestions = 1;

bool AsksTheUser(const FString& Result)
{
	int32 Questions = 0;
	for (const TCHAR Char : Result.Right(QuestionWindow))
	{
		Questions += Char == TEXT('?') ? 1 : 0;
	}
	return Questions > MaxQuestions || Result.TrimEnd().EndsWith(TEXT("?"));
}
} // namespace

FString FCVXAttemptCompletionTool::GetName() const
{
	return TEXT("attempt_completion");
}

FString FCVXAttemptCompletionTool::GetDescription() const
{
	return TEXT(
		"Present the final result and end the task. Call it only when everything that was asked for is done. The "
		"'result' "
		"field is the ONLY information returned to the parent agent or user. List every asset and file that you "
		"created or "
		"modified with its full path, say for each whether it is C++ or Blueprint, and name the key decisions. Never "
		"write "
		"just 'Done'. NEVER include questions or choices in the result — if you need the user to decide something, use "
		"ask_followup_question instead.\n\n"
		"BEFORE calling this tool, verify your work:\n"
		"- Every Blueprint that you created or changed went through compile_and_check without errors; empty graphs are "
		"not "
		"valid.\n"
		"- Widget Blueprints hold real widgets, not just an empty root panel.\n"
		"- Actors and components that you placed are verified through execute_python (they exist, where they should).\n"
		"- Input actions are bound, and the mapping context is applied to the player controller.\n"
		"- Gameplay tasks have a level in which the result can be played.\n"
		"- capture_viewport confirms the visual result where there is one.\n"
		"DO NOT complete with untested, uncompiled, or unverified work.");
}

FString FCVXAttemptCompletionTool::GetInputSchemaJson() const
{
	return TEXT(R"({"type":"object","properties":{)"
				R"("result":{"type":"string",)"
				R"("description":"A clear summary of what was accomplished and the final result."},)"
				R"("command":{"type":"string",)"
				R"("description":"Optional: a command the user can run to verify the result."}},)"
				R"("required":["result"]})");
}

FCVXToolExecutionResult FCVXAttemptCompletionTool::Execute(const FString& ArgumentsJson, const FCVXAgentProfile&)
{
	TSharedPtr<FJsonObject> Arguments;
	FCVXToolExecutionResult Outcome;
	if (!ParseToolArguments(ArgumentsJson, Arguments, Outcome))
	{
		return Outcome;
	}
	const FString Result = GetStringArgument(*Arguments, TEXT("result"));
	if (Result.Len() < MinResultChars)
	{
		return FCVXToolExecutionResult::MakeError(TEXT(
			"Result too short. Provide detailed summary: file/asset paths created, Blueprint class names, key "
			"decisions "
			"made. Example: 'Created /Game/BP_Player (Character class), added health/damage system with GAS abilities, "
			"compiled successfully.'"));
	}
	if (AsksTheUser(Result))
	{
		return FCVXToolExecutionResult::MakeError(TEXT(
			"Your completion result contains questions or choices for the user. attempt_completion is ONLY for "
			"reporting finished work — not for asking questions. Use ask_followup_question instead to present options "
			"to the user. Each option can have a title and description for interactive buttons."));
	}
	Outcome = FCVXToolExecutionResult::MakeSuccess(Result);
	Outcome.bIsCompletion = true;
	return Outcome;
}
