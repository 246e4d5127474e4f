#include "SemanticSearch/CVXAutoRAG.h"

#include "Corvexa/SemanticSearch/SearchFixture.h"
#include "Misc/Paths.h"
#include "Support/LogCapture.h"

namespace
{
class CVXAutoRAGTest : public FSearchFixture
{
protected:
	/** The block without its heading, with the scores left out. */
	static FString GetSnippets(const TCHAR* Text, int32 MaxResults, int32 TokenBudget)
	{
		FString Block = FCVXAutoRAG::GetCodeContext(Text, MaxResults, TokenBudget);
		EXPECT_TRUE(Block.StartsWith(Heading, ESearchCase::CaseSensitive)) << testing::PrintToString(Block);
		Block.RemoveAt(0, Heading.Len());
		int32 At;
		while ((At = Block.Find(TEXT(", score "))) != INDEX_NONE)
		{
			Block.RemoveAt(At, FString(TEXT(", score 0.00")).Len());
		}
		return Block;
	}

	static constexpr FStringView Heading = TEXT("\n\n[Relevant Code Context — auto-retrieved from project index]\n");
};
} // namespace

TEST_F(CVXAutoRAGTest, ShowsTheBestSnippetsWithinTheBudget)
{
	TArray<FString> Paths = WriteOthers(20);
	Paths.Add(Write("Source/Best.cpp", "Magazine MagazineSize\nint Rounds;\n"));
	Paths.Add(Write("Source/Long.cpp", "Magazine " + std::string(400, '.') + "\n" + Lines(40, "more")));
	Index.IndexFiles(Paths, false);
	FLogCapture Log;
	const FString Best = TEXT("--- Source/Best.cpp (lines 1-2) ---\nMagazine MagazineSize\nint Rounds;\n\n");
	const FString LongHeading = TEXT("--- Source/Long.cpp (lines 1-41) ---\nMagazine ....");

	const FString All = GetSnippets(TEXT("larger MagazineSize please"), 5, 2000);
	EXPECT_TRUE(All.StartsWith(Best + LongHeading)) << testing::PrintToString(All);
	EXPECT_TRUE(All.EndsWith(TEXT("more line40\n\n"))) << testing::PrintToString(All);
	EXPECT_TRUE(Log.Contains(TEXT("Auto-RAG query: \"MagazineSize larger\"")));
	EXPECT_TRUE(Log.Contains(TEXT("Auto-RAG: injected 2 code snippets (~")));
	EXPECT_EQ(GetSnippets(TEXT("MagazineSize"), 1, 2000), Best);

	// 20 tokens for the heading, 34 / 4 + 10 for the best, 25 for 100 characters of the other.
	EXPECT_EQ(GetSnippets(TEXT("MagazineSize"), 5, 20 + 18 + 24), Best);
	EXPECT_EQ(GetSnippets(TEXT("MagazineSize"), 5, 20 + 18 + 25),
		Best + TEXT("--- Source/Long.cpp (lines 1-41) ---\nMagazine ") + FString::ChrN(91, TEXT('.')) +
			TEXT("\n... (truncated)\n\n"));
	EXPECT_EQ(GetSnippets(TEXT("MagazineSize"), 5, 20 + 17), TEXT(""));
	EXPECT_EQ(GetSnippets(TEXT("MagazineSize"), 5, -5), TEXT(""));
}

TEST_F(CVXAutoRAGTest, TheFirstSnippetIsCutWhenItIsLargerThanTheBudgetButNotWithinACharacter)
{
	TArray<FString> Paths = WriteOthers(20);
	Paths.Add(Write("Source/Long.cpp", "Magazine\n" + std::string(90, '.') + "\xF0\x9F\x94\xAB" + Lines(50, "more")));
	Index.IndexFiles(Paths, false);
	// 9 and 90 units, then half of a pair would be the hundredth.
	EXPECT_EQ(GetSnippets(TEXT("Magazine"), 5, 20 + 25),
		TEXT("--- Source/Long.cpp (lines 1-51) ---\nMagazine\n") + FString::ChrN(90, TEXT('.')) +
			TEXT("\n... (truncated)\n\n"));
	EXPECT_EQ(GetSnippets(TEXT("Magazine"), 5, 20 + 24), TEXT(""));
}

TEST_F(CVXAutoRAGTest, FilesOutsideTheProjectKeepTheirPathAndTheStoredIndexIsTakenUp)
{
	TArray<FString> Paths = WriteOthers(20);
	Paths.Add(Write("Other/Magazine.h", "Magazine\n"));
	Index.IndexFiles(Paths, false);
	ASSERT_TRUE(Index.Save());
	Index.Clear();
	EXPECT_EQ(GetSnippets(TEXT("Magazine"), 5, 2000), TEXT("--- Other/Magazine.h (lines 1-1) ---\nMagazine\n\n"));

	const FString Before = FPaths::GetProjectFilePath();
	FPaths::SetProjectFilePath(Project.Path("Inner/Inner.uproject"));
	EXPECT_EQ(
		GetSnippets(TEXT("Magazine"), 5, 2000), TEXT("--- ") + Paths.Last() + TEXT(" (lines 1-1) ---\nMagazine\n\n"));
	// Paths are compared without regard to case.
	FPaths::SetProjectFilePath(Project.Path("OTHER/Other.uproject"));
	EXPECT_EQ(GetSnippets(TEXT("Magazine"), 5, 2000), TEXT("--- Magazine.h (lines 1-1) ---\nMagazine\n\n"));
	FPaths::SetProjectFilePath(Before);
}

TEST_F(CVXAutoRAGTest, NothingFoundGivesNothing)
{
	EXPECT_EQ(FCVXAutoRAG::GetCodeContext(TEXT("Magazine"), 5, 2000), TEXT("")) << "no index, none stored";
	TArray<FString> Paths = WriteOthers(200);
	Paths.Add(Write("A.h", "Magazine\n"));
	// One word of very many counts for next to nothing.
	std::string Sparse = "Sparse";
	for (int Word = 0; Word < 4000; ++Word)
	{
		Sparse += " word" + std::to_string(Word);
	}
	Paths.Add(Write("B.h", Sparse + "\n"));
	Index.IndexFiles(Paths, false);
	EXPECT_EQ(FCVXAutoRAG::GetCodeContext(TEXT("please make it so, would you"), 5, 2000), TEXT(""));
	EXPECT_EQ(FCVXAutoRAG::GetCodeContext(TEXT("helicopter"), 5, 2000), TEXT(""));
	EXPECT_EQ(Find(TEXT("sparse")), FNames{"B.h"});
	EXPECT_EQ(FCVXAutoRAG::GetCodeContext(TEXT("sparse"), 5, 2000), TEXT(""));
	EXPECT_NE(FCVXAutoRAG::GetCodeContext(TEXT("magazine"), 5, 2000), TEXT(""));
	EXPECT_EQ(FCVXAutoRAG::GetCodeContext(TEXT("magazine"), 0, 2000), TEXT(""));
}
