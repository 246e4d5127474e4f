#include "Agent/Tasks/CVXTask.h"

FCVXTask::FCVXTask(const FString& InTaskId, const FString& InTitle, TUniquePtr<ICVXProvider> InProvider,
	const FCVXAgentProfile& Profile)
	: TaskId(InTaskId)
	, Title(InTitle)
	, AgentProfileName(Profile.ProfileName)
	, CreatedAt(FDateTime::UtcNow())
	, AgentLoop(MakeShared<FCVXAgentLoop>(MoveTemp(InProvider), Profile))
{
}

FCVXTask::FMark FCVXTask::GetMark() const
{
	const TArray<FCVXMessage>& History = AgentLoop->GetContextManager().GetHistory();
	return {History.Num(), History.IsEmpty() ? FString() : History.Last().MessageId, TodoList.ToJson()};
}

bool FCVXTask::HasNews() const
{
	const FMark Now = GetMark();
	return Now.MessageCount != Restored.MessageCount || Now.LastMessageId != Restored.LastMessageId ||
		!Now.Todo.Equals(Restored.Todo);
}
