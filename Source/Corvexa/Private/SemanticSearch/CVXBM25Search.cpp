#include "SemanticSearch/CVXBM25Search.h"

#include "SemanticSearch/CVXBM25Tokenizer.h"

#include <algorithm>
#include <cmath>

namespace
{
/** The scores of all documents, and those that have one. */
struct FScores
{
	explicit FScores(int32 DocCount)
	{
		Scores.SetNumZeroed(DocCount);
		Scored.SetNumZeroed(DocCount);
	}

	void Add(int32 DocId, float Gain)
	{
		Scores[DocId] += Gain;
		if (!Scored[DocId])
		{
			Scored[DocId] = true;
			Hits.Add(DocId);
		}
	}

	TArray<float> Scores;
	TArray<bool> Scored;
	TArray<int32> Hits;
};

void AddToken(const FCVXBM25Store& Store, FStringView Token, FScores& Scores)
{
	const TArrayView<const FCVXBM25Posting> Postings = Store.GetPostings().Find(Token);
	const float DocCount = (float)Store.GetDocs().Num();
	const float DocsWithTerm = (float)Postings.Num();
	const float Rarity = std::log((DocCount - DocsWithTerm + 0.5f) / (DocsWithTerm + 0.5f) + 1.f);
	const TArray<float>& LengthNorms = Store.GetLengthNorms();
	for (const FCVXBM25Posting& Posting : Postings)
	{
		const float Frequency = (float)Posting.TermFrequency;
		const float Gain = Frequency * 2.5f / (LengthNorms[Posting.DocId] + Frequency);
		Scores.Add(Posting.DocId, Gain * Rarity);
	}
}
} // namespace

TArray<FCVXBM25Result> CVXBM25Search::Search(const FCVXBM25Store& Store, FStringView Query, int32 MaxResults)
{
	FScores Scores(Store.GetDocs().Num());
	CVXBM25Tokenizer::ForEachWord(Query,
		[&](FStringView Word)
		{ CVXBM25Tokenizer::ForEachToken(Word, [&](FStringView Token) { AddToken(Store, Token, Scores); }); });
	TArray<int32>& Hits = Scores.Hits;
	const int32 Count = FMath::Clamp(MaxResults, 0, Hits.Num());
	std::partial_sort(Hits.GetData(), Hits.GetData() + Count, Hits.GetData() + Hits.Num(),
		[&](int32 A, int32 B)
		{
			const float ScoreA = Scores.Scores[A];
			const float ScoreB = Scores.Scores[B];
			return ScoreA != ScoreB ? ScoreA > ScoreB : A < B;
		});
	TArray<FCVXBM25Result> Results;
	for (const int32 DocId : TArrayView<const int32>(Hits).Mid(0, Count))
	{
		const FCVXBM25Doc& Doc = Store.GetDocs()[DocId];
		Results.Add({Scores.Scores[DocId], Doc.FilePath, Doc.Text, Doc.StartLine, Doc.EndLine});
	}
	return Results;
}
