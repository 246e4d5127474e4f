#include "Agent/Checkpoints/CVXCheckpointManager.h"

#include "Agent/Checkpoints/CVXCheckpointFile.h"
#include "Agent/Checkpoints/CVXCheckpointJson.h"
#include "Agent/Checkpoints/CVXCheckpointLog.h"
#include "Agent/Tasks/CVXTask.h"
#include "Core/CVXSettings.h"
#include "HAL/FileManager.h"
#include "HAL/PlatformTime.h"
#include "Misc/Paths.h"

namespace
{
constexpr const TCHAR* NamePrefix = TEXT("checkpoint_");

/** The name without ".json" or ".json.gz"; empty for another file. */
FString GetLogicalName(const FString& FileName)
{
	FString Name = FileName;
	Name.RemoveFromEnd(TEXT(".gz"));
	return Name.StartsWith(NamePrefix) && Name.RemoveFromEnd(TEXT(".json")) ? Name : FString();
}

/** A task's files, oldest first; of two forms of one checkpoint the compressed one. */
TArray<FString> ListFiles(const FString& Directory)
{
	TArray<FString> Names;
	IFileManager::Get().FindFiles(Names, *FPaths::Combine(Directory, TEXT("*")), true, false);
	TMap<FString, FString> PathsByName;
	for (const FString& Name : Names)
	{
		const FString Logical = GetLogicalName(Name);
		if (!Logical.IsEmpty() && (Name.EndsWith(TEXT(".gz")) || !PathsByName.Contains(Logical)))
		{
			PathsByName.Add(Logical, FPaths::Combine(Directory, Name));
		}
	}
	TArray<FString> Keys;
	PathsByName.GetKeys(Keys);
	Keys.Sort();
	TArray<FString> Paths;
	for (const FString& Key : Keys)
	{
		Paths.Add(PathsByName[Key]);
	}
	return Paths;
}

int32 GetNumber(const FString& Path)
{
	return FCString::Atoi(*GetLogicalName(FPaths::GetCleanFilename(Path)).RightChop(FCString::Strlen(NamePrefix)));
}

/** What one save needs to know; made on the game thread, worked off on the pool. */
struct FSaveJob
{
	FString Directory;
	FString Json;
	int32 MaxCheckpoints = 0;
	bool bCompress = false;
	bool bShutdown = false;

