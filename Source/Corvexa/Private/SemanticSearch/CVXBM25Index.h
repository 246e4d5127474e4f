#pragma once

#include "HAL/CriticalSection.h"
#include "SemanticSearch/CVXBM25Store.h"

/**
 * The lexical index of the project's source: finds chunks of files by the parts of their identifiers, without network
 * or key. Any thread may call anything; a search waits while the index is being changed.
 */
class FCVXBM25Index
{
public:
	/** Made at the first call, empty, and kept to the end of the process. */
	static FCVXBM25Index& Get();

	/** Absolute; of the project that is open. */
	static FString GetIndexFilePath();
	/** The tokens of a text in their order, repeats included, without those that say nothing. */
	static TArray<FString> Tokenize(const FString& Text);
	/** Whether a file is source that somebody wrote, by its path alone. */
	static bool ShouldIndexFile(const FString& Path);

	/**
	 * Brings the index up to date with files, which are those of the paths that `ShouldIndexFile`. A file that can't be
	 * read any more goes.
	 * @param bForceRebuild drops all else and reads every file, not only those whose time has changed.
	 */
	void IndexFiles(const TArray<FString>& Paths, bool bForceRebuild);
	/** Drops the files that aren't there any more. */
	void RemoveMissingFiles();

	/** The chunks that have a token of the query, best first. */
	TArray<FCVXBM25Result> Search(const FString& Query, int32 MaxResults) const;

	/** Writes the index to its file. @return false, with a warning and the old file in place, when that fails. */
	bool Save() const;
	/** Replaces the index by what its file holds. @return false, and no change, without a file that can be read. */
	bool Load();
	void Clear();

	/** Documents, which are chunks of files. */
	int32 GetDocCount() const;
	bool IsEmpty() const { return GetDocCount() == 0; }

private:
	FCVXBM25Index() = default;

	/** Puts another index in this one's place, which it gets in return. */
	void Swap(FCVXBM25Store& Other);

	FCVXBM25Store Store;
	mutable FRWLock Lock;
};
