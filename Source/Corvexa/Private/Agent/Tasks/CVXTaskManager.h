#pragma once

#include "Agent/Tasks/CVXTask.h"
#include "Logging/LogMacros.h"

DECLARE_LOG_CATEGORY_EXTERN(LogCVXTaskManager, Log, All);

/** All conversations of the process, and which of them is active. Game thread. */
class FCVXTaskManager
{
public:
	DECLARE_MULTICAST_DELEGATE_OneParam(FOnTask, TSharedPtr<FCVXTask>);

	/** Made at the first call and kept to the end of the process. */
	static FCVXTaskManager& Get();

	FOnTask OnTaskCreated;
	/** The task may be null. */
	FOnTask OnActiveTaskChanged;

	TSharedPtr<FCVXTask> GetActiveTask() const { return ActiveTask; }
	/** In order of creation. */
	const TArray<TSharedPtr<FCVXTask>>& GetAllTasks() const { return Tasks; }
	/** Null when there is none. */
	TSharedPtr<FCVXTask> FindTask(const FString& TaskId) const;
	/** The task whose loop this is; null for a loop without a task. */
	TSharedPtr<FCVXTask> FindTaskOfLoop(const FCVXAgentLoop* Loop) const;

	/** Makes a task with the active agent, and makes it active. @return null without usable settings, which is logged.
	 */
	TSharedPtr<FCVXTask> CreateNewTask(const FString& Title);

	/**
	 * Makes a task of the active agent with the first messages of another one's history; it doesn't become active.
	 * @param MessageCount more than there are copies all, less than 1 none. @return null without such a task.
	 */
	TSharedPtr<FCVXTask> ForkTask(const FString& TaskId, int32 MessageCount);

	/** Ends a task and its direct sub-tasks. The last task left becomes active if the active one was among them. */
	void RemoveTask(const FString& TaskId);

	/** @param Task may be null. Remembers its id in the settings. */
	void SetActiveTask(TSharedPtr<FCVXTask> Task);

	/**
	 * Makes a task for a sub-agent, makes it active and starts it; its end resolves the call in the parent's loop, and
	 * so does a failure to make it. @return null then.
	 */
	TSharedPtr<FCVXTask> CreateSubTask(TSharedPtr<FCVXTask> Parent, const FString& Profile, const FString& Task,
		const FString& Context, const FString& ToolUseId, int32 MaxTurns);

	/** Brings the tasks of earlier runs back, idle and with their whole history. Once; none becomes active. */
	void RestoreSessions();
	/** Saves every task, at the end of the process. */
	void SaveAllCheckpoints();
	/** Ends what runs and lets go of all tasks; what is stored of them stays, and can be restored again. */
	void ReleaseTasks();

private:
	FCVXTaskManager() = default;

	/** Connects a task to what must happen when its loop speaks. */
	void BindTask(const TSharedRef<FCVXTask>& Task);
	void BindSubAgentRequired(const TSharedRef<FCVXTask>& Task);
	TArray<FString> GatherSiblingResults(const FCVXTask& Task) const;
	bool RestoreTask(const FString& TaskId, const TArray<FString>& Checkpoints, const FCVXAgentProfile& Agent,
		TUniquePtr<ICVXProvider> Provider);

	bool bSessionsRestored = false;

	TArray<TSharedPtr<FCVXTask>> Tasks;
	TSharedPtr<FCVXTask> ActiveTask;
};
