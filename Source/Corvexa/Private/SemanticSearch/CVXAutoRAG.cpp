#include "SemanticSearch/CVXAutoRAG.h"

#include "Knowledge/CVXKeywordExtractor.h"
#include "Logging/LogMacros.h"
#include "Misc/Paths.h"
#include "SemanticSearch/CVXBM25Index.h"

DEFINE_LOG_CATEGORY_STATIC(LogCVXAutoRAG, Log, All);

namespace
{
constexpr float MinScore = 0.1f;
constexpr int64 HeadingTokens = 20;
constexpr int64 SnippetTokens = 10;
constexpr int64 CharsPerToken = 4;
constexpr int64 MinCutChars = 100;

/** The path within the project, or the whole one outside of it. */
FString DescribePath(FString Path)
{
	FPaths::NormalizeFilename(Path);
	const FString Project = FPaths::ConvertRelativePathToFull(FPaths::ProjectDir());
	return Path.StartsWith(Project) ? Path.RightChop(Project.Len()) : Path;
}

FString MakeHeading(const FCVXBM25Result& Hit)
{
	return FString::Printf(TEXT("--- %s (lines %d-%d, score %.2f) ---\n"), *DescribePath(Hit.FilePath), Hit.StartLine,
		Hit.EndLine, Hit.Score);
}

/** The beginning of a text, which never ends within a character. */
FStringView CutText(FStringView Text, int64 MaxChars)
{
	const int32 Len = (int32)FMath::Min<int64>(Text.Len(), MaxChars);
	const bool bHalf = Len < Text.Len() && FChar::IsHighSurrogate(Text[Len - 1]);
	return Text.Left(bHalf ? Len - 1 : Len);
}

void AppendWhole(const FCVXBM25Result& Hit, FString& Out)
{
	Out += MakeHeading(Hit);
	Out += Hit.Text;
	Out += Hit.Text.EndsWith(TEXT("\n")) ? TEXT("\n") : TEXT("\n\n");
}

void AppendCut(const FCVXBM25Result& Hit, int64 MaxChars, FString& Out)
{
	Out += MakeHeading(Hit);
	Out += CutText(Hit.Text, MaxChars);
	Out += TEXT("\n... (truncated)\n\n");
}

FString MakeBlock(const TArray<FCVXBM25Result>& Hits, int32 TokenBudget)
{
	FString Block = TEXT("\n\n[Relevant Code Context — auto-retrieved from project index]\n");
	int64 Used = HeadingTokens;
	int32 Written = 0;
	for (const FCVXBM25Result& Hit : Hits)
	{
		const int64 Cost = Hit.Text.Len() / CharsPerToken + SnippetTokens;
		if (Used + Cost > TokenBudget)
		{
			const int64 Room = (TokenBudget - Used) * CharsPerToken;
			if (Room >= MinCutChars)
			{
				AppendCut(Hit, Room, Block);
				Used = TokenBudget;
				++Written;
			}
			break;
		}
		AppendWhole(Hit, Block);
		Used += Cost;
		++Written;
	}
	UE_LOG(LogCVXAutoRAG, Log, TEXT("Auto-RAG: injected %d code snippets (~%d tokens)"), Written, (int32)Used);
	return Block;
}
} // namespace

FString FCVXAutoRAG::GetCodeContext(const FString& Text, int32 MaxResults, int32 TokenBudget)
{
	FCVXBM25Index& Index = FCVXBM25Index::Get();
	if (Index.IsEmpty() && (!Index.Load() || Index.IsEmpty()))
	{
		return FString();
	}
	const FString Query = CVXKeywordExtractor::ExtractKeywords(Text);
	if (Query.IsEmpty())
	{
		UE_LOG(LogCVXAutoRAG, Verbose, TEXT("No keywords extracted from user message"));
		return FString();
	}
	UE_LOG(LogCVXAutoRAG, Log, TEXT("Auto-RAG query: \"%s\""), *Query);
	TArray<FCVXBM25Result> Hits = Index.Search(Query, MaxResults);
	if (Hits.IsEmpty())
	{
		UE_LOG(LogCVXAutoRAG, Verbose, TEXT("No BM25 results for query"));
		return FString();
	}
	Hits.RemoveAll([](const FCVXBM25Result& Hit) { return Hit.Score < MinScore; });
	return Hits.IsEmpty() ? FString() : MakeBlock(Hits, TokenBudget);
}
