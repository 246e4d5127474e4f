#include "SemanticSearch/CVXBM25File.h"

#include "Corvexa/SemanticSearch/SearchFixture.h"
#include "Support/FaultPlan.h"
#include "Support/LogCapture.h"

namespace
{
const std::string IndexFile = "Saved/CVX/BM25Index/index.json";

using CVXBM25FileTest = FSearchFixture;
} // namespace

TEST_F(CVXBM25FileTest, TheStoredIndexComesBackWithItsTimes)
{
	// Ticks that a double doesn't hold.
	constexpr int64 OddTicks = 10000001;
	TArray<FString> Paths = WriteOthers(1);
	Paths.Add(Write("Source/A \"quoted\".cpp", Lines(90, "wörd \\\" \x01"), OddTicks));
	Index.IndexFiles(Paths, false);
	const TArray<FCVXBM25Result> Before = Index.Search(TEXT("line7"), 10);
	ASSERT_EQ(Before.Num(), 1);
	FLogCapture Log;
	ASSERT_TRUE(Index.Save());
	EXPECT_TRUE(Log.Contains(TEXT("BM25: Saved 3 docs → ") + FCVXBM25Index::GetIndexFilePath()));
	EXPECT_EQ(FCVXBM25Index::GetIndexFilePath(), Project.Path(IndexFile));
	EXPECT_EQ(Find(TEXT("wörd")), FNames()) << "two chunks of three are more than half";

	Index.Clear();
	ASSERT_TRUE(Index.Load());
	EXPECT_TRUE(Log.Contains(TEXT("BM25: Loaded 3 docs from ") + FCVXBM25Index::GetIndexFilePath()));
	const TArray<FCVXBM25Result> After = Index.Search(TEXT("line7"), 10);
	ASSERT_EQ(After.Num(), 1);
	EXPECT_EQ(After[0].Score, Before[0].Score);
	EXPECT_EQ(After[0].Text, Before[0].Text);
	EXPECT_EQ(After[0].FilePath, Before[0].FilePath);
	EXPECT_EQ(After[0].EndLine, 80);
	EXPECT_EQ(Find(TEXT("wörd")), FNames{"Source/A \"quoted\".cpp"}) << "frequent terms count until the next change";

	const FDateTime Time = IFileManager::Get().GetTimeStamp(*Paths[1]);
	Project.Write("Source/A \"quoted\".cpp", "changed\n");
	ASSERT_TRUE(IFileManager::Get().SetTimeStamp(*Paths[1], Time));
	Index.IndexFiles(Paths, false);
	EXPECT_EQ(Index.GetDocCount(), 3) << "a file whose time is the stored one isn't read again";
	EXPECT_EQ(Find(TEXT("wörd")), FNames());
}

TEST_F(CVXBM25FileTest, FieldsStandInTheirOrderAndNumbersWithAllDigits)
{
	FString Json;
	FCVXBM25Doc Doc{TEXT("/p/a.h"), 1, 2, TEXT("a\t\"b\"\n"), 3, 638000000000000007};
	ASSERT_TRUE(CVXBM25File::Write({Doc, FCVXBM25Doc(), Doc}, 1.5f, Json));
	const FString Text = TEXT(R"({"fp":"/p/a.h","sl":1,"el":2,"tx":"a\t\"b\"\n","tc":3,"mt":638000000000000007})");
	EXPECT_EQ(Json, TEXT("{\"docs\":[") + Text + TEXT(",") + Text + TEXT("],\"avg\":1.5}"));
}

