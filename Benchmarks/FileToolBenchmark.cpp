#include "BenchFolder.h"
#include "SampleText.h"

#include "HAL/FileManager.h"
#include "LaunchEngineLoop.h"
#include "Misc/FileHelper.h"
#include "Misc/Paths.h"
#include "Tools/Files/CVXListFilesTool.h"
#include "Tools/Files/CVXSearchFilesTool.h"
#include "Tools/Files/CVXSearchInFilesTool.h"

#include <algorithm>
#include <benchmark/benchmark.h>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>

namespace
{
namespace fs = std::filesystem;

/** A project with 100 MB of source in 12,000 files, made once and removed at the end. */
class FSourceTree
{
public:
	FSourceTree()
	{
		const std::string Text = SampleText::Ascii(64 * 1024);
		for (int32 Index = 0; Index < FileCount; ++Index)
		{
			const fs::path Folder = Root / ("Source/Module" + std::to_string(Index % 40)) / std::to_string(Index % 400);
			fs::create_directories(Folder);
			// From 0.3 to 55 KB, most of them small, as source files are.
			const std::size_t Size = 300 + (std::size_t)(Index * 7919 % 1000) * (Index % 4 == 0 ? 55 : 4);
			WriteFile(Folder / ("File" + std::to_string(Index) + (Index % 3 == 0 ? ".cpp" : ".h")),
				Text.substr((std::size_t)Index % 1000, Size) +
					(Index % 200 == 0 ? "\nthe Uncommon_Needle here\n" : "\n"));
		}
		Before = FPaths::GetProjectFilePath();
		FPaths::SetProjectFilePath(FString((Root / "Bench.uproject").c_str()));
	}
	~FSourceTree() { FPaths::SetProjectFilePath(Before); }

	static FSourceTree& Get()
	{
		static FSourceTree Tree;
		return Tree;
	}

	/** Runs a command in the tree, its output thrown away. @return false when it isn't installed. */
	bool Shell(const std::string& Command) const
	{
		const std::string Line = "cd '" + Root.GetRoot().string() + "' && " + Command + " > /dev/null 2>&1";
		return std::system(Line.c_str()) == 0;
	}

private:
	static constexpr int32 FileCount = 12000;

	static void WriteFile(const fs::path& Path, const std::string& Bytes)
	{
		std::FILE* File = std::fopen(Path.c_str(), "wb");
		if (File)
		{
			std::fwrite(Bytes.data(), 1, Bytes.size(), File);
			std::fclose(File);
		}
	}

	const FBenchFolder Root;
	FString Before;
};

double SecondsOf(TFunctionRef<void()> Work)
{
	const auto Start = std::chrono::steady_clock::now();
	Work();
	return std::chrono::duration<double>(std::chrono::steady_clock::now() - Start).count();
}

/** Times a tool, and a command in turns with it; tells how many times as long the tool takes, by the best of each. */
void Compare(benchmark::State& State, ICVXTool& Tool, const FString& Arguments, const std::string& Command)
{
	const FSourceTree& Tree = FSourceTree::Get();
	const bool bHasPeer = Tree.Shell(Command);
	double Ours = 1e9;
	double Theirs = 1e9;
	for (auto Unused : State)
	{
		(void)Unused;
		Ours = std::min(Ours,
			SecondsOf([&] { benchmark::DoNotOptimize(Tool.Execute(Arguments, FCVXAgentProfile()).Output.Len()); }));
		State.PauseTiming();
		Theirs = std::min(Theirs, SecondsOf([&] { (void)Tree.Shell(Command); }));
		State.ResumeTiming();
	}
	State.counters["ours_ms"] = Ours * 1e3;
	if (bHasPeer)
	{
		State.counters["peer_ms"] = Theirs * 1e3;
		State.counters["times_peer"] = Ours / Theirs;
	}
}

const TCHAR* const SearchArguments = TEXT(R"({"path":"Source","pattern":"uncommon_needle","max_results":2000})");

void SearchBesideRipgrep(benchmark::State& State)
{
	FCVXSearchInFilesTool Tool;
	Compare(State, Tool, SearchArguments, "rg --no-ignore -n -F -i uncommon_needle Source");
}

void SearchBesideGrep(benchmark::State& State)
{
	FCVXSearchInFilesTool Tool;
	Compare(State, Tool, SearchArguments, "grep -rniF uncommon_needle Source");
}

void SearchFilesBesideFind(benchmark::State& State)
{
	FCVXSearchFilesTool Tool;
	Compare(State, Tool, TEXT(R"({"path":"Source","pattern":"*.cpp"})"), "find Source -type f -iname '*.cpp'");
}

void ListFilesBesideFind(benchmark::State& State)
{
	FCVXListFilesTool Tool;
	Compare(State, Tool, TEXT(R"({"path":"Source","recursive":true,"max_results":10000})"), "find Source");
}

BENCHMARK(SearchBesideRipgrep)->Unit(benchmark::kMillisecond)->UseRealTime()->MinTime(2);
BENCHMARK(SearchBesideGrep)->Unit(benchmark::kMillisecond)->UseRealTime()->MinTime(2);
BENCHMARK(SearchFilesBesideFind)->Unit(benchmark::kMillisecond)->UseRealTime()->MinTime(1);
BENCHMARK(ListFilesBesideFind)->Unit(benchmark::kMillisecond)->UseRealTime()->MinTime(1);
} // namespace
