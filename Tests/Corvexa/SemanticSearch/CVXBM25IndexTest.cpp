#include "SemanticSearch/CVXBM25Index.h"

#include "Async/Async.h"
#include "Corvexa/SemanticSearch/SearchFixture.h"
#include "Support/LogCapture.h"
#include "Templates/Atomic.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <map>
#include <random>
#include <sstream>
#include <vector>

namespace
{
using CVXBM25IndexTest = FSearchFixture;

/** A document of one chunk as words, and the textbook over all of them. */
using FWords = std::vector<std::string>;

std::vector<float> ScoreAll(const std::vector<FWords>& Docs, const FWords& Query)
{
	const float Count = (float)Docs.size();
	float Average = 0;
	for (const FWords& Doc : Docs)
	{
		Average += (float)Doc.size() / Count;
	}
	std::vector<float> Scores(Docs.size());
	for (const std::string& Word : Query)
	{
		std::vector<float> Frequencies;
		float DocsWithWord = 0;
		for (const FWords& Doc : Docs)
		{
			Frequencies.push_back((float)std::count(Doc.begin(), Doc.end(), Word));
			DocsWithWord += Frequencies.back() > 0 ? 1.f : 0.f;
		}
		const float Idf = std::log((Count - DocsWithWord + 0.5f) / (DocsWithWord + 0.5f) + 1.f);
		for (std::size_t Doc = 0; Doc < Docs.size() && DocsWithWord <= Count / 2; ++Doc)
		{
			const float Length = (float)Docs[Doc].size() / std::max(Average, 1.f);
			Scores[Doc] += Idf * Frequencies[Doc] * 2.5f / (Frequencies[Doc] + 1.5f * (0.25f + 0.75f * Length));
		}
	}
	return Scores;
}

std::string RandomText(std::mt19937& Random, int32 Words)
{
	std::string Text;
	for (int32 Word = 0; Word < Words; ++Word)
	{
		// Small numbers come often, so that there are terms of every frequency, and those that are pruned.
		const double Share = std::uniform_real_distribution<>()(Random);
		Text += "word" + std::to_string((int)(Share * Share * Share * 60)) + (Random() % 8 == 0 ? "\n" : " ");
	}
	return Text + "\n";
}
} // namespace

TEST_F(CVXBM25IndexTest, ScoresAsTheTextbookSays)
{
	std::mt19937 Random(5);
	std::vector<FWords> Docs;
	TArray<FString> Paths;
	for (int32 File = 0; File < 60; ++File)
	{
		const std::string Text = RandomText(Random, 1 + (int32)(Random() % 200));
		Paths.Add(Write("Source/" + std::to_string(1000 + File) + ".cpp", Text));
		std::istringstream Stream(Text);
		Docs.emplace_back(std::istream_iterator<std::string>(Stream), std::istream_iterator<std::string>());
	}
	Index.IndexFiles(Paths, true);
	ASSERT_EQ(Index.GetDocCount(), 60) << "one chunk a file";
	int32 Hits = 0;
	for (int32 Query = 0; Query < 100; ++Query)
	{
		FWords Words;
		FString Text;
		for (int32 Word = 0; Word < 1 + Query % 6; ++Word)
		{
			Words.push_back("word" + std::to_string(Random() % 62));
			Text += FString(Words.back().c_str()) + TEXT(" ");
		}
		const std::vector<float> Expected = ScoreAll(Docs, Words);
		const TArray<FCVXBM25Result> Results = Index.Search(Text, 1000);
		ASSERT_EQ(Results.Num(), std::count_if(Expected.begin(), Expected.end(), [](float Score) { return Score > 0; }))
			<< testing::PrintToString(Text);
		float Last = 1e9f;
		for (const FCVXBM25Result& Result : Results)
		{
			const float Score = Expected[(std::size_t)Paths.Find(Result.FilePath)];
			EXPECT_NEAR(Result.Score, Score, 1e-5f * Score) << testing::PrintToString(Text + Result.FilePath);
			EXPECT_LE(Result.Score, Last);
			Last = Result.Score;
		}
		const TArray<FCVXBM25Result> Best = Index.Search(Text, 3);
		for (int32 Hit = 0; Hit < Best.Num(); ++Hit)
		{
			EXPECT_EQ(Best[Hit].FilePath, Results[Hit].FilePath);
		}
		EXPECT_EQ(Best.Num(), FMath::Min(3, Results.Num()));
		Hits += Results.Num();
	}
	EXPECT_GT(Hits, 500) << "most queries find something";
}

