#include "Tools/Diff/CVXUnifiedDiff.h"

#include <algorithm>
#include <benchmark/benchmark.h>
#include <string>
#include <vector>

namespace
{
constexpr int LineCount = 2000;

std::string LineOf(int Line)
{
	// Every fifth line is one of few, as braces and blank lines are.
	return Line % 5 == 0 ? "\t}" : "\tstatement_number(" + std::to_string(Line) + ", of, the_file);";
}

/** 200 edits, a third of them each a change, an insertion and a removal. */
std::vector<std::string> Lines(bool bEdited)
{
	std::vector<std::string> Result;
	for (int Line = 0; Line < LineCount; ++Line)
	{
		const bool bEdit = bEdited && Line % 10 == 3;
		const int Kind = Line / 10 % 3;
		if (bEdit && Kind != 0)
		{
			Result.push_back("\tedited_statement(" + std::to_string(Line) + ");");
		}
		if (!bEdit || Kind == 1)
		{
			Result.push_back(LineOf(Line));
		}
	}
	Result.resize(LineCount, "}");
	return Result;
}

FString TextOf(const std::vector<std::string>& Lines)
{
	FString Text;
	for (const std::string& Line : Lines)
	{
		Text += FString(Line.c_str()) + TEXT("\n");
	}
	return Text;
}

void DiffOfTwoThousandLines(benchmark::State& State)
{
	const FString Old = TextOf(Lines(false));
	const FString New = TextOf(Lines(true));
	for (auto Unused : State)
	{
		(void)Unused;
		benchmark::DoNotOptimize(GenerateUnifiedDiff(Old, New, TEXT("Source/File.cpp"), 3).Len());
	}
}

/** The peer: the same table filled with a whole number for each pair of lines, which are numbers already. */
void TableOfTwoThousandLines(benchmark::State& State)
{
	std::vector<std::string> Names = Lines(false);
	const std::vector<std::string> NewLines = Lines(true);
	Names.insert(Names.end(), NewLines.begin(), NewLines.end());
	std::vector<std::string> Sorted = Names;
	std::sort(Sorted.begin(), Sorted.end());
	std::vector<int> Numbers;
	for (const std::string& Name : Names)
	{
		Numbers.push_back((int)(std::lower_bound(Sorted.begin(), Sorted.end(), Name) - Sorted.begin()));
	}
	constexpr int Width = LineCount + 1;
	for (auto Unused : State)
	{
		(void)Unused;
		std::vector<int> Table((std::size_t)Width * Width);
		for (int Row = 1; Row < Width; ++Row)
		{
			const int* Above = &Table[(std::size_t)(Row - 1) * Width];
			int* Here = &Table[(std::size_t)Row * Width];
			for (int Column = 1; Column < Width; ++Column)
			{
				Here[Column] = Numbers[Row - 1] == Numbers[LineCount + Column - 1]
					? Above[Column - 1] + 1
					: std::max(Above[Column], Here[Column - 1]);
			}
		}
		benchmark::DoNotOptimize(Table.back());
	}
}

BENCHMARK(DiffOfTwoThousandLines)->Unit(benchmark::kMillisecond);
BENCHMARK(TableOfTwoThousandLines)->Unit(benchmark::kMillisecond);
} // namespace
