#include "Agent/Tasks/CVXTaskManager.h"

#include "Agent/Checkpoints/CVXCheckpointManager.h"
#include "Async/Async.h"
#include "Core/CVXSettings.h"
#include "Logging/LogMacros.h"
#include "Misc/Guid.h"
#include "Providers/CVXProviderFactory.h"

DEFINE_LOG_CATEGORY(LogCVXTaskManager);

namespace
{
/** What a new conversation is made from. */
struct FIngredients
{
	const FCVXAgentProfile* Agent = nullptr;
	TUniquePtr<ICVXProvider> Provider;
	/** Why there is none; empty when both are there. */
	FString Failure;
};

FIngredients FindIngredients(const UCVXSettings* Settings)
{
	FIngredients Found;
	if (!Settings)
	{
		Found.Failure = TEXT("CVXTaskManager: Could not get settings.");
		return Found;
	}
	Found.Agent = Settings->FindAgentProfile(Settings->ActiveAgentProfile);
	if (!Found.Agent)
	{
		Found.Failure = TEXT("CVXTaskManager: No active agent profile configured.");
		return Found;
	}
	const FCVXProviderProfile* ProviderProfile = Settings->FindProviderProfile(Found.Agent->ProviderProfileName);
	if (!ProviderProfile)
	{
		ProviderProfile = Settings->FindProviderProfile(Settings->ActiveProviderProfile);
	}
	if (!ProviderProfile)
	{
		Found.Failure = FString::Printf(
			TEXT("CVXTaskManager: No provider profile found for agent '%s'."), *Found.Agent->ProfileName);
		return Found;
	}
	Found.Provider = FCVXProviderFactory::CreateProvider(*ProviderProfile);
	if (!Found.Provider)
	{
		Found.Failure = FString::Printf(
			TEXT("CVXTaskManager: Failed to create provider for profile '%s'."), *ProviderProfile->ProfileName);
	}
	return Found;
}

void SaveIfAlive(const TWeakPtr<FCVXTask>& Weak)
{
	const TSharedPtr<FCVXTask> Task = Weak.Pin();
	// Somebody may hold a task that has been removed, of which nothing must be stored again.
	if (Task && FCVXTaskManager::Get().FindTask(Task->GetTaskId()))
	{
		FCVXCheckpointManager::Get().SaveCheckpoint(*Task);
	}
}

FString MakeTaskId()
{
	return FGuid::NewGuid().ToString(EGuidFormats::Digits);
}
} // namespace

FCVXTaskManager& FCVXTaskManager::Get()
{
	static FCVXTaskManager Manager;
	return Manager;
}

TSharedPtr<FCVXTask> FCVXTaskManager::FindTask(const FString& TaskId) const
{
	const TSharedPtr<FCVXTask>* Task =
		Tasks.FindByPredicate([&](const TSharedPtr<FCVXTask>& Each) { return Each->GetTaskId() == TaskId; });
	return Task ? *Task : nullptr;
}

TSharedPtr<FCVXTask> FCVXTaskManager::FindTaskOfLoop(const FCVXAgentLoop* Loop) const
{
	const TSharedPtr<FCVXTask>* Task =
		Tasks.FindByPredicate([&](const TSharedPtr<FCVXTask>& Each) { return Each->GetAgentLoop() == Loop; });
	return Task ? *Task : nullptr;
}

TSharedPtr<FCVXTask> FCVXTaskManager::CreateNewTask(const FString& Title)
{
	const UCVXSettings* Settings = UCVXSettings::Get();
	FIngredients Found = FindIngredients(Settings);
	if (!Found.Failure.IsEmpty())
	{
		UE_LOG(LogCVXTaskManager, Error, TEXT("%s"), *Found.Failure);
		return nullptr;
	}
	const TSharedRef<FCVXTask> Task = MakeShared<FCVXTask>(MakeTaskId(), Title, MoveTemp(Found.Provider), *Found.Agent);
	Tasks.Add(Task);
	if (Settings->MaxAgentTurns > 0)
	{
		Task->GetAgentLoop()->MaxTurns = Settings->MaxAgentTurns;
	}
	BindTask(Task);
	OnTaskCreated.Broadcast(Task);
	SetActiveTask(Task);
	return Task;
}

