#include "Agent/Checkpoints/CVXCheckpointSave.h"

#include "Agent/Checkpoints/CVXCheckpointFile.h"
#include "Agent/Checkpoints/CVXCheckpointList.h"
#include "Agent/Checkpoints/CVXCheckpointLog.h"
#include "HAL/FileManager.h"
#include "Misc/FileHelper.h"
#include "Misc/Paths.h"

namespace
{
/** How often another program may take a number before us until we give up. */
constexpr int32 MaxTries = 100;

FString GetForm(const FString& Path, bool bCompressed)
{
	return bCompressed ? Path + TEXT(".gz") : Path;
}

int32 CountForms(const FString& Path)
{
	int32 Count = 0;
	for (const bool bCompressed : {false, true})
	{
		Count += IFileManager::Get().GetStatData(*GetForm(Path, bCompressed)).bIsValid ? 1 : 0;
	}
	return Count;
}

void DeleteForms(const FString& Path)
{
	FString Plain = Path;
	Plain.RemoveFromEnd(TEXT(".gz"));
	IFileManager::Get().Delete(*GetForm(Plain, true));
	IFileManager::Get().Delete(*Plain);
}
} // namespace

int32 FCVXCheckpointSave::Run()
{
	int32 Number = INDEX_NONE;
	if (!bAbandoned)
	{
		FString Path;
		// First: what was delegated mustn't be unknown to a conversation that has its result.
		if (!SaveDelegations())
		{
			Delegations.Empty();
		}
		Number = Write(Path);
		Report(Path, Number != INDEX_NONE);
	}
	// The old ones go only when the new one is there.
	if (Number != INDEX_NONE)
	{
		Prune();
	}
	// Whoever waits for the outcome needn't keep a whole conversation.
	Json.Empty();
	Outcome = Number != INDEX_NONE ? EOutcome::Saved : EOutcome::Failed;
	return Number;
}

int32 FCVXCheckpointSave::Write(FString& OutPath)
{
	int32 Number = CVXCheckpointList::FindNextNumber(Directory);
	for (int32 Try = 0; Try < MaxTries && !bAbandoned; ++Try, ++Number)
	{
		OutPath = CVXCheckpointList::MakePath(Directory, Number);
		if (CountForms(OutPath) > 0)
		{
			continue;
		}
		const bool bWritten = CVXCheckpointFile::Write(OutPath, Json, bCompress);
		const int32 Forms = CountForms(OutPath);
		if (bWritten && Forms < 2)
		{
			return Number;
		}
		if (bWritten)
		{
			// Another program took the number in the other form; of the two only one would ever be read.
			IFileManager::Get().Delete(*GetForm(OutPath, bCompress));
		}
		else if (Forms == 0)
		{
			return INDEX_NONE;
		}
	}
	return INDEX_NONE;
}

bool FCVXCheckpointSave::SaveDelegations() const
{
	const FString Path = FPaths::Combine(Directory, TEXT("delegations.json"));
	const bool bSaved = Delegations.IsEmpty() ||
		FFileHelper::SaveStringToFile(Delegations, *Path, FFileHelper::EEncodingOptions::ForceUTF8WithoutBOM);
	UE_CLOG(!bSaved, LogCVXCheckpoint, Warning, TEXT("Failed to save delegation history to %s"), *Path);
	return bSaved;
}

void FCVXCheckpointSave::Prune() const
{
	const TArray<FString> Files = CVXCheckpointList::Find(Directory);
	for (int32 Index = 0; Index < Files.Num() - FMath::Max(MaxCheckpoints, 1); ++Index)
	{
		DeleteForms(Files[Index]);
	}
}

void FCVXCheckpointSave::Report(const FString& Path, bool bSaved) const
{
	// Whole, so that whoever finds a line in a log finds it here.
	UE_CLOG(bSaved && bShutdown, LogCVXCheckpoint, Log, TEXT("Saved shutdown checkpoint %s"), *Path);
	UE_CLOG(bSaved && !bShutdown, LogCVXCheckpoint, Log, TEXT("Saved checkpoint %s"), *Path);
	UE_CLOG(!bSaved && bShutdown, LogCVXCheckpoint, Warning, TEXT("Failed to save shutdown checkpoint to %s"), *Path);
	UE_CLOG(!bSaved && !bShutdown, LogCVXCheckpoint, Warning, TEXT("Failed to save checkpoint to %s"), *Path);
}
