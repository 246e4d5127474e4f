#include "SemanticSearch/CVXBM25TermReader.h"

#include "SemanticSearch/CVXBM25Tokenizer.h"

namespace
{
/** A power of two. */
constexpr int32 Places = 8192;
} // namespace

FCVXBM25TermReader::FCVXBM25TermReader(FCVXTextTable& InTerms)
	: Terms(InTerms)
{
	Remembered.AddDefaulted(Places);
}

void FCVXBM25TermReader::Read(FStringView Text, TArray<int32>& OutTermIds)
{
	CVXBM25Tokenizer::ForEachWord(Text, [&](FStringView Word) { ReadWord(Word, OutTermIds); });
}

void FCVXBM25TermReader::ReadWord(FStringView Word, TArray<int32>& OutTermIds)
{
	if (Word.Len() > FRemembered::MaxLen)
	{
		Split(Word, OutTermIds);
		return;
	}
	const uint32 Hash = StringSearch::HashCaseSensitive(Word.GetData(), Word.Len());
	FRemembered& Place = Remembered.GetData()[Hash % Places];
	const int32 Start = OutTermIds.Num();
	if (!Place.Holds(Word))
	{
		Split(Word, OutTermIds);
		Place.Remember(Word, TArrayView<const int32>(OutTermIds).Mid(Start));
		return;
	}
	OutTermIds.AddUninitialized(Place.TermCount);
	// So few are copied one by one more quickly than as memory.
	for (int32 Index = 0; Index < Place.TermCount; ++Index)
	{
		OutTermIds.GetData()[Start + Index] = Place.TermIds[Index];
	}
}

void FCVXBM25TermReader::Split(FStringView Word, TArray<int32>& OutTermIds)
{
	CVXBM25Tokenizer::ForEachToken(Word, [&](FStringView Token) { OutTermIds.Add(Terms.FindOrAdd(Token)); });
}

void FCVXBM25TermReader::FRemembered::Remember(FStringView Word, TArrayView<const int32> WordTerms)
{
	if (WordTerms.Num() > MaxTerms)
	{
		return;
	}
	Len = Word.Len();
	TermCount = WordTerms.Num();
	FMemory::Memcpy(Text, Word.GetData(), sizeof(TCHAR) * (SIZE_T)Len);
	FMemory::Memcpy(TermIds, WordTerms.GetData(), sizeof(int32) * (SIZE_T)TermCount);
}