TEST_F(CVXBM25FileTest, ReadsWhatOthersWroteAndMakesTheBestOfOddFields)
{
	FCVXBM25Contents Contents;
	ASSERT_TRUE(CVXBM25File::Read(TEXT(R"({"version":9,"docs":[
		{"fp":"/a.h","sl":1.0,"el":2.9,"tx":"alpha","tc":4e0,"mt":6.3800000000000001e+17,"new":[{}]},
		{"fp":""}, 7, [], null, {"tx":"no path"},
		{"mt":-5,"fp":"/b.h","sl":"1","el":99999999999,"tx":5,"tc":-3},
		{"fp":"/c.h","mt":99999999999999999999}],"avg":"none","avg":2.5} )"),
		Contents));
	ASSERT_EQ(Contents.Docs.Num(), 3);
	EXPECT_EQ(Contents.AverageDocLength, 2.5f);
	const FCVXBM25Doc& A = Contents.Docs[0];
	EXPECT_EQ(A.StartLine, 1);
	EXPECT_EQ(A.EndLine, 2);
	EXPECT_EQ(A.TokenCount, 4);
	EXPECT_EQ(A.FileTimestamp, 638000000000000000);
	const FCVXBM25Doc& B = Contents.Docs[1];
	EXPECT_EQ(B.StartLine, 0);
	EXPECT_EQ(B.EndLine, MAX_int32);
	EXPECT_EQ(B.TokenCount, 0);
	EXPECT_EQ(B.FileTimestamp, -5);
	EXPECT_TRUE(B.Text.IsEmpty());
	EXPECT_EQ(Contents.Docs[2].FileTimestamp, MAX_int64);
}

TEST_F(CVXBM25FileTest, ADamagedFileLeavesTheIndexAsItIs)
{
	TArray<FString> Paths = WriteOthers(3);
	Paths.Add(Write("A.h", "alpha\n"));
	EXPECT_FALSE(Index.Load()) << "there is none";
	Index.IndexFiles(Paths, false);
	ASSERT_TRUE(Index.Save());
	const std::string Whole = Project.Read(IndexFile);
	std::vector<std::string> Damaged = {"", "null", "[]", "{}", "{\"docs\":{}}", "{\"avg\":1}",
		"{\"docs\":[],\"docs\":1}", Whole + "x", Whole + Whole, "\xff\xfe" + Whole,
		"{\"docs\":" + std::string(100000, '[')};
	for (std::size_t Bytes = 0; Bytes < Whole.size(); ++Bytes)
	{
		Damaged.push_back(Whole.substr(0, Bytes));
	}
	for (const std::string& Bytes : Damaged)
	{
		Project.Write(IndexFile, Bytes);
		ASSERT_FALSE(Index.Load()) << Bytes.substr(0, 1000);
	}
	EXPECT_EQ(Index.GetDocCount(), 4);
	EXPECT_EQ(Find(TEXT("alpha")), FNames{"A.h"});
	Project.Write(IndexFile, Whole);
	Index.Clear();
	EXPECT_TRUE(Index.Load());
	EXPECT_EQ(Find(TEXT("alpha")), FNames{"A.h"});
}

TEST_F(CVXBM25FileTest, ASaveThatFailsKeepsTheFileThatWasThere)
{
	TArray<FString> Paths = WriteOthers(3);
	Index.IndexFiles(Paths, false);
	ASSERT_TRUE(Index.Save());
	const std::string Old = Project.Read(IndexFile);
	Paths.Add(Write("A.h", "alpha\n"));
	Index.IndexFiles(Paths, false);
	const int32 Failures = FFaultPlan::ForEach(EHostFault::File, FFaultPlan::EHow::FromThereOn,
		[&](int32 Nth)
		{
			const FLogCapture Log;
			const bool bSaved = Index.Save();
			EXPECT_EQ(bSaved, Project.Read(IndexFile) != Old) << "call " << Nth;
			EXPECT_EQ(Log.Contains(TEXT("BM25: Failed to write index to ")), !bSaved) << "call " << Nth;
		});
	EXPECT_GT(Failures, 0);
	Index.Clear();
	ASSERT_TRUE(Index.Load());
	EXPECT_EQ(Index.GetDocCount(), 4);
}
