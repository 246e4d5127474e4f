#pragma once

#include "CoreMinimal.h"

/** One chunk of one source file. */
struct FCVXBM25Doc
{
	/** Normalised and absolute. Empty marks a deleted document until the next compaction. */
	FString FilePath;
	/** Counted from 1. */
	int32 StartLine = 0;
	/** The last line of the chunk itself. */
	int32 EndLine = 0;
	/** The lines, each followed by a line feed. */
	FString Text;
	/** How many tokens the text has. */
	int32 TokenCount = 0;
	/** When the file was last changed, in ticks of `FDateTime`. */
	int64 FileTimestamp = 0;
};

/** What is known of one file in the index. */
struct FCVXBM25FileEntry
{
	/** Its documents, as positions in the array of all. */
	TArray<int32> DocIds;
	/** As in its documents. */
	int64 Timestamp = 0;
};

/** That a document has a term, and how often. */
struct FCVXBM25Posting
{
	int32 DocId = 0;
	int32 TermFrequency = 0;
};

/** One hit of a search. */
struct FCVXBM25Result
{
	/** The higher the better. */
	float Score = 0.f;
	FString FilePath;
	FString Text;
	/** Counted from 1; the last line is in the text too. */
	int32 StartLine = 0;
	int32 EndLine = 0;
};
