#include "BenchFolder.h"

#include "Core/CVXSettings.h"
#include "Misc/Paths.h"
#include "SemanticSearch/CVXBM25Index.h"

#include <algorithm>
#include <benchmark/benchmark.h>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <random>
#include <string>
#include <vector>

namespace
{
namespace fs = std::filesystem;

/** Text that reads as C++: statements of names made of words, the common ones often, the rare ones once. */
class FSourceWriter
{
public:
	FSourceWriter()
	{
		const std::string Letters = "aeioubcdfghklmnprstvwz";
		for (int32 Word = 0; Word < 6000; ++Word)
		{
			std::string Text;
			for (std::size_t Length = 3 + Random() % 7; Text.size() < Length;)
			{
				Text += Letters[Random() % Letters.size()];
			}
			Text[0] = (char)(Text[0] - 'a' + 'A');
			Words.push_back(std::move(Text));
		}
		for (int32 Name = 0; Name < 60000; ++Name)
		{
			Names.push_back(MakeName());
		}
	}

	std::string MakeFile(std::size_t Bytes)
	{
		std::string Text = "#pragma once\n\n#include \"CoreMinimal.h\"\n\n";
		while (Text.size() < Bytes)
		{
			AppendFunction(Text);
		}
		return Text;
	}

private:
	/** One of many, the front ones far oftener. */
	template <typename T>
	const T& Pick(const std::vector<T>& From)
	{
		const double Share = std::uniform_real_distribution<>()(Random);
		return From[(std::size_t)(Share * Share * Share * Share * (double)From.size())];
	}

	std::string MakeName()
	{
		static const char* const Prefixes[] = {"", "F", "U", "A", "b", "Get", "Set", "Make"};
		std::string Name = Prefixes[Random() % 8];
		for (std::size_t Count = 1 + Random() % 3; Count > 0; --Count)
		{
			Name += Pick(Words);
		}
		return Name;
	}

	void AppendFunction(std::string& Text)
	{
		Text += "void " + Pick(Names) + "::" + Pick(Names) + "(const " + Pick(Names) + "& " + Pick(Names) + ")\n{\n";
		for (std::size_t Line = 3 + Random() % 20; Line > 0; --Line)
		{
			const std::string Name = Random() % 50 == 0 ? MakeName() : Pick(Names);
			switch (Random() % 5)
			{
			case 0:
				Text += "\tif (" + Name + " != nullptr && " + Pick(Names) + "->" + Pick(Names) + "())\n\t{\n\t}\n";
				break;
			case 1:
				Text += "\t// " + Pick(Words) + " the " + Pick(Words) + " of " + Pick(Words) + ".\n";
				break;
			case 2:
				Text += "\treturn " + Name + "(" + Pick(Names) + ", " + std::to_string(Random() % 1000) + ");\n\n";
				break;
			default:
				Text += "\tconst int32 " + Name + " = " + Pick(Names) + "." + Pick(Names) + "(" + Pick(Names) + ");\n";
			}
		}
		Text += "}\n\n";
	}

	std::mt19937 Random{7};
	std::vector<std::string> Words;
	std::vector<std::string> Names;
};

/** A project with 100 MB of source in some 4,000 files, made once and removed at the end. */
class FSourceTree
{
public:
	FSourceTree()
	{
		FSourceWriter Writer;
		std::size_t Written = 0;
		for (int32 Index = 0; Written < Bytes; ++Index)
		{
			const fs::path Folder = Root / "Source" / ("Module" + std::to_string(Index % 40));
			fs::create_directories(Folder);
			std::string Text = Writer.MakeFile(300 + (std::size_t)(Index * 7919 % 1000) * (Index % 4 == 0 ? 65 : 12));
			Text += Index % 200 == 0 ? "void SpawnUncommonNeedle();\n" : "";
			const fs::path Path = Folder / ("File" + std::to_string(Index) + (Index % 3 == 0 ? ".h" : ".cpp"));
			std::ofstream(Path, std::ios::binary) << Text;
			Paths.Add(FString(Path.c_str()));
			Written += Text.size();
		}
		FPaths::SetProjectFilePath(FString((Root / "Bench.uproject").c_str()));
	}
	~FSourceTree() { FPaths::SetProjectFilePath(Before); }

	static FSourceTree& Get()
	{
		static FSourceTree Tree;
		return Tree;
	}

