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
