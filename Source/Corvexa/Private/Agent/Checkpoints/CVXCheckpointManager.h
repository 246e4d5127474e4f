#pragma once

#include "Agent/Checkpoints/CVXSaveQueue.h"
#include "CoreMinimal.h"

class FCVXTask;

/**
 * Keeps conversations across restarts: numbered files in a directory for each task, of which the newest ones are kept.
 * Game thread; texts are made there, and compressed and written on the pool in their order.
 */
class FCVXCheckpointManager
{
public:
	/** The seconds between two saves of one task. */
	static constexpr double MinSaveIntervalSeconds = 3.0;
	/** Every so many saves of a task the files of all tasks are brought within their budget. */
	static constexpr int32 BudgetInterval = 10;

	/** Made at the first call and kept to the end of the process. */
	static FCVXCheckpointManager& Get();

	/** Saves a task unless it was saved a moment ago or the settings say no. */
	void SaveCheckpoint(const FCVXTask& Task);
	/** Saves a task at once, and returns when it is on disk. For the shutdown; reads no settings. */
	void SaveCheckpointDirect(const FCVXTask& Task, int32 MaxCheckpoints, bool bCompress);

	/** Fills the task from a file. @return false when it holds no conversation, which is logged. */
	bool RestoreCheckpoint(FCVXTask& Task, const FString& Path);

	/** The paths of a task's files, oldest first. */
	TArray<FString> ListCheckpoints(const FString& TaskId);
	/** Deletes all that is stored of a task. */
	void DeleteCheckpoints(const FString& TaskId);
	/** Deletes the oldest files of the project until they fit into the budget of the settings. */
	void EnforceDiskBudget();

	static FString GetCheckpointDir(const FString& TaskId);
	/** The directory of all tasks. */
	static FString GetTasksDir();

private:
	FCVXCheckpointManager() = default;

	FCVXSaveQueue Queue;
	/** When each task was last saved, in `FPlatformTime::Seconds`. */
	TMap<FString, double> LastSaveTimes;
};
