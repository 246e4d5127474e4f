#pragma once

#include "SemanticSearch/CVXBM25Store.h"
#include "SemanticSearch/CVXBM25TermReader.h"

/** One run of indexing: brings files into a store, which the caller finalizes behind it. One thread at a time. */
class FCVXBM25Indexer
{
public:
	/** @param InStore must outlive the run, and isn't finalized during it. */
	explicit FCVXBM25Indexer(FCVXBM25Store& InStore)
		: Store(InStore)
		, Reader(InStore.GetTerms())
	{
	}

	/**
	 * Reads a file anew if its time isn't the one in the store; one that can't be read, or is empty, goes.
	 * @param Path normalised. @param bForce reads it whatever its time is.
	 */
	void IndexFile(const FString& Path, bool bForce);
	/** Adds a chunk as it is, its count of tokens included. */
	void AddStored(FCVXBM25Doc&& Doc);

private:
	void AddText(const FString& Path, FStringView Text, int64 Timestamp);

	FCVXBM25Store& Store;
	FCVXBM25TermReader Reader;
	/** Used again from one file to the next. */
	FString FileText;
	TArray<int32> TermIds;
	/** Where in `TermIds` the terms of each line begin, and where the last line's end. */
	TArray<int32> LineStarts;
};
