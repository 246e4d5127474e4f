#include "Agent/Tasks/CVXGitCheckpoint.h"
#include "Agent/Tasks/CVXSubTaskMessage.h"
#include "Agent/Tasks/CVXTaskManager.h"
#include "Core/CVXSettings.h"
#include "Logging/LogMacros.h"
#include "Misc/Guid.h"
#include "Providers/CVXProviderFactory.h"

// The tasks that sub-agents work in.

namespace
{
constexpr int32 MaxTitleChars = 80;
constexpr int32 MinSubAgentTurns = 5;
constexpr int32 MaxSubAgentTurns = 100;

/** The profiles of a sub-agent. */
struct FSubAgent
{
	const FCVXAgentProfile* Agent = nullptr;
	TUniquePtr<ICVXProvider> Provider;
};

/** @return why there is no such sub-agent; empty when there is. */
FString FindSubAgent(const FString& Profile, FSubAgent& Out)
{
	const UCVXSettings* Settings = UCVXSettings::Get();
	if (!Settings)
	{
		UE_LOG(LogCVXTaskManager, Error, TEXT("CreateSubTask: No settings."));
		return TEXT("Internal error: settings unavailable.");
	}
	Out.Agent = Settings->FindAgentProfile(Profile);
	if (!Out.Agent || Out.Agent->ProfileName != Profile)
	{
		return FString::Printf(
			TEXT("Agent profile '%s' not found. Available profiles are listed in settings."), *Profile);
	}
	const FCVXProviderProfile* ProviderProfile = Settings->FindProviderProfile(Out.Agent->ProviderProfileName);
	if (!ProviderProfile)
	{
		return TEXT("No provider profile available for sub-agent.");
	}
	Out.Provider = FCVXProviderFactory::CreateProvider(*ProviderProfile);
	return Out.Provider
		? FString()
		: FString::Printf(TEXT("Failed to create provider for profile '%s'."), *ProviderProfile->ProfileName);
}

/** The two ends of a delegation; either may be gone when the other speaks. */
struct FDelegation
{
	TWeakPtr<FCVXTask> Parent;
	TWeakPtr<FCVXTask> Child;
	FString ToolUseId;

	/** Gives the child's end to the parent, and the stage back with it. */
	void End(const FString& Message, bool bIsError, bool bIncomplete) const
	{
		const TSharedPtr<FCVXTask> ParentTask = Parent.Pin();
		if (const TSharedPtr<FCVXTask> ChildTask = Child.Pin())
		{
			ChildTask->SetCompletionMessage(Message);
		}
		if (!ParentTask)
		{
			return;
		}
		if (!bIsError && !bIncomplete)
		{
			ParentTask->GetTodoList().MarkInProgressAsCompleted();
		}
		FCVXTaskManager::Get().SetActiveTask(ParentTask);
		ParentTask->GetAgentLoop()->ResolveSubAgent(ToolUseId, Message, bIsError, bIncomplete);
	}
};

void BindEnds(FCVXAgentLoop& Loop, const FDelegation& Delegation)
{
	Loop.OnComplete.AddLambda([Delegation](const FString& Result)
		{ Delegation.End(Result, false, Result.Contains(TEXT("Max turns limit"))); });
	Loop.OnError.AddLambda([Delegation](const FString& Text)
		{ Delegation.End(FString::Printf(TEXT("Sub-agent error: %s"), *Text), true, false); });
	Loop.OnStateChanged.AddLambda(
		[Delegation](ECVXTaskState State)
		{
			if (State == ECVXTaskState::Cancelled)
			{
				Delegation.End(TEXT("Sub-agent was cancelled."), true, false);
			}
		});
}
} // namespace

void FCVXTaskManager::BindSubAgentRequired(const TSharedRef<FCVXTask>& Task)
{
	Task->GetAgentLoop()->OnSubAgentRequired.AddLambda(
		[this, Weak = Task.ToWeakPtr()](const FString& ToolUseId, const FString& Profile, const FString& Work,
			const FString& Context, int32 MaxTurns)
		{
			if (const TSharedPtr<FCVXTask> Parent = Weak.Pin())
			{
				CreateSubTask(Parent, Profile, Work, Context, ToolUseId, MaxTurns);
			}
		});
}

TArray<FString> FCVXTaskManager::GatherSiblingResults(const FCVXTask& Task) const
{
	TArray<FString> Results;
	for (const TSharedPtr<FCVXTask>& Each : Tasks)
	{
		if (Each.Get() != &Task && Each->bIsSubTask && Each->ParentTaskId == Task.ParentTaskId &&
			!Each->GetCompletionMessage().IsEmpty())
		{
			Results.Add(Each->GetCompletionMessage());
		}
	}
	return Results;
}

TSharedPtr<FCVXTask> FCVXTaskManager::CreateSubTask(TSharedPtr<FCVXTask> Parent, const FString& Profile,
	const FString& Task, const FString& Context, const FString& ToolUseId, int32 MaxTurns)
{
	FSubAgent SubAgent;
	const FString Failure = FindSubAgent(Profile, SubAgent);
	if (!Failure.IsEmpty())
	{
		UE_LOG(LogCVXTaskManager, Error, TEXT("CreateSubTask: %s"), *Failure);
		Parent->GetAgentLoop()->ResolveSubAgent(ToolUseId, Failure, true, false);
		return nullptr;
	}
	const TSharedRef<FCVXTask> SubTask = MakeShared<FCVXTask>(FGuid::NewGuid().ToString(EGuidFormats::Digits),
		Task.Left(MaxTitleChars), MoveTemp(SubAgent.Provider), *SubAgent.Agent);
	SubTask->bIsSubTask = true;
	SubTask->NestingDepth = Parent->NestingDepth + 1;
	SubTask->ParentTaskId = Parent->GetTaskId();
	Tasks.Add(SubTask);
	OnTaskCreated.Broadcast(SubTask);
	SetActiveTask(SubTask);

	FCVXAgentLoop& Loop = *SubTask->GetAgentLoop();
	Loop.SubAgentDepth = SubTask->NestingDepth;
	Loop.MaxTurns = FMath::Clamp(MaxTurns, MinSubAgentTurns, MaxSubAgentTurns);
	BindTask(SubTask);
	BindEnds(Loop, {Parent, SubTask, ToolUseId});

	const FString Message = CVXSubTaskMessage::Build(Task, Context, GatherSiblingResults(*SubTask));
	if (CVXGitCheckpoint::Commit(Profile, Task))
	{
		UE_LOG(LogCVXTaskManager, Log, TEXT("Git checkpoint created before delegation to '%s'"), *Profile);
	}
	UE_LOG(LogCVXTaskManager, Log, TEXT("Created sub-task '%s' (depth=%d, maxTurns=%d) for parent '%s'"),
		*SubTask->GetTaskId(), SubTask->NestingDepth, Loop.MaxTurns, *Parent->GetTaskId());
	Loop.SubmitUserMessage(Message);
	return SubTask;
}
