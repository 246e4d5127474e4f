#include "SemanticSearch/CVXBM25TermReader.h"

#include "SemanticSearch/CVXBM25Tokenizer.h"

namespace
{
/** Longer words are data, and don't come again. */
constexpr int32 MaxRememberedLen = 64;
/** What is remembered is forgotten when it has grown to this. */
constexpr int32 MaxRememberedChars = 32 * 1024 * 1024;
} // namespace

void FCVXBM25TermReader::Read(FStringView Text, TArray<int32>& OutTermIds)
{
	CVXBM25Tokenizer::ForEachWord(Text, [&](FStringView Word) { ReadWord(Word, OutTermIds); });
}

void FCVXBM25TermReader::ReadWord(FStringView Word, TArray<int32>& OutTermIds)
{
	if (Word.Len() > MaxRememberedLen)
	{
		Split(Word, OutTermIds);
		return;
	}
	if (Words.GetCharCount() > MaxRememberedChars)
	{
		Words.Empty();
		Spans.Empty();
		WordTerms.Empty();
	}
	const int32 Id = Words.FindOrAdd(Word);
	if (Id == Spans.Num())
	{
		const int32 Start = WordTerms.Num();
		Split(Word, WordTerms);
		Spans.Add({Start, WordTerms.Num() - Start});
	}
	OutTermIds.Append(WordTerms.GetData() + Spans[Id].Start, Spans[Id].Count);
}

void FCVXBM25TermReader::Split(FStringView Word, TArray<int32>& OutTermIds)
{
	CVXBM25Tokenizer::ForEachToken(Word, [&](FStringView Token) { OutTermIds.Add(Terms.FindOrAdd(Token)); });
}
