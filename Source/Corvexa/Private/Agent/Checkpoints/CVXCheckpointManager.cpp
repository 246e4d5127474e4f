#include "Agent/Checkpoints/CVXCheckpointManager.h"

#include "Agent/Checkpoints/CVXCheckpointBudget.h"
#include "Agent/Checkpoints/CVXCheckpointFile.h"
#include "Agent/Checkpoints/CVXCheckpointJson.h"
#include "Agent/Checkpoints/CVXCheckpointList.h"
#include "Agent/Checkpoints/CVXCheckpointLog.h"
#include "Agent/Checkpoints/CVXCheckpointSave.h"
#include "Agent/Tasks/CVXDelegationHistory.h"
#include "Agent/Tasks/CVXTask.h"
#include "Core/CVXSettings.h"
#include "HAL/FileManager.h"
#include "HAL/PlatformTime.h"
#include "Misc/Paths.h"

namespace
{
/** How long a save that is being written is left alone before it is looked at again. */
constexpr double MinLookSeconds = 1.0;
/** The interval between tries doubles with each failure, so many times at most. */
constexpr int32 MaxDoublings = 5;
} // namespace

FCVXCheckpointManager& FCVXCheckpointManager::Get()
{
	static FCVXCheckpointManager Manager;
	return Manager;
}

FString FCVXCheckpointManager::GetTasksDir()
{
	return FPaths::Combine(FPaths::ProjectSavedDir(), TEXT("CVX/Tasks"));
}

FString FCVXCheckpointManager::GetCheckpointDir(const FString& TaskId)
{
	return FPaths::Combine(GetTasksDir(), TaskId);
}

bool FCVXCheckpointManager::IsTaskId(const FString& Id)
{
	return !Id.IsEmpty() && Id != TEXT(".") && Id != TEXT("..") && !Id.Contains(TEXT("/")) && !Id.Contains(TEXT("\\"));
}

void FCVXCheckpointManager::SaveCheckpoint(const FCVXTask& Task)
{
	const FString& TaskId = Task.GetTaskId();
	const UCVXSettings* Settings = UCVXSettings::Get();
	if (!Settings || !Settings->bEnableCheckpoints)
	{
		UE_LOG(LogCVXCheckpoint, Verbose, TEXT("SaveCheckpoint skipped for '%s': settings %s, checkpoints %s"), *TaskId,
			Settings ? TEXT("present") : TEXT("missing"), TEXT("off"));
		return;
	}
	FPendingSave& Pending = PendingSaves.FindOrAdd(TaskId);
	Settle(TaskId, Pending);
	Pending.bNews = true;
	const double Wait = GetSecondsToNextSave(TaskId, Pending);
	if (Wait > 0.0)
	{
		LookAgain(Task, Pending, Wait);
		return;
	}
	if (!Task.GetAgentLoop())
	{
		UE_LOG(LogCVXCheckpoint, Warning, TEXT("SaveCheckpoint skipped: AgentLoop is null for task '%s'"), *TaskId);
		return;
	}
	StartSave(Task, Pending);
}

void FCVXCheckpointManager::Settle(const FString& TaskId, FPendingSave& Pending)
{
	using EOutcome = FCVXCheckpointSave::EOutcome;
	const EOutcome Outcome = Pending.Save ? Pending.Save->GetOutcome() : EOutcome::Pending;
	if (Outcome == EOutcome::Pending)
	{
		return;
	}
	const bool bSaved = Outcome == EOutcome::Saved;
	Pending.Failures = bSaved ? 0 : FMath::Min(Pending.Failures + 1, MaxDoublings);
	Pending.bNews |= !bSaved;
	if (!Pending.Save->Delegations.IsEmpty())
	{
		Pending.Delegations = MoveTemp(Pending.Save->Delegations);
	}
	Pending.Save.Reset();
	if (bSaved)
	{
		LastSaveTimes.Add(TaskId, Pending.StartTime);
	}
}

double FCVXCheckpointManager::GetSecondsToNextSave(const FString& TaskId, const FPendingSave& Pending) const
{
	const double Now = FPlatformTime::Seconds();
	if (Pending.Save)
	{
		return FMath::Max(MinLookSeconds, Pending.StartTime + MinSaveIntervalSeconds - Now);
	}
	const double* LastSave = LastSaveTimes.Find(TaskId);
	return LastSave ? *LastSave + MinSaveIntervalSeconds - Now : 0.0;
}

void FCVXCheckpointManager::StartSave(const FCVXTask& Task, FPendingSave& Pending)
{
	const UCVXSettings* Settings = UCVXSettings::Get();
	const TSharedRef<FCVXCheckpointSave> Save = MakeShared<FCVXCheckpointSave>();
	Save->Directory = GetCheckpointDir(Task.GetTaskId());
	Save->Json = CVXCheckpointJson::Write(Task);
	const FString Delegations = FCVXDelegationHistory::Get().ToText(Task.GetAgentLoop()->GetLoopId());
	Save->Delegations = Delegations.Equals(Pending.Delegations) ? FString() : Delegations;
	Save->MaxCheckpoints = Settings->MaxCheckpointsPerTask;
	Save->bCompress = Settings->bCompressCheckpoints;
	Pending.Save = Save;
	Pending.StartTime = FPlatformTime::Seconds();
	Pending.bNews = false;
	Queue.Add(
		[Save, TasksDir = GetTasksDir(), BudgetMB = Settings->MaxCheckpointStorageMB]
		{
			const int32 Number = Save->Run();
			if (Number != INDEX_NONE && Number % BudgetInterval == 0 && BudgetMB > 0)
			{
				CVXCheckpointBudget::PruneTo(TasksDir, BudgetMB);
			}
		});
	// Also without news, to see whether it has failed.
	LookAgain(Task, Pending, MinSaveIntervalSeconds * (1 << Pending.Failures));
}

