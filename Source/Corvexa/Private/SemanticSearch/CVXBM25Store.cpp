#include "SemanticSearch/CVXBM25Store.h"

#include "Algo/AnyOf.h"
#include "SemanticSearch/CVXBM25Log.h"

namespace
{
bool IsDeleted(const FCVXBM25Doc& Doc)
{
	return Doc.FilePath.IsEmpty();
}
} // namespace

void FCVXBM25Store::AddDocument(FCVXBM25Doc&& Doc, TArrayView<const int32> TermIds)
{
	FCVXBM25FileEntry& File = Files.FindOrAdd(Doc.FilePath);
	File.Timestamp = Doc.FileTimestamp;
	File.DocIds.Add(Docs.Add(MoveTemp(Doc)));
	Postings.AddDocument(TermIds);
}

void FCVXBM25Store::RemoveFile(const FString& Path)
{
	FCVXBM25FileEntry File;
	if (Files.RemoveAndCopyValue(Path, File))
	{
		for (const int32 DocId : File.DocIds)
		{
			Docs[DocId].FilePath.Empty();
		}
	}
}

TArray<FString> FCVXBM25Store::FindFiles(TFunctionRef<bool(const FString&)> Predicate) const
{
	TArray<FString> Paths;
	for (const auto& File : Files)
	{
		if (Predicate(File.Key))
		{
			Paths.Add(File.Key);
		}
	}
	return Paths;
}

void FCVXBM25Store::FinalizeIndex(int32 MaxDocs)
{
	Compact();
	TrimToLimit(MaxDocs);
	const int32 Pruned = Postings.Rebuild(true);
	if (Pruned > 0)
	{
		UE_LOG(LogCVXBM25, Verbose, TEXT("BM25 H6: Pruned %d stopword terms (>50%% doc frequency)"), Pruned);
	}
	UpdateLengths(MeasureAverageLength());
}

void FCVXBM25Store::FinishLoad(float InAverageDocLength)
{
	(void)Postings.Rebuild(false);
	UpdateLengths(InAverageDocLength);
}

void FCVXBM25Store::Compact()
{
	if (!Algo::AnyOf(Docs, IsDeleted))
	{
		return;
	}
	TArray<bool> Keep;
	TArray<int32> NewIds;
	int32 Kept = 0;
	for (const FCVXBM25Doc& Doc : Docs)
	{
		Keep.Add(!IsDeleted(Doc));
		NewIds.Add(Keep.Last() ? Kept++ : INDEX_NONE);
	}
	Docs.RemoveAll(IsDeleted);
	Postings.KeepDocuments(Keep);
	for (auto& File : Files)
	{
		for (int32& DocId : File.Value.DocIds)
		{
			DocId = NewIds[DocId];
		}
		File.Value.DocIds.Remove(INDEX_NONE);
	}
}

void FCVXBM25Store::TrimToLimit(int32 MaxDocs)
{
	if (MaxDocs < 1 || Docs.Num() <= MaxDocs)
	{
		return;
	}
	const int32 ToRemove = Docs.Num() - MaxDocs;
	int32 Removed = 0;
	for (const FString& Path : SortFilesByAge())
	{
		if (Removed >= ToRemove)
		{
			break;
		}
		Removed += Files[Path].DocIds.Num();
		RemoveFile(Path);
	}
	UE_LOG(LogCVXBM25, Log, TEXT("BM25 H6: Trimmed %d docs to stay within limit of %d"), Removed, MaxDocs);
	Compact();
}

TArray<FString> FCVXBM25Store::SortFilesByAge() const
{
	TArray<FString> Paths;
	Files.GenerateKeyArray(Paths);
	Paths.StableSort([this](const FString& A, const FString& B) { return Files[A].Timestamp < Files[B].Timestamp; });
	return Paths;
}

float FCVXBM25Store::MeasureAverageLength() const
{
	int64 Total = 0;
	for (const FCVXBM25Doc& Doc : Docs)
	{
		Total += Doc.TokenCount;
	}
	return Docs.IsEmpty() ? 0.f : (float)((double)Total / Docs.Num());
}

void FCVXBM25Store::UpdateLengths(float InAverageDocLength)
{
	AverageDocLength = InAverageDocLength;
	const float Average = FMath::Max(AverageDocLength, 1.f);
	LengthNorms.Reset(Docs.Num());
	for (const FCVXBM25Doc& Doc : Docs)
	{
		// k1 = 1.5 and b = 0.75.
		LengthNorms.Add((((float)Doc.TokenCount * 0.75f) / Average) * 1.5f + 0.375f);
	}
}
