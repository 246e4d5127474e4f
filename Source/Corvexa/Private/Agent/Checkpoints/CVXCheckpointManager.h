#pragma once

#include "Agent/Checkpoints/CVXSaveQueue.h"
#include "Containers/Ticker.h"
#include "CoreMinimal.h"

class FCVXCheckpointSave;
class FCVXTask;

/**
 * Keeps conversations across restarts: numbered files in a directory for each task, of which the newest ones are kept.
 * Game thread; texts are made there, and compressed and written on the pool in their order. Of each task at most one
 * text waits to be written.
 *
 * Other programs may save the same tasks. No save replaces a file: numbers are claimed one by one, and the highest is
 * what the next start restores.
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

	/**
	 * Saves a task and its delegations, unless the settings say no: now, or once `MinSaveIntervalSeconds` have passed
	 * since its last save. A save that fails is tried again with the next call, and by itself in growing intervals.
	 * @param Task must be owned by a shared pointer; it may go while its save waits, and isn't saved then.
	 */
	void SaveCheckpoint(const FCVXTask& Task);
	/** Saves a task at once, and returns when it is on disk. For the shutdown; reads no settings. */
	void SaveCheckpointDirect(const FCVXTask& Task, int32 MaxCheckpoints, bool bCompress);

	/** Fills the task from a file. @return false when it holds no conversation, which is logged. */
	bool RestoreCheckpoint(FCVXTask& Task, const FString& Path);

	/** The paths of a task's files, oldest first. */
	TArray<FString> ListCheckpoints(const FString& TaskId);
	/** Deletes all that is stored of a task, and what waits to be. */
	void DeleteCheckpoints(const FString& TaskId);
	/** Deletes the oldest files of the project until they fit into the budget of the settings. */
	void EnforceDiskBudget();

	/** Whether this can be a task's id, which is the name of its directory. */
	static bool IsTaskId(const FString& Id);
	static FString GetCheckpointDir(const FString& TaskId);
	/** The directory of all tasks. */
	static FString GetTasksDir();

private:
	/** What is going on with a task's throttled saves. */
	struct FPendingSave
	{
		/** On its way, or done and not yet looked at; null when there is none. */
		TSharedPtr<FCVXCheckpointSave> Save;
		/** When its text was made, in `FPlatformTime::Seconds`. */
		double StartTime = 0.0;
		/** The text of the delegations that is on disk, as far as known. */
		FString Delegations;
		/** Whether the task has said something that isn't in a save yet. */
		bool bNews = false;
		/** Failed saves since the last one that succeeded. */
		int32 Failures = 0;
		/** Looks after the task again; stale when there is none. */
		FTSTicker::FDelegateHandle Ticker;
		double TickerTime = 0.0;
	};

	FCVXCheckpointManager() = default;

	/** Takes notice of how the save on its way has ended, if it has. */
	void Settle(const FString& TaskId, FPendingSave& Pending);
	double GetSecondsToNextSave(const FString& TaskId, const FPendingSave& Pending) const;
	void StartSave(const FCVXTask& Task, FPendingSave& Pending);
	/** Looks after the task again after so many seconds, or earlier if that is already planned. */
	void LookAgain(const FCVXTask& Task, FPendingSave& Pending, double Seconds);
	void OnLookAgain(const FCVXTask& Task);
	/** Forgets what waits to be saved of a task. */
	void Forget(const FString& TaskId);
	/** @return false when writing takes too long, which is logged. */
	bool WaitForSaves();

	FCVXSaveQueue Queue;
	/** When the newest text that is on disk was made for each task, in `FPlatformTime::Seconds`. */
	TMap<FString, double> LastSaveTimes;
	TMap<FString, FPendingSave> PendingSaves;
};