	/** @return the number of the new file. */
	int32 Run() const
	{
		IFileManager::Get().MakeDirectory(*Directory, true);
		TArray<FString> Existing = ListFiles(Directory);
		const int32 Number = Existing.IsEmpty() ? 0 : GetNumber(Existing.Last()) + 1;
		const FString Path = FPaths::Combine(Directory, FString::Printf(TEXT("checkpoint_%04d.json"), Number));
		const bool bSaved = CVXCheckpointFile::Write(Path, Json, bCompress);
		Report(Path, bSaved);
		// The old ones go only when the new one is there.
		for (int32 Index = 0; bSaved && Existing.Num() + 1 - Index > MaxCheckpoints && Index < Existing.Num(); ++Index)
		{
			IFileManager::Get().Delete(*Existing[Index]);
		}
		return Number;
	}

private:
	void Report(const FString& Path, bool bSaved) const
	{
		const TCHAR* Kind = bShutdown ? TEXT("shutdown ") : TEXT("");
		if (bSaved)
		{
			UE_LOG(LogCVXCheckpoint, Log, TEXT("Saved %scheckpoint %s"), Kind, *Path);
			return;
		}
		UE_LOG(LogCVXCheckpoint, Warning, TEXT("Failed to save %scheckpoint to %s"), Kind, *Path);
	}
};

struct FStoredFile
{
	FString Path;
	int64 Size = 0;
	FDateTime Time;
};

/** Every checkpoint file of the project. */
TArray<FStoredFile> FindStoredFiles()
{
	IFileManager& Files = IFileManager::Get();
	const FString Root = FCVXCheckpointManager::GetTasksDir();
	TArray<FString> Directories;
	Files.FindFiles(Directories, *FPaths::Combine(Root, TEXT("*")), false, true);
	TArray<FStoredFile> Found;
	for (const FString& Directory : Directories)
	{
		TArray<FString> Names;
		Files.FindFiles(Names, *FPaths::Combine(Root, Directory, TEXT("*checkpoint*")), true, false);
		for (const FString& Name : Names)
		{
			const FString Path = FPaths::Combine(Root, Directory, Name);
			const int64 Size = Files.FileSize(*Path);
			if (Size > 0)
			{
				Found.Add({Path, Size, Files.GetTimeStamp(*Path)});
			}
		}
	}
	return Found;
}

void PruneTo(int32 BudgetMB)
{
	const int64 Budget = static_cast<int64>(BudgetMB) << 20;
	TArray<FStoredFile> Files = FindStoredFiles();
	int64 Sum = 0;
	for (const FStoredFile& File : Files)
	{
		Sum += File.Size;
	}
	Files.Sort([](const FStoredFile& A, const FStoredFile& B) { return A.Time < B.Time; });
	int32 Pruned = 0;
	for (; Pruned < Files.Num() && Sum > Budget; ++Pruned)
	{
		Sum -= Files[Pruned].Size;
		IFileManager::Get().Delete(*Files[Pruned].Path);
	}
	if (Pruned > 0)
	{
		UE_LOG(
			LogCVXCheckpoint, Log, TEXT("M12: Pruned %d old checkpoints to stay within %dMB budget"), Pruned, BudgetMB);
	}
}
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

void FCVXCheckpointManager::SaveCheckpoint(const FCVXTask& Task)
{
	const UCVXSettings* Settings = UCVXSettings::Get();
	if (!Settings || !Settings->bEnableCheckpoints)
	{
		UE_LOG(LogCVXCheckpoint, Verbose, TEXT("SaveCheckpoint skipped for '%s': settings %s, checkpoints %s"),
			*Task.GetTaskId(), Settings ? TEXT("present") : TEXT("missing"), TEXT("off"));
		return;
	}
	const double Now = FPlatformTime::Seconds();
	const double* LastSave = LastSaveTimes.Find(Task.GetTaskId());
	if (LastSave && Now - *LastSave < MinSaveIntervalSeconds)
	{
		return;
	}
	if (!Task.GetAgentLoop())
	{
		UE_LOG(LogCVXCheckpoint, Warning, TEXT("SaveCheckpoint skipped: AgentLoop is null for task '%s'"),
			*Task.GetTaskId());
		return;
	}
	LastSaveTimes.Add(Task.GetTaskId(), Now);
	FSaveJob Job{GetCheckpointDir(Task.GetTaskId()), CVXCheckpointJson::Write(Task), Settings->MaxCheckpointsPerTask,
		Settings->bCompressCheckpoints, false};
	Queue.Add(
		[Job = MoveTemp(Job), BudgetMB = Settings->MaxCheckpointStorageMB]
		{
			if (Job.Run() % BudgetInterval == 0 && BudgetMB > 0)
			{
				PruneTo(BudgetMB);
			}
		});
}

void FCVXCheckpointManager::SaveCheckpointDirect(const FCVXTask& Task, int32 MaxCheckpoints, bool bCompress)
{
	Queue.Drain();
	FSaveJob{GetCheckpointDir(Task.GetTaskId()), CVXCheckpointJson::Write(Task), MaxCheckpoints, bCompress, true}.Run();
}

bool FCVXCheckpointManager::RestoreCheckpoint(FCVXTask& Task, const FString& Path)
{
	Queue.Drain();
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
	Queue.Drain();
	return ListFiles(GetCheckpointDir(TaskId));
}

void FCVXCheckpointManager::DeleteCheckpoints(const FString& TaskId)
{
	Queue.Drain();
	LastSaveTimes.Remove(TaskId);
	IFileManager::Get().DeleteDirectory(*GetCheckpointDir(TaskId), false, true);
}

void FCVXCheckpointManager::EnforceDiskBudget()
{
	const UCVXSettings* Settings = UCVXSettings::Get();
	if (Settings && Settings->MaxCheckpointStorageMB > 0)
	{
		Queue.Drain();
		PruneTo(Settings->MaxCheckpointStorageMB);
	}
}