void FCVXCheckpointManager::LookAgain(const FCVXTask& Task, FPendingSave& Pending, double Seconds)
{
	const double Time = FPlatformTime::Seconds() + Seconds;
	if (Pending.Ticker.IsValid() && Pending.TickerTime <= Time)
	{
		return;
	}
	FTSTicker::RemoveTicker(Pending.Ticker);
	Pending.TickerTime = Time;
	Pending.Ticker = FTSTicker::GetCoreTicker().AddTicker(TEXT("CVXCheckpoint"), static_cast<float>(Seconds),
		[this, Weak = Task.AsWeak()](float)
		{
			if (const TSharedPtr<const FCVXTask> Kept = Weak.Pin())
			{
				OnLookAgain(*Kept);
			}
			return false;
		});
}

void FCVXCheckpointManager::OnLookAgain(const FCVXTask& Task)
{
	FPendingSave* Pending = PendingSaves.Find(Task.GetTaskId());
	if (!Pending)
	{
		return;
	}
	Pending->Ticker.Reset();
	Settle(Task.GetTaskId(), *Pending);
	if (Pending->bNews)
	{
		SaveCheckpoint(Task);
	}
	else if (Pending->Save)
	{
		LookAgain(Task, *Pending, MinLookSeconds);
	}
}

void FCVXCheckpointManager::Forget(const FString& TaskId)
{
	FPendingSave* Pending = PendingSaves.Find(TaskId);
	if (!Pending)
	{
		return;
	}
	if (Pending->Save)
	{
		Pending->Save->Abandon();
	}
	FTSTicker::RemoveTicker(Pending->Ticker);
	PendingSaves.Remove(TaskId);
}

bool FCVXCheckpointManager::WaitForSaves()
{
	const bool bDone = Queue.Drain();
	UE_CLOG(!bDone, LogCVXCheckpoint, Warning, TEXT("Saves are still being written after %d seconds"),
		static_cast<int32>(FCVXSaveQueue::MaxDrainMs / 1000));
	return bDone;
}

void FCVXCheckpointManager::SaveCheckpointDirect(const FCVXTask& Task, int32 MaxCheckpoints, bool bCompress)
{
	FCVXCheckpointSave Save;
	Save.Directory = GetCheckpointDir(Task.GetTaskId());
	Save.Json = CVXCheckpointJson::Write(Task);
	Save.MaxCheckpoints = MaxCheckpoints;
	Save.bCompress = bCompress;
	Save.bShutdown = true;
	// An older text that can't be waited for mustn't come behind this one.
	FPendingSave* Pending = PendingSaves.Find(Task.GetTaskId());
	if (!WaitForSaves() && Pending && Pending->Save)
	{
		Pending->Save->Abandon();
	}
	if (Save.Run() != INDEX_NONE && Pending)
	{
		Pending->bNews = false;
	}
}

bool FCVXCheckpointManager::RestoreCheckpoint(FCVXTask& Task, const FString& Path)
{
	// What takes too long isn't waited for; the newest file that is there does.
	(void)WaitForSaves();
	FString Plain = Path;
	Plain.RemoveFromEnd(TEXT(".gz"));
	FString Json;
	if (!CVXCheckpointFile::Read(Plain, Json) || Json.IsEmpty())
	{
		UE_LOG(LogCVXCheckpoint, Error, TEXT("Failed to load checkpoint: %s"), *Path);
		return false;
	}
	if (!Task.GetAgentLoop())
	{
		return false;
	}
	int32 MessageCount = 0;
	const CVXCheckpointJson::EReadResult Result = CVXCheckpointJson::Read(Json, Path, Task, MessageCount);
	if (Result == CVXCheckpointJson::EReadResult::NoObject)
	{
		const FString Backup = Path + TEXT(".corrupted");
		IFileManager::Get().Copy(*Backup, *Path, true);
		UE_LOG(LogCVXCheckpoint, Error, TEXT("H7: Corrupted checkpoint JSON — backed up to %s: %s"), *Backup, *Path);
	}
	if (Result != CVXCheckpointJson::EReadResult::Done)
	{
		return false;
	}
	UE_LOG(LogCVXCheckpoint, Log, TEXT("Restored checkpoint from %s (%d messages)"), *Path, MessageCount);
	return true;
}

TArray<FString> FCVXCheckpointManager::ListCheckpoints(const FString& TaskId)
{
	(void)WaitForSaves();
	return CVXCheckpointList::Find(GetCheckpointDir(TaskId));
}

void FCVXCheckpointManager::DeleteCheckpoints(const FString& TaskId)
{
	if (!IsTaskId(TaskId))
	{
		return;
	}
	Forget(TaskId);
	LastSaveTimes.Remove(TaskId);
	// A save that can't be waited for finds that it is abandoned.
	(void)WaitForSaves();
	IFileManager::Get().DeleteDirectory(*GetCheckpointDir(TaskId), false, true);
}

void FCVXCheckpointManager::EnforceDiskBudget()
{
	const UCVXSettings* Settings = UCVXSettings::Get();
	if (Settings && Settings->MaxCheckpointStorageMB > 0)
	{
		CVXCheckpointBudget::PruneTo(GetTasksDir(), Settings->MaxCheckpointStorageMB);
	}
}