TSharedPtr<FCVXTask> FCVXTaskManager::ForkTask(const FString& TaskId, int32 MessageCount)
{
	const TSharedPtr<FCVXTask> Source = FindTask(TaskId);
	if (!Source)
	{
		UE_LOG(LogCVXTaskManager, Warning, TEXT("ForkTask: source task '%s' not found"), *TaskId);
		return nullptr;
	}
	FIngredients Found = FindIngredients(UCVXSettings::Get());
	if (!Found.Failure.IsEmpty())
	{
		return nullptr;
	}
	const TSharedRef<FCVXTask> Task = MakeShared<FCVXTask>(
		MakeTaskId(), FString::Printf(TEXT("Fork of %s"), *Source->GetTitle()), MoveTemp(Found.Provider), *Found.Agent);
	const TArray<FCVXMessage>& History = Source->GetAgentLoop()->GetContextManager().GetHistory();
	const int32 Count = FMath::Clamp(MessageCount, 0, History.Num());
	for (int32 Index = 0; Index < Count; ++Index)
	{
		Task->GetAgentLoop()->GetContextManager().AddMessage(History[Index]);
	}
	BindTask(Task);
	Tasks.Add(Task);
	OnTaskCreated.Broadcast(Task);
	if (Count > 0)
	{
		FCVXCheckpointManager::Get().SaveCheckpoint(*Task);
	}
	UE_LOG(LogCVXTaskManager, Log, TEXT("Forked task '%s' from '%s' with %d messages"), *Task->GetTaskId(), *TaskId,
		Count);
	return Task;
}

void FCVXTaskManager::RemoveTask(const FString& TaskId)
{
	const TSharedPtr<FCVXTask> Task = FindTask(TaskId);
	if (!Task)
	{
		return;
	}
	TArray<TSharedPtr<FCVXTask>> Removed = Tasks.FilterByPredicate(
		[&](const TSharedPtr<FCVXTask>& Each) { return Each->bIsSubTask && Each->ParentTaskId == TaskId; });
	Removed.Insert(Task, 0);
	for (const TSharedPtr<FCVXTask>& Each : Removed)
	{
		if (Each->GetAgentLoop()->IsBusy())
		{
			Each->GetAgentLoop()->Cancel();
			UE_CLOG(Each != Task, LogCVXTaskManager, Log,
				TEXT("M3: Cancelled orphaned child task '%s' (parent '%s' removed)"), *Each->GetTaskId(), *TaskId);
		}
		FCVXCheckpointManager::Get().DeleteCheckpoints(Each->GetTaskId());
		Tasks.Remove(Each);
	}
	if (Removed.Contains(ActiveTask))
	{
		ActiveTask = Tasks.IsEmpty() ? nullptr : Tasks.Last();
		OnActiveTaskChanged.Broadcast(ActiveTask);
	}
}

void FCVXTaskManager::SetActiveTask(TSharedPtr<FCVXTask> Task)
{
	ActiveTask = Task;
	if (UCVXSettings* Settings = UCVXSettings::Get())
	{
		Settings->LastActiveTaskId = Task ? Task->GetTaskId() : FString();
		Settings->SaveToDefaultConfig();
	}
	OnActiveTaskChanged.Broadcast(ActiveTask);
}

void FCVXTaskManager::BindTask(const TSharedRef<FCVXTask>& Task)
{
	Task->GetAgentLoop()->OnMessageComplete.AddLambda(
		[Weak = Task.ToWeakPtr()](const FCVXMessage& Message)
		{
			if (Message.Role == ECVXMessageRole::User)
			{
				// It is told of before it joins the history.
				AsyncTask(ENamedThreads::GameThread, [Weak] { SaveIfAlive(Weak); });
			}
			else if (Message.Role != ECVXMessageRole::System)
			{
				SaveIfAlive(Weak);
			}
		});
	BindSubAgentRequired(Task);
}
