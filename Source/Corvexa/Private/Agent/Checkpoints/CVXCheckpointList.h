#pragma once

#include "CoreMinimal.h"

/** The checkpoint files of one task's directory. Any thread. */
namespace CVXCheckpointList
{
/** The paths of the files, oldest first; of two forms of one checkpoint the compressed one. */
TArray<FString> Find(const FString& Directory);

/** One above the highest number that anything in the directory is called by, 0 without any. */
int32 FindNextNumber(const FString& Directory);

/** The path of a number's file without ".gz", which a compressed file has behind it. */
FString MakePath(const FString& Directory, int32 Number);
} // namespace CVXCheckpointList
