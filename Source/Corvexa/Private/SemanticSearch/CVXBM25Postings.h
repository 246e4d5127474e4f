#pragma once

#include "SemanticSearch/CVXBM25Types.h"
#include "SemanticSearch/CVXTextTable.h"

/**
 * Which documents have a term, and how often. The terms of each document are kept beside the lists by term, so that
 * these can be made anew without reading a text again. Any number of threads may find while none changes.
 */
class FCVXBM25Postings
{
public:
	/** All terms that documents may have; numbers are good until `Rebuild`. */
	FCVXTextTable& GetTerms() { return Terms; }
	int32 GetDocCount() const { return DocEnds.Num(); }

	/** Adds a document behind the last. @param TermIds its tokens in any order, repeats included. */
	void AddDocument(TArrayView<const int32> TermIds);
	/** Removes documents; those that stay keep their order and close up. @param Keep has one place a document. */
	void KeepDocuments(TArrayView<const bool> Keep);
	/**
	 * Makes the lists by term from the documents.
	 * @param bPruneFrequent leaves out terms that more than half of all documents have. @return how many it left out.
	 */
	int32 Rebuild(bool bPruneFrequent);

	/** The documents that had the term at the last `Rebuild`, in their order; good until the next. */
	TArrayView<const FCVXBM25Posting> Find(FStringView Term) const;

private:
	struct FTermCount
	{
		int32 TermId;
		int32 Count;
	};

	TArray<int32> CountDocuments() const;
	/** Forgets the terms that no document has, when they are the most. @return whether numbers have changed. */
	bool ForgetUnusedTerms(TArrayView<const int32> DocCounts);
	void FillLists();

	FCVXTextTable Terms;
	/** The distinct terms of the documents, one document's behind the other's, and where each document's end. */
	TArray<FTermCount> DocTerms;
	TArray<int32> DocEnds;
	/** The postings of the terms in the order of their numbers, and where each term's end. */
	TArray<FCVXBM25Posting> Lists;
	TArray<int32> ListEnds;
	/** For each term 0 between two documents. */
	TArray<int32> Counts;
};
