#pragma once

#include "SemanticSearch/CVXTextTable.h"

/**
 * Reads the tokens of texts as numbers of a table. Source repeats its identifiers, so each is cut into tokens once and
 * looked up from then on. One thread at a time, for one run of indexing.
 */
class FCVXBM25TermReader
{
public:
	/** @param InTerms gets the tokens that it hasn't; keeps its numbers while this lives. */
	explicit FCVXBM25TermReader(FCVXTextTable& InTerms)
		: Terms(InTerms)
	{
	}

	/** Appends the tokens of a text in their order, repeats included, without stop tokens. */
	void Read(FStringView Text, TArray<int32>& OutTermIds);

private:
	struct FSpan
	{
		int32 Start;
		int32 Count;
	};

	void ReadWord(FStringView Word, TArray<int32>& OutTermIds);
	void Split(FStringView Word, TArray<int32>& OutTermIds);

	FCVXTextTable& Terms;
	FCVXTextTable Words;
	/** The tokens of each word, one word's behind the other's. */
	TArray<FSpan> Spans;
	TArray<int32> WordTerms;
};
