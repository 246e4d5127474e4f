#pragma once

#include "SemanticSearch/CVXBM25Postings.h"

/**
 * All that is indexed: documents, the files they come from, and which terms they have. Whoever changes documents runs
 * `FinalizeIndex` before the next search. Any number of threads may read while none changes.
 */
class FCVXBM25Store
{
public:
	const TArray<FCVXBM25Doc>& GetDocs() const { return Docs; }
	const FCVXBM25Postings& GetPostings() const { return Postings; }
	const FCVXBM25FileEntry* FindFile(const FString& Path) const { return Files.Find(Path); }
	float GetAverageDocLength() const { return AverageDocLength; }
	/** What a document's length adds to the term frequency in the divisor of its score; one for each document. */
	const TArray<float>& GetLengthNorms() const { return LengthNorms; }

	/** The table of the tokens that `AddDocument` takes; its numbers are good until `FinalizeIndex`. */
	FCVXTextTable& GetTerms() { return Postings.GetTerms(); }
	/** Adds a document to those of its file. @param TermIds its tokens in any order, repeats included. */
	void AddDocument(FCVXBM25Doc&& Doc, TArrayView<const int32> TermIds);
	/** Marks the documents of a file deleted and forgets the file, if it is there. */
	void RemoveFile(const FString& Path);
	/** The paths of which a predicate is true. */
	TArray<FString> FindFiles(TFunctionRef<bool(const FString&)> Predicate) const;

	/**
	 * Drops deleted documents and what is over the limit, the oldest files first, leaves terms out that more than half
	 * of all documents have, and makes everything ready to search.
	 * @param MaxDocs below 1 means no limit.
	 */
	void FinalizeIndex(int32 MaxDocs);
	/** Makes documents ready to search as they were stored, every term included. */
	void FinishLoad(float InAverageDocLength);

private:
	void Compact();
	void TrimToLimit(int32 MaxDocs);
	/** Paths in the order of their time, the oldest first. */
	TArray<FString> SortFilesByAge() const;
	float MeasureAverageLength() const;
	void UpdateLengths(float InAverageDocLength);

	TArray<FCVXBM25Doc> Docs;
	TMap<FString, FCVXBM25FileEntry> Files;
	FCVXBM25Postings Postings;
	float AverageDocLength = 0.f;
	TArray<float> LengthNorms;
};
