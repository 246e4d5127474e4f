#include "Launch/Session/TaskChoice.h"

#include "Agent/Checkpoints/CVXCheckpointManager.h"
#include "Agent/Tasks/CVXTaskManager.h"
#include "Core/CVXSettings.h"
#include "HAL/FileManager.h"

namespace
{
/** So many conversations are named where a beginning fits several. */
constexpr int32 MaxNamed = 5;

FDateTime GetSaveTime(const FCVXTask& Task)
{
	const TArray<FString> Files = FCVXCheckpointManager::Get().ListCheckpoints(Task.GetTaskId());
	return Files.IsEmpty() ? Task.GetCreatedAt() : IFileManager::Get().GetTimeStamp(*Files.Last());
}

/** A program that was killed may have left the id of a sub-agent whose conversation never came to disk. */
TSharedPtr<FCVXTask> FindSavedLast()
{
	TSharedPtr<FCVXTask> Newest;
	FDateTime NewestTime;
	for (const TSharedPtr<FCVXTask>& Each : FCVXTaskManager::Get().GetAllTasks())
	{
		const FDateTime Time = GetSaveTime(*Each);
		if (!Newest || Time > NewestTime)
		{
			Newest = Each;
			NewestTime = Time;
		}
	}
	return Newest;
}

FString NameSome(const TArray<TSharedPtr<FCVXTask>>& Tasks)
{
	TArray<FString> Ids;
	for (int32 Index = 0; Index < FMath::Min(Tasks.Num(), MaxNamed); ++Index)
	{
		Ids.Add(Tasks[Index]->GetTaskId());
	}
	return FString::Join(Ids, TEXT(", ")) + (Tasks.Num() > MaxNamed ? TEXT(", ...") : TEXT(""));
}

FTaskChoice FindLast()
{
	FTaskChoice Choice;
	Choice.Task = FCVXTaskManager::Get().FindTask(UCVXSettings::Get()->LastActiveTaskId);
	Choice.Task = FTaskChoice::FindLeader(Choice.Task ? Choice.Task : FindSavedLast());
	if (!Choice.Task)
	{
		Choice.Error = TEXT("this project has no stored conversation yet");
	}
	return Choice;
}
} // namespace

FTaskChoice FTaskChoice::Find(const FString& Id)
{
	if (Id == TEXT("last"))
	{
		return FindLast();
	}
	FTaskChoice Choice;
	Choice.Task = FCVXTaskManager::Get().FindTask(Id);
	if (Choice.Task)
	{
		return Choice;
	}
	const TArray<TSharedPtr<FCVXTask>> Fitting = FCVXTaskManager::Get().GetAllTasks().FilterByPredicate(
		[&](const TSharedPtr<FCVXTask>& Each) { return Each->GetTaskId().StartsWith(Id); });
	if (Fitting.Num() == 1)
	{
		Choice.Task = Fitting[0];
	}
	else if (Fitting.IsEmpty())
	{
		Choice.Error = FString::Printf(TEXT("there is no stored conversation '%s'; 'corvexa tasks' lists them"), *Id);
	}
	else
	{
		Choice.Error = FString::Printf(
			TEXT("'%s' begins the ids of %d stored conversations: %s"), *Id, Fitting.Num(), *NameSome(Fitting));
	}
	return Choice;
}

TSharedPtr<FCVXTask> FTaskChoice::FindLeader(TSharedPtr<FCVXTask> Task)
{
	// Bounded, for what is stored may name itself as its parent.
	for (int32 Level = 0; Task && Task->bIsSubTask && Level <= FCVXAgentLoop::MaxDelegationDepth; ++Level)
	{
		const TSharedPtr<FCVXTask> Parent = FCVXTaskManager::Get().FindTask(Task->ParentTaskId);
		Task = Parent ? Parent : Task;
	}
	return Task;
}
