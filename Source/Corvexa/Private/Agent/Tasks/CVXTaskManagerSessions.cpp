#include "Agent/Checkpoints/CVXCheckpointManager.h"
#include "Agent/Tasks/CVXTaskManager.h"
#include "Core/CVXSettings.h"
#include "HAL/FileManager.h"
#include "Logging/LogMacros.h"
#include "Misc/Paths.h"
#include "Providers/CVXProviderFactory.h"

// The tasks of earlier runs.

namespace
{
/** What every restored task is made from; its own agent is put in afterwards. */
struct FRestoreProfiles
{
	const FCVXAgentProfile* Agent = nullptr;
	const FCVXProviderProfile* Provider = nullptr;
};

/** @return false when nothing can be restored, which is logged. */
bool FindRestoreProfiles(const UCVXSettings* Settings, FRestoreProfiles& Out)
{
	if (!Settings)
	{
		UE_LOG(LogCVXTaskManager, Warning, TEXT("RestoreSessions: UCVXSettings unavailable — cannot restore"));
		return false;
	}
	if (!Settings->bEnableCheckpoints)
	{
		UE_LOG(LogCVXTaskManager, Log, TEXT("RestoreSessions: bEnableCheckpoints is false — skipping restore"));
		return false;
	}
	Out.Agent = Settings->FindAgentProfile(Settings->ActiveAgentProfile);
	if (!Out.Agent)
	{
		UE_LOG(LogCVXTaskManager, Warning, TEXT("RestoreSessions: agent profile '%s' not found"),
			*Settings->ActiveAgentProfile);
		return false;
	}
	Out.Provider = Settings->FindProviderProfile(Out.Agent->ProviderProfileName);
	if (!Out.Provider)
	{
		UE_LOG(LogCVXTaskManager, Warning, TEXT("RestoreSessions: no provider profile found — cannot restore"));
		return false;
	}
	return true;
}

/** Takes the newest file that can be read. */
bool RestoreNewest(FCVXTask& Task, const TArray<FString>& Checkpoints)
{
	for (int32 Index = Checkpoints.Num() - 1; Index >= 0; --Index)
	{
		if (!FCVXCheckpointManager::Get().RestoreCheckpoint(Task, Checkpoints[Index]))
		{
			continue;
		}
		if (Index < Checkpoints.Num() - 1)
		{
			UE_LOG(LogCVXTaskManager, Log,
				TEXT("RestoreSessions: restored older checkpoint '%s' for task '%s' (latest was corrupt)"),
				*Checkpoints[Index], *Task.GetTaskId());
		}
		return true;
	}
	UE_LOG(LogCVXTaskManager, Warning, TEXT("RestoreSessions: all %d checkpoints failed for task '%s'"),
		Checkpoints.Num(), *Task.GetTaskId());
	return false;
}

/** A stored parent may be anything, but every task must be found below one that has none. */
void EndParentLoops(const TArray<TSharedPtr<FCVXTask>>& Tasks)
{
	constexpr int32 MaxDepth = 64;
	TMap<FString, FCVXTask*> TasksById;
	for (const TSharedPtr<FCVXTask>& Task : Tasks)
	{
		TasksById.Add(Task->GetTaskId(), Task.Get());
	}
	for (const TSharedPtr<FCVXTask>& Task : Tasks)
	{
		int32 Depth = 0;
		FCVXTask** Each = TasksById.Find(Task->ParentTaskId);
		for (; Each && Depth <= MaxDepth; ++Depth)
		{
			Each = TasksById.Find((*Each)->ParentTaskId);
		}
		if (Depth > MaxDepth)
		{
			Task->ParentTaskId.Empty();
		}
	}
}

FString GetDelegationsPath(const FString& TaskId)
{
	return FPaths::Combine(FCVXCheckpointManager::GetCheckpointDir(TaskId), TEXT("delegations.json"));
}
} // namespace

bool FCVXTaskManager::RestoreTask(const FString& TaskId, const TArray<FString>& Checkpoints,
	const FCVXAgentProfile& Agent, TUniquePtr<ICVXProvider> Provider)
{
	const TSharedRef<FCVXTask> Task = MakeShared<FCVXTask>(TaskId, TEXT("Restored"), MoveTemp(Provider), Agent);
	if (!RestoreNewest(*Task, Checkpoints))
	{
		return false;
	}
	FCVXAgentLoop& Loop = *Task->GetAgentLoop();
	const FString Delegations = GetDelegationsPath(TaskId);
	if (IFileManager::Get().FileExists(*Delegations))
	{
		FCVXAgentLoop::LoadDelegationHistory(Loop.GetLoopId(), Delegations);
	}
	const FCVXAgentProfile* Own = UCVXSettings::Get()->FindAgentProfile(Task->GetAgentProfileName());
	if (Own && Own->ProfileName == Task->GetAgentProfileName())
	{
		Loop.SetAgentProfile(*Own);
	}
	Task->NestingDepth = FMath::Max(0, Task->NestingDepth);
	Loop.SubAgentDepth = Task->NestingDepth;
	Task->NoteRestored();
	BindTask(Task);
	Tasks.Add(Task);
	UE_LOG(LogCVXTaskManager, Log, TEXT("Restored session '%s' (%s)"), *Task->GetTitle(), *TaskId);
	return true;
}

