#include "SemanticSearch/CVXBM25Indexer.h"

#include "Misc/FileHelper.h"
#include "SemanticSearch/CVXBM25Chunker.h"

void FCVXBM25Indexer::IndexFile(const FString& Path, bool bForce)
{
	const int64 Timestamp = IFileManager::Get().GetTimeStamp(*Path).GetTicks();
	const FCVXBM25FileEntry* Known = Store.FindFile(Path);
	if (!bForce && Known && Known->Timestamp == Timestamp)
	{
		return;
	}
	Store.RemoveFile(Path);
	if (FFileHelper::LoadFileToString(FileText, *Path, FFileHelper::EHashOptions::None, FILEREAD_Silent))
	{
		AddText(Path, FileText, Timestamp);
	}
}

void FCVXBM25Indexer::AddStored(FCVXBM25Doc&& Doc)
{
	TermIds.Reset();
	Reader.Read(Doc.Text, TermIds);
	Store.AddDocument(MoveTemp(Doc), TermIds);
}

void FCVXBM25Indexer::AddText(const FString& Path, FStringView Text, int64 Timestamp)
{
	// No token goes beyond its line, so the chunks share what was read of the lines that they share.
	const TArray<FStringView> Lines = CVXBM25Chunker::SplitLines(Text);
	TermIds.Reset();
	LineStarts.Reset(Lines.Num() + 1);
	for (const FStringView& Line : Lines)
	{
		LineStarts.Add(TermIds.Num());
		Reader.Read(Line, TermIds);
	}
	LineStarts.Add(TermIds.Num());
	for (FCVXBM25Doc& Chunk : CVXBM25Chunker::ChunkFile(Path, Lines, Timestamp))
	{
		const int32 Start = LineStarts[Chunk.StartLine - 1];
		Chunk.TokenCount = LineStarts[Chunk.EndLine] - Start;
		Store.AddDocument(MoveTemp(Chunk), TArrayView<const int32>(TermIds).Mid(Start, Chunk.TokenCount));
	}
}