TEST_F(CVXBM25IndexTest, FindsPartsOfNamesAndNothingForWordsThatSayNothing)
{
	TArray<FString> Paths = WriteOthers(3);
	Paths.Add(Write("Source/Spawner.cpp", "void f()\n{\n\tGetWorld()->SpawnActor(Class);\n}\n"));
	Index.IndexFiles(Paths, false);
	const TArray<FCVXBM25Result> Hits = Index.Search(TEXT("where do we SPAWN it"), 10);
	ASSERT_EQ(Hits.Num(), 1);
	EXPECT_EQ(Hits[0].FilePath, Paths.Last());
	EXPECT_EQ(Hits[0].Text, TEXT("void f()\n{\n\tGetWorld()->SpawnActor(Class);\n}\n"));
	EXPECT_EQ(Hits[0].StartLine, 1);
	EXPECT_EQ(Hits[0].EndLine, 4);
	for (const TCHAR* Query : {TEXT(""), TEXT("the const 42"), TEXT("absent"), TEXT("filler")})
	{
		EXPECT_TRUE(Index.Search(Query, 10).IsEmpty()) << testing::PrintToString(FString(Query));
	}
	EXPECT_TRUE(Index.Search(TEXT("spawn"), 0).IsEmpty());
	EXPECT_TRUE(Index.Search(TEXT("spawn"), -1).IsEmpty());
}

TEST_F(CVXBM25IndexTest, TakesSourceThatSomebodyWrote)
{
	const struct
	{
		const TCHAR* Path;
		bool bTaken;
	} Cases[] = {
		{TEXT("/p/Source/A.cpp"), true},
		{TEXT("/p/Source/A.H"), true},
		{TEXT("/p/Shaders/A.usf"), true},
		{TEXT("/p/Shaders/A.ush"), true},
		{TEXT("/p/Shaders/A.hlsl"), true},
		{TEXT("/p/Source/A.Build.cs"), true},
		{TEXT("/p/Source/A.hpp"), false},
		{TEXT("/p/Source/A.c"), false},
		{TEXT("/p/Source/cpp"), false},
		{TEXT("/p/Intermediate/A.cpp"), false},
		{TEXT("/p/Plugins/X/BINARIES/A.h"), false},
		{TEXT("/p/Source/ThirdParty/zlib/A.h"), false},
		{TEXT("/p/DerivedDataCache/A.h"), false},
		{TEXT("/p/build/A.h"), false},
		{TEXT("/p/Saved/A.h"), false},
		{TEXT("/p/.git/A.h"), false},
		{TEXT("/p/node_modules/A.h"), false},
		{TEXT("/p/Builder/SavedGames/A.h"), true},
	};
	for (const auto& Case : Cases)
	{
		EXPECT_EQ(FCVXBM25Index::ShouldIndexFile(Case.Path), Case.bTaken) << testing::PrintToString(FString(Case.Path));
	}
}

TEST_F(CVXBM25IndexTest, AFileIsReadAnewWhenItsTimeHasChangedAndGoesWhenItCantBeRead)
{
	TArray<FString> Paths = WriteOthers(6);
	Paths.Add(Write("A.h", "alpha\n", 1));
	Paths.Add(Write("Empty.h", ""));
	Paths.Add(Write("Note.txt", "alpha\n"));
	Index.IndexFiles(Paths, false);
	EXPECT_EQ(Index.GetDocCount(), 7);

	Write("A.h", "beta\n", 1);
	Index.IndexFiles(Paths, false);
	EXPECT_EQ(Find(TEXT("alpha")), FNames{"A.h"}) << "by its time it is the same";
	Index.IndexFiles({Project.Path("A.h")}, true);
	EXPECT_EQ(Index.GetDocCount(), 1) << "a rebuild drops all else";
	Index.IndexFiles(Paths, false);
	EXPECT_EQ(Find(TEXT("beta")), FNames{"A.h"});

	Write("A.h", "gamma\n", 2);
	Index.IndexFiles(Paths, false);
	EXPECT_EQ(Find(TEXT("alpha beta")), FNames());
	EXPECT_EQ(Find(TEXT("gamma")), FNames{"A.h"});

	ASSERT_TRUE(IFileManager::Get().Delete(*Project.Path("A.h")));
	const FLogCapture Log;
	Index.IndexFiles(Paths, false);
	EXPECT_EQ(Index.GetDocCount(), 6);
	EXPECT_TRUE(Log.Lines().IsEmpty()) << "it is missed without a word";
	Write("A.h", "gamma\n", 2);
	Index.IndexFiles(Paths, false);
	EXPECT_EQ(Find(TEXT("gamma")), FNames{"A.h"});

	ASSERT_TRUE(IFileManager::Get().Delete(*Project.Path("A.h")));
	ASSERT_TRUE(IFileManager::Get().Delete(*Paths[0]));
	EXPECT_EQ(Index.GetDocCount(), 7);
	Index.RemoveMissingFiles();
	EXPECT_EQ(Index.GetDocCount(), 5);
	Index.Clear();
	EXPECT_TRUE(Index.IsEmpty());
}