	/** The seconds of a search by the peer, the best of three. */
	double TimeGrep() const
	{
		const std::string Line = "cd '" + Root.GetRoot().string() + "' && grep -rniF uncommonneedle Source > /dev/null";
		double Best = 1e9;
		for (int32 Round = 0; Round < 3; ++Round)
		{
			const auto Start = std::chrono::steady_clock::now();
			const bool bFound = std::system(Line.c_str()) == 0;
			const std::chrono::duration<double> Taken = std::chrono::steady_clock::now() - Start;
			Best = bFound ? std::min(Best, Taken.count()) : Best;
		}
		return Best;
	}

	/** Indexes the tree with so many documents at most, unless it is indexed so already. */
	void Index(int32 MaxDocs)
	{
		if (Indexed != MaxDocs)
		{
			UCVXSettings::Get()->BM25MaxIndexedDocs = MaxDocs;
			FCVXBM25Index::Get().IndexFiles(Paths, true);
			Indexed = MaxDocs;
		}
	}

	static constexpr std::size_t Bytes = 100'000'000;
	TArray<FString> Paths;

private:
	const FBenchFolder Root;
	const FString Before = FPaths::GetProjectFilePath();
	int32 Indexed = INDEX_NONE;
};

constexpr int32 NoLimit = 0;
constexpr int32 DefaultLimit = 5000;

void IndexSource(benchmark::State& State)
{
	FSourceTree& Tree = FSourceTree::Get();
	Tree.Index(NoLimit);
	for (auto Unused : State)
	{
		(void)Unused;
		FCVXBM25Index::Get().IndexFiles(Tree.Paths, true);
	}
	State.SetBytesProcessed((int64)State.iterations() * (int64)FSourceTree::Bytes);
	State.counters["chunks"] = FCVXBM25Index::Get().GetDocCount();
	State.counters["grep_ms"] = Tree.TimeGrep() * 1e3;
}

void RefreshUnchangedSource(benchmark::State& State)
{
	FSourceTree& Tree = FSourceTree::Get();
	Tree.Index(NoLimit);
	for (auto Unused : State)
	{
		(void)Unused;
		FCVXBM25Index::Get().IndexFiles(Tree.Paths, false);
	}
}

void Search(benchmark::State& State, const TCHAR* Query)
{
	FSourceTree& Tree = FSourceTree::Get();
	Tree.Index(NoLimit);
	int32 Hits = 0;
	for (auto Unused : State)
	{
		(void)Unused;
		Hits = FCVXBM25Index::Get().Search(Query, 5).Num();
	}
	State.counters["hits"] = Hits;
	State.counters["grep_ms"] = Tree.TimeGrep() * 1e3;
}

void SearchUncommonNames(benchmark::State& State)
{
	Search(State, TEXT("SpawnUncommonNeedle"));
}

/** Words out of the middle of the vocabulary, which many thousand chunks have. */
void SearchCommonNames(benchmark::State& State)
{
	Search(State, TEXT("Get Set Make nullptr SpawnUncommonNeedle int32 Core Minimal"));
}

void SaveIndex(benchmark::State& State)
{
	FSourceTree::Get().Index(DefaultLimit);
	for (auto Unused : State)
	{
		(void)Unused;
		benchmark::DoNotOptimize(FCVXBM25Index::Get().Save());
	}
}

void LoadIndex(benchmark::State& State)
{
	FSourceTree::Get().Index(DefaultLimit);
	bool bWhole = FCVXBM25Index::Get().Save();
	for (auto Unused : State)
	{
		(void)Unused;
		bWhole = FCVXBM25Index::Get().Load() && bWhole;
	}
	State.counters["chunks"] = bWhole ? FCVXBM25Index::Get().GetDocCount() : 0;
}

BENCHMARK(IndexSource)->Unit(benchmark::kMillisecond)->UseRealTime()->Iterations(3);
BENCHMARK(RefreshUnchangedSource)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(SearchUncommonNames)->Unit(benchmark::kMicrosecond)->UseRealTime();
BENCHMARK(SearchCommonNames)->Unit(benchmark::kMicrosecond)->UseRealTime();
BENCHMARK(SaveIndex)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(LoadIndex)->Unit(benchmark::kMillisecond)->UseRealTime();
} // namespace
