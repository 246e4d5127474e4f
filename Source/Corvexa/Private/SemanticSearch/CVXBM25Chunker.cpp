#include "SemanticSearch/CVXBM25Chunker.h"

namespace
{
FString JoinLines(TArrayView<const FStringView> Lines)
{
	int32 Len = 0;
	for (const FStringView& Line : Lines)
	{
		Len += Line.Len() + 1;
	}
	FString Text;
	TCHAR* At = Text.AppendUninitialized(Len);
	for (const FStringView& Line : Lines)
	{
		FMemory::Memcpy(At, Line.GetData(), sizeof(TCHAR) * (SIZE_T)Line.Len());
		At += Line.Len();
		*At++ = TEXT('\n');
	}
	return Text;
}
} // namespace

TArray<FStringView> CVXBM25Chunker::SplitLines(FStringView Text)
{
	TArray<FStringView> Lines;
	const TCHAR* const End = Text.GetData() + Text.Len();
	const TCHAR* Start = Text.GetData();
	while (Start != End)
	{
		const TCHAR* At = Start;
		while (At != End && *At != TEXT('\n') && *At != TEXT('\r'))
		{
			++At;
		}
		Lines.Emplace(Start, (int32)(At - Start));
		const bool bTwo = End - At >= 2 && At[0] == TEXT('\r') && At[1] == TEXT('\n');
		Start = At == End ? End : At + (bTwo ? 2 : 1);
	}
	return Lines;
}

TArray<FCVXBM25Doc> CVXBM25Chunker::ChunkFile(const FString& Path, TArrayView<const FStringView> Lines, int64 Timestamp)
{
	TArray<FCVXBM25Doc> Chunks;
	Chunks.Reserve(Lines.Num() / ChunkStep + 1);
	for (int32 Start = 0; Start < Lines.Num(); Start += ChunkStep)
	{
		const int32 End = FMath::Min(Start + ChunkLines, Lines.Num());
		FCVXBM25Doc& Chunk = Chunks.AddDefaulted_GetRef();
		Chunk.FilePath = Path;
		Chunk.StartLine = Start + 1;
		Chunk.EndLine = End;
		Chunk.Text = JoinLines(Lines.Mid(Start, End - Start));
		Chunk.FileTimestamp = Timestamp;
	}
	return Chunks;
}