TEST_F(CVXBM25IndexTest, ManySmallChangesLeaveTheSameIndexAsARebuild)
{
	std::mt19937 Random(11);
	std::map<std::string, FString> Files;
	const auto Answers = [&]
	{
		std::multiset<std::string> All;
		for (int32 Word = 0; Word < 60; ++Word)
		{
			for (const FCVXBM25Result& Hit : Index.Search(FString::Printf(TEXT("word%d fresh%d"), Word, Word), 1000))
			{
				char Line[600];
				std::snprintf(Line, sizeof(Line), "%d %s:%d %.9g", Word,
					std::string(Hit.FilePath.begin(), Hit.FilePath.end()).c_str(), Hit.StartLine, (double)Hit.Score);
				All.insert(Line);
			}
		}
		return All;
	};
	for (int32 Round = 0; Round < 30; ++Round)
	{
		for (int32 Change = 0; Change < 5; ++Change)
		{
			const std::string Name = "Source/" + std::to_string(Random() % 25) + ".h";
			if (Files.count(Name) && Random() % 4 == 0)
			{
				ASSERT_TRUE(IFileManager::Get().Delete(*Files[Name]));
				Files.erase(Name);
				continue;
			}
			// Terms that come and go by the thousand, so that those without a document are forgotten.
			std::string Text = RandomText(Random, (int32)(Random() % 1500));
			for (int32 Fresh = 0; Fresh < 300; ++Fresh)
			{
				Text += "x" + std::to_string(Random()) + " ";
			}
			Files[Name] = Write(Name, Text + "fresh" + std::to_string(Random() % 60) + "\n", Round);
		}
		TArray<FString> Paths;
		for (const auto& File : Files)
		{
			Paths.Add(File.second);
		}
		Index.RemoveMissingFiles();
		Index.IndexFiles(Paths, false);
		const auto Incremental = Answers();
		if (Round % 5 == 4)
		{
			const int32 DocCount = Index.GetDocCount();
			Index.IndexFiles(Paths, true);
			ASSERT_EQ(Index.GetDocCount(), DocCount);
			ASSERT_EQ(Answers(), Incremental) << "in round " << Round;
			EXPECT_FALSE(Incremental.empty());
		}
	}
}

TEST_F(CVXBM25IndexTest, TheOldestFilesGoWholeWhenThereAreTooManyChunks)
{
	TArray<FString> Paths;
	Paths.Add(Write("Middle.h", Lines(130, "middle"), 2));
	Paths.Add(Write("Old.h", Lines(200, "old"), 1));
	Paths.Add(Write("Young.h", Lines(130, "young"), 3));
	UCVXSettings::Get()->BM25MaxIndexedDocs = 0;
	Index.IndexFiles(Paths, true);
	EXPECT_EQ(Index.GetDocCount(), 10) << "0 is no limit";
	FLogCapture Log;
	UCVXSettings::Get()->BM25MaxIndexedDocs = 10;
	Index.IndexFiles(Paths, true);
	EXPECT_EQ(Index.GetDocCount(), 10);
	EXPECT_TRUE(Log.Lines().IsEmpty());

	UCVXSettings::Get()->BM25MaxIndexedDocs = 5;
	Index.IndexFiles({}, false);
	EXPECT_TRUE(Log.Contains(TEXT("BM25 H6: Trimmed 7 docs to stay within limit of 5")));
	EXPECT_EQ(Index.GetDocCount(), 3);
	EXPECT_EQ(Find(TEXT("line125")), FNames()) << "the last chunks of the file are more than half of all";
	EXPECT_EQ(Find(TEXT("line5")), FNames{"Young.h"});
}

TEST_F(CVXBM25IndexTest, ReadersSeeWholeIndexesWhileAnotherThreadIndexes)
{
	TArray<FString> Paths = WriteOthers(40);
	for (int32 File = 0; File < 20; ++File)
	{
		Paths.Add(Write("Source/" + std::to_string(File) + ".h", Lines(40, "needle")));
	}
	Index.IndexFiles(Paths, true);
	ASSERT_TRUE(Index.Save());
	TAtomic<bool> bDone{false};
	auto Writer = Async(EAsyncExecution::Thread,
		[&]
		{
			for (int32 Round = 0; Round < 30; ++Round)
			{
				Index.IndexFiles(Paths, true);
				(void)Index.Load();
				Index.RemoveMissingFiles();
			}
			bDone = true;
		});
	int32 Wrong = 0;
	do
	{
		Wrong += Index.Search(TEXT("needle"), 100).Num() == 20 && Index.GetDocCount() == 60 ? 0 : 1;
		Wrong += Index.Save() ? 0 : 1;
	} while (!bDone);
	Writer.Wait();
	EXPECT_EQ(Wrong, 0);
}
