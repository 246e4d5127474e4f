#include "Agent/Checkpoints/CVXCheckpointBudget.h"

#include "Agent/Checkpoints/CVXCheckpointLog.h"
#include "HAL/FileManager.h"
#include "Misc/Paths.h"

namespace
{
struct FStoredFile
{
	FString Path;
	int64 Size = 0;
	FDateTime Time;

	/** By age; of one moment in the order of their numbers. */
	bool operator<(const FStoredFile& Other) const
	{
		return Time == Other.Time ? Path < Other.Path : Time < Other.Time;
	}
};

/** Every checkpoint file of the project. */
TArray<FStoredFile> FindStoredFiles(const FString& TasksDir)
{
	IFileManager& Files = IFileManager::Get();
	TArray<FString> Directories;
	Files.FindFiles(Directories, *FPaths::Combine(TasksDir, TEXT("*")), false, true);
	TArray<FStoredFile> Found;
	for (const FString& Directory : Directories)
	{
		TArray<FString> Names;
		Files.FindFiles(Names, *FPaths::Combine(TasksDir, Directory, TEXT("*checkpoint*")), true, false);
		for (const FString& Name : Names)
		{
			const FString Path = FPaths::Combine(TasksDir, Directory, Name);
			const FFileStatData Data = Files.GetStatData(*Path);
			if (Data.FileSize > 0)
			{
				Found.Add({Path, Data.FileSize, Data.ModificationTime});
			}
		}
	}
	return Found;
}
} // namespace

void CVXCheckpointBudget::PruneTo(const FString& TasksDir, int32 BudgetMB)
{
	const int64 Budget = static_cast<int64>(BudgetMB) << 20;
	TArray<FStoredFile> Files = FindStoredFiles(TasksDir);
	int64 Sum = 0;
	for (const FStoredFile& File : Files)
	{
		Sum += File.Size;
	}
	Files.Sort();
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
