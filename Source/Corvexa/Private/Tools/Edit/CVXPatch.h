#pragma once

#include "Containers/UnrealString.h"

/** What a patch says of the end of the last line of a file. */
enum class ECVXFinalLineEnd : uint8
{
	/** Nothing: it stays as it is. */
	Unsaid,
	Missing,
	Present,
};

/** A place of a file that a patch changes. */
struct FCVXDiffHunk
{
	/** Line numbers count from 1. */
	int32 OldStart = 0;
	int32 OldCount = 0;
	int32 NewStart = 0;
	int32 NewCount = 0;
	/**
	 * Each with its marker in front: a blank, "+" or "-". An empty one is an empty line that stays. A CR at the end
	 * belongs to the line's end.
	 */
	TArray<FString> Lines;
	ECVXFinalLineEnd FinalLineEnd = ECVXFinalLineEnd::Unsaid;
};

/** What a patch does to one file. */
struct FCVXFilePatch
{
	/** Without the prefix "a/" or "b/". */
	FString OldPath;
	FString NewPath;
	TArray<FCVXDiffHunk> Hunks;
};