void FCVXTaskManager::RestoreSessions()
{
	FRestoreProfiles Profiles;
	if (bSessionsRestored || !FindRestoreProfiles(UCVXSettings::Get(), Profiles))
	{
		return;
	}
	bSessionsRestored = true;
	const FString Root = FCVXCheckpointManager::GetTasksDir();
	if (!IFileManager::Get().DirectoryExists(*Root))
	{
		UE_LOG(LogCVXTaskManager, Log, TEXT("RestoreSessions: no Tasks directory at %s"), *Root);
		return;
	}
	TArray<FString> Directories;
	IFileManager::Get().FindFiles(Directories, *FPaths::Combine(Root, TEXT("*")), false, true);
	UE_LOG(LogCVXTaskManager, Log, TEXT("RestoreSessions: found %d task directories in %s"), Directories.Num(), *Root);
	int32 Empty = 0;
	int32 Failed = 0;
	for (const FString& TaskId : Directories)
	{
		const TArray<FString> Checkpoints = FCVXCheckpointManager::IsTaskId(TaskId)
			? FCVXCheckpointManager::Get().ListCheckpoints(TaskId)
			: TArray<FString>();
		if (Checkpoints.IsEmpty())
		{
			++Empty;
			continue;
		}
		TUniquePtr<ICVXProvider> Provider = FCVXProviderFactory::CreateProvider(*Profiles.Provider);
		const bool bRestored = Provider && RestoreTask(TaskId, Checkpoints, *Profiles.Agent, MoveTemp(Provider));
		Failed += bRestored ? 0 : 1;
	}
	if (Empty + Failed > 0)
	{
		UE_LOG(LogCVXTaskManager, Log,
			TEXT("RestoreSessions: skipped %d (no checkpoint), %d (restore failed) of %d directories"), Empty, Failed,
			Directories.Num());
	}
	EndParentLoops(Tasks);
	const int32 Restored = Directories.Num() - Empty - Failed;
	if (Restored > 0)
	{
		UE_LOG(LogCVXTaskManager, Log, TEXT("Restored %d previous session(s)"), Restored);
		for (const TSharedPtr<FCVXTask>& Task : TArray<TSharedPtr<FCVXTask>>(Tasks))
		{
			OnTaskCreated.Broadcast(Task);
		}
	}
}

void FCVXTaskManager::SaveAllCheckpoints()
{
	const UCVXSettings* Settings = UCVXSettings::Get();
	if (Settings && !Settings->bEnableCheckpoints)
	{
		UE_LOG(LogCVXTaskManager, Log, TEXT("SaveAllCheckpoints: bEnableCheckpoints is false — skipping"));
		return;
	}
	const int32 MaxCheckpoints = Settings ? Settings->MaxCheckpointsPerTask : 20;
	const bool bCompress = Settings ? Settings->bCompressCheckpoints : true;
	UE_LOG(LogCVXTaskManager, Log, TEXT("SaveAllCheckpoints: saving %d task(s)..."), Tasks.Num());
	int32 Saved = 0;
	int32 SavedDelegations = 0;
	for (const TSharedPtr<FCVXTask>& Task : Tasks)
	{
		const FCVXAgentLoop* Loop = Task->GetAgentLoop();
		// What was only restored may meanwhile have gone on in another program, and its delegations with it.
		if (Loop && !Loop->GetContextManager().GetHistory().IsEmpty() && Task->HasNews())
		{
			FCVXCheckpointManager::Get().SaveCheckpointDirect(*Task, MaxCheckpoints, bCompress);
			++Saved;
			SavedDelegations +=
				FCVXAgentLoop::SaveDelegationHistory(Loop->GetLoopId(), GetDelegationsPath(Task->GetTaskId())) ? 1 : 0;
		}
	}
	UE_LOG(LogCVXTaskManager, Log, TEXT("Shutdown: saved checkpoints for %d task(s), delegation history for %d"), Saved,
		SavedDelegations);
}

void FCVXTaskManager::ReleaseTasks()
{
	const TArray<TSharedPtr<FCVXTask>> Released = MoveTemp(Tasks);
	Tasks.Empty();
	ActiveTask.Reset();
	bSessionsRestored = false;
	for (const TSharedPtr<FCVXTask>& Task : Released)
	{
		if (Task->GetAgentLoop()->IsBusy())
		{
			Task->GetAgentLoop()->Cancel();
		}
	}
	// The end of a sub-agent has given the stage back to its parent.
	ActiveTask.Reset();
}
