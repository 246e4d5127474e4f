#include "Launch/Commands/TasksCommand.h"

#include "Agent/Tasks/CVXTaskManager.h"
#include "Launch/Commands/ExitStatus.h"
#include "Launch/Commands/LaunchCommand.h"
#include "Launch/Options/LaunchOptions.h"
#include "Launch/Session/LaunchSession.h"
#include "Launch/Terminal/SafeText.h"
#include "Launch/Terminal/TerminalOut.h"
#include "Policies/CondensedJsonPrintPolicy.h"
#include "Serialization/JsonWriter.h"

#include <unistd.h>

namespace
{
constexpr int32 AgeColumn = 10;
constexpr int32 AgentColumn = 16;

using FTasks = TArray<TSharedPtr<FCVXTask>>;

/** "5 m", "3 h", "2 d". */
FString FormatAge(FDateTime CreatedAt)
{
	const double Minutes = (FDateTime::UtcNow() - CreatedAt).GetTotalMinutes();
	if (Minutes < 60.0)
	{
		return FString::Printf(TEXT("%d m"), FMath::Max(0, static_cast<int32>(Minutes)));
	}
	return Minutes < 24.0 * 60.0 ? FString::Printf(TEXT("%d h"), static_cast<int32>(Minutes / 60.0))
								 : FString::Printf(TEXT("%d d"), static_cast<int32>(Minutes / (24.0 * 60.0)));
}

/** Whether the conversation waits for its model: its last word isn't the agent's. */
FString DescribeState(const FCVXTask& Task)
{
	const TArray<FCVXMessage>& History = Task.GetAgentLoop()->GetContextManager().GetHistory();
	if (History.IsEmpty())
	{
		return TEXT("empty");
	}
	const FCVXContentBlock* Last = History.Last().Content.IsEmpty() ? nullptr : &History.Last().Content.Last();
	const bool bEnded = Last && Last->ToolName == TEXT("attempt_completion") && !Last->bIsError;
	return bEnded ? TEXT("complete") : TEXT("open");
}

FString MakeRow(const FCVXTask& Task, int32 Depth)
{
	return FString::ChrN(2 * Depth, TEXT(' ')) + Task.GetTaskId() + TEXT("  ") +
		DescribeState(Task).RightPad(AgeColumn) + FormatAge(Task.GetCreatedAt()).RightPad(AgeColumn) +
		Task.GetAgentProfileName().RightPad(AgentColumn) + MakeSafeText(Task.GetTitle()) + TEXT("\n");
}

FString MakeJson(const FCVXTask& Task)
{
	FString Json;
	TJsonWriter<TCHAR, TCondensedJsonPrintPolicy<TCHAR>> Writer(Json);
	Writer.WriteObjectStart();
	Writer.WriteValue(TEXT("id"), Task.GetTaskId());
	Writer.WriteValue(TEXT("title"), Task.GetTitle());
	Writer.WriteValue(TEXT("state"), DescribeState(Task));
	Writer.WriteValue(TEXT("created_at"), Task.GetCreatedAt().ToIso8601());
	Writer.WriteValue(TEXT("agent"), Task.GetAgentProfileName());
	Writer.WriteValue(TEXT("parent_id"), Task.ParentTaskId);
	Writer.WriteValue(TEXT("messages"), Task.GetAgentLoop()->GetContextManager().GetHistory().Num());
	Writer.WriteObjectEnd();
	Writer.Close();
	return Json + TEXT("\n");
}

/** The tasks of a parent and theirs, oldest first. A task whose parent is gone stands on top. */
void ListChildren(const FTasks& Tasks, const FString& ParentId, int32 Depth, bool bJson, FString& Out)
{
	for (const TSharedPtr<FCVXTask>& Task : Tasks)
	{
		const bool bOrphan = Depth == 0 && !FCVXTaskManager::Get().FindTask(Task->ParentTaskId);
		if (bOrphan || (Depth > 0 && Task->ParentTaskId == ParentId))
		{
			Out += bJson ? MakeJson(*Task) : MakeRow(*Task, Depth);
			ListChildren(Tasks, Task->GetTaskId(), Depth + 1, bJson, Out);
		}
	}
}
} // namespace

int RunTasksCommand(const FLaunchOptions& Options)
{
	FLaunchSession Session;
	const FLaunchSession::FStart Started = Session.Start(Options, std::chrono::milliseconds(0));
	if (!Started.bStarted)
	{
		return ReportUsageError(Started.Error);
	}
	FCVXTaskManager::Get().RestoreSessions();
	FTasks Tasks = FCVXTaskManager::Get().GetAllTasks();
	Tasks.StableSort([](const TSharedPtr<FCVXTask>& A, const TSharedPtr<FCVXTask>& B)
		{ return A->GetCreatedAt() < B->GetCreatedAt(); });
	FString Text;
	ListChildren(Tasks, FString(), 0, Options.bJson, Text);
	// They were only looked at; the end of the session must not save them anew.
	FCVXTaskManager::Get().ReleaseTasks();
	return WriteToDescriptor(STDOUT_FILENO, Text) ? ExitComplete : ExitError;
}
