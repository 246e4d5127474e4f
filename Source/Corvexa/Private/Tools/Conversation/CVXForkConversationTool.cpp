#include "Tools/Conversation/CVXForkConversationTool.h"

#include "Agent/Tasks/CVXTaskManager.h"
#include "Tools/CVXToolArguments.h"

FString FCVXForkConversationTool::GetName() const
{
	return TEXT("fork_conversation");
}

FString FCVXForkConversationTool::GetDescription() const
{
	return TEXT(
		"Fork a conversation at a specific message, creating a new branch. Use it to try an alternative approach "
		"without losing the current conversation. The fork appears as a new task in the History tab and doesn't "
		"become active by itself. Without message_count the whole conversation is cloned.");
}

FString FCVXForkConversationTool::GetInputSchemaJson() const
{
	return TEXT(R"({"type":"object","properties":{)"
				R"("task_id":{"type":"string",)"
				R"("description":"ID of the conversation to fork. Use the current task ID."},)"
				R"("message_count":{"type":"integer","minimum":1,)"
				R"("description":"Number of messages to include from the start. Omit for all messages."}},)"
				R"("required":["task_id"]})");
}

FCVXToolExecutionResult FCVXForkConversationTool::Execute(const FString& ArgumentsJson, const FCVXAgentProfile&)
{
	TSharedPtr<FJsonObject> Arguments;
	FCVXToolExecutionResult Error;
	if (!ParseToolArguments(ArgumentsJson, Arguments, Error))
	{
		return Error;
	}
	const FString TaskId = GetStringArgument(*Arguments, TEXT("task_id"));
	if (TaskId.IsEmpty())
	{
		return FCVXToolExecutionResult::MakeError(TEXT("'task_id' is required."));
	}
	int32 MessageCount = GetIntArgument(*Arguments, TEXT("message_count"), MAX_int32);
	MessageCount = MessageCount < 1 ? MAX_int32 : MessageCount;
	const TSharedPtr<FCVXTask> Fork = FCVXTaskManager::Get().ForkTask(TaskId, MessageCount);
	if (!Fork)
	{
		return FCVXToolExecutionResult::MakeError(
			FString::Printf(TEXT("Failed to fork task '%s'. Task not found or no history."), *TaskId));
	}
	return FCVXToolExecutionResult::MakeSuccess(
		FString::Printf(TEXT("Forked conversation to new task '%s' ('%s') with %d messages.\nThe forked conversation "
							 "appears in the History "
							 "tab."),
			*Fork->GetTaskId(), *Fork->GetTitle(), Fork->GetAgentLoop()->GetContextManager().GetHistory().Num()));
}
