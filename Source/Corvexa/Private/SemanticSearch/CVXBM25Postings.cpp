#include "SemanticSearch/CVXBM25Postings.h"

void FCVXBM25Postings::AddDocument(TArrayView<const int32> TermIds)
{
	const int32 Start = DocTerms.Num();
	Counts.SetNumZeroed(FMath::Max(Counts.Num(), Terms.Num()));
	int32* const CountOf = Counts.GetData();
	for (const int32 TermId : TermIds)
	{
		if (CountOf[TermId]++ == 0)
		{
			DocTerms.Add({TermId, 0});
		}
	}
	for (FTermCount& Each : TArrayView<FTermCount>(DocTerms).Mid(Start))
	{
		Each.Count = Exchange(CountOf[Each.TermId], 0);
	}
	DocEnds.Add(DocTerms.Num());
}

void FCVXBM25Postings::KeepDocuments(TArrayView<const bool> Keep)
{
	check(Keep.Num() == DocEnds.Num());
	int32 Start = 0;
	int32 KeptTerms = 0;
	int32 KeptDocs = 0;
	for (int32 DocId = 0; DocId < Keep.Num(); ++DocId)
	{
		const int32 End = DocEnds[DocId];
		if (Keep[DocId])
		{
			FMemory::Memmove(
				DocTerms.GetData() + KeptTerms, DocTerms.GetData() + Start, sizeof(FTermCount) * (SIZE_T)(End - Start));
			KeptTerms += End - Start;
			DocEnds[KeptDocs++] = KeptTerms;
		}
		Start = End;
	}
	DocTerms.SetNum(KeptTerms);
	DocEnds.SetNum(KeptDocs);
}

int32 FCVXBM25Postings::Rebuild(bool bPruneFrequent)
{
	TArray<int32> DocCounts = CountDocuments();
	if (ForgetUnusedTerms(DocCounts))
	{
		DocCounts = CountDocuments();
	}
	int32 Pruned = 0;
	int32 Total = 0;
	ListEnds.SetNumUninitialized(Terms.Num());
	for (int32 TermId = 0; TermId < Terms.Num(); ++TermId)
	{
		const bool bPrune = bPruneFrequent && (float)DocCounts[TermId] > (float)GetDocCount() * 0.5f;
		Pruned += bPrune ? 1 : 0;
		// A list begins where its end will be: filling moves it there. A term left out gets an end without a place.
		ListEnds[TermId] = bPrune ? INDEX_NONE : Total;
		Total += bPrune ? 0 : DocCounts[TermId];
	}
	Lists.SetNumUninitialized(Total);
	FillLists();
	return Pruned;
}

TArrayView<const FCVXBM25Posting> FCVXBM25Postings::Find(FStringView Term) const
{
	const int32 TermId = Terms.Find(Term);
	if (!ListEnds.IsValidIndex(TermId))
	{
		return {};
	}
	const int32 Start = TermId == 0 ? 0 : ListEnds[TermId - 1];
	return TArrayView<const FCVXBM25Posting>(Lists).Mid(Start, ListEnds[TermId] - Start);
}

TArray<int32> FCVXBM25Postings::CountDocuments() const
{
	TArray<int32> DocCounts;
	DocCounts.SetNumZeroed(Terms.Num());
	int32* const Data = DocCounts.GetData();
	for (const FTermCount& Each : DocTerms)
	{
		++Data[Each.TermId];
	}
	return DocCounts;
}

bool FCVXBM25Postings::ForgetUnusedTerms(TArrayView<const int32> DocCounts)
{
	constexpr int32 Slack = 4096;
	int32 UsedCount = 0;
	for (const int32 Count : DocCounts)
	{
		UsedCount += Count > 0 ? 1 : 0;
	}
	if (Terms.Num() <= UsedCount * 2 + Slack)
	{
		return false;
	}
	FCVXTextTable Used;
	TArray<int32> NewIds;
	NewIds.Reserve(Terms.Num());
	for (int32 TermId = 0; TermId < Terms.Num(); ++TermId)
	{
		NewIds.Add(DocCounts[TermId] > 0 ? Used.FindOrAdd(Terms.GetText(TermId)) : INDEX_NONE);
	}
	for (FTermCount& Each : DocTerms)
	{
		Each.TermId = NewIds[Each.TermId];
	}
	Terms = MoveTemp(Used);
	Counts.Empty();
	return true;
}

void FCVXBM25Postings::FillLists()
{
	int32* const Ends = ListEnds.GetData();
	int32 At = 0;
	for (int32 DocId = 0; DocId < DocEnds.Num(); ++DocId)
	{
		for (const int32 End = DocEnds[DocId]; At < End; ++At)
		{
			const FTermCount& Each = DocTerms.GetData()[At];
			if (Ends[Each.TermId] != INDEX_NONE)
			{
				Lists.GetData()[Ends[Each.TermId]++] = {DocId, Each.Count};
			}
		}
	}
	int32 Last = 0;
	for (int32& End : ListEnds)
	{
		End = End == INDEX_NONE ? Last : End;
		Last = End;
	}
}
