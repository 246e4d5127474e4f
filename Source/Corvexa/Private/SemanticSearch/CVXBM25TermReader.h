#pragma once

#include "SemanticSearch/CVXTextCompare.h"
#include "SemanticSearch/CVXTextTable.h"

/**
 * Reads the tokens of texts as numbers of a table. Source repeats its identifiers, so the tokens of those read lately
 * are remembered, in no more room than stays close to the processor. One thread at a time, for one run of indexing.
 */
class FCVXBM25TermReader
{
public:
	/** @param InTerms gets the tokens that it hasn't; keeps its numbers while this lives. */
	explicit FCVXBM25TermReader(FCVXTextTable& InTerms);

	/** Appends the tokens of a text in their order, repeats included, without stop tokens. */
	void Read(FStringView Text, TArray<int32>& OutTermIds);

private:
	/** A word and its tokens. Longer words, and those with more tokens, aren't remembered. */
	struct FRemembered
	{
		static constexpr int32 MaxLen = 28;
		static constexpr int32 MaxTerms = 6;

		bool Holds(FStringView Word) const
		{
			return Len == Word.Len() && CVXTextCompare::IsSame(Text, Word.GetData(), Len);
		}
		void Remember(FStringView Word, TArrayView<const int32> WordTerms);

		TCHAR Text[MaxLen];
		/** 0 while no word is remembered here. */
		int32 Len = 0;
		int32 TermCount = 0;
		int32 TermIds[MaxTerms];
	};

	void ReadWord(FStringView Word, TArray<int32>& OutTermIds);
	void Split(FStringView Word, TArray<int32>& OutTermIds);

	FCVXTextTable& Terms;
	/** Each word has one place, which the latest of those that share it takes. */
	TArray<FRemembered> Remembered;
};
