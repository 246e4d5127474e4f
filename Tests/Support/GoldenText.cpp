#include "Support/GoldenText.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>

namespace
{
std::string ReadFile(const std::filesystem::path& Path)
{
	std::ifstream File(Path, std::ios::binary);
	return std::string(std::istreambuf_iterator<char>(File), std::istreambuf_iterator<char>());
}

bool WriteFile(const std::filesystem::path& Path, const std::string& Text)
{
	std::filesystem::create_directories(Path.parent_path());
	std::ofstream File(Path, std::ios::binary);
	File << Text;
	return (bool)File.flush();
}

std::size_t FirstDifference(const std::string& Left, const std::string& Right)
{
	std::size_t At = 0;
	while (At < Left.size() && At < Right.size() && Left[At] == Right[At])
	{
		++At;
	}
	return At;
}
} // namespace

FGoldenText::FGoldenText(std::string InDataDir)
	: DataDir(std::move(InDataDir))
{
}

testing::AssertionResult FGoldenText::Matches(const std::string& Name, const std::string& Text) const
{
	const std::filesystem::path Path = std::filesystem::path(DataDir) / Name;
	if (std::getenv("CORVEXA_REWRITE_GOLDEN"))
	{
		return WriteFile(Path, Text) ? testing::AssertionSuccess()
									 : testing::AssertionFailure() << Name << " can't be written";
	}
	const std::string Recorded = ReadFile(Path);
	if (Recorded == Text)
	{
		return testing::AssertionSuccess();
	}
	const std::size_t At = FirstDifference(Recorded, Text);
	const std::size_t From = At < 60 ? 0 : At - 60;
	return testing::AssertionFailure() << Name << " differs at byte " << At << ": recorded \""
									   << Recorded.substr(From, 120) << "\", now \"" << Text.substr(From, 120)
									   << "\". Set CORVEXA_REWRITE_GOLDEN to record it anew.";
}

std::string FGoldenText::JsonLines(const std::string& Json)
{
	std::string Lines;
	std::size_t Depth = 0;
	bool bInString = false;
	const auto BreakLine = [&] { Lines += "\n" + std::string(Depth * 2, ' '); };
	for (std::size_t At = 0; At < Json.size(); ++At)
	{
		const char Char = Json[At];
		const bool bOpens = !bInString && (Char == '{' || Char == '[');
		const bool bCloses = !bInString && (Char == '}' || Char == ']');
		const bool bEmpty = bCloses && (Json[At - 1] == '{' || Json[At - 1] == '[');
		Depth -= bCloses ? 1 : 0;
		if (bCloses && !bEmpty)
		{
			BreakLine();
		}
		Lines += Char;
		Depth += bOpens ? 1 : 0;
		const bool bBreak =
			bOpens ? At + 1 < Json.size() && Json[At + 1] != '}' && Json[At + 1] != ']' : !bInString && Char == ',';
		if (bBreak)
		{
			BreakLine();
		}
		if (bInString && Char == '\\')
		{
			Lines += Json[++At];
		}
		else if (Char == '"')
		{
			bInString = !bInString;
		}
	}
	return Lines + "\n";
}
