#include "Tools/Diff/CVXUnifiedDiff.h"

#include "../ToolFixture.h"
#include "Support/ProcessProbe.h"
#include "Tools/Diff/CVXLineScript.h"

#include <random>

namespace
{
FString Diff(const TCHAR* Old, const TCHAR* New)
{
	return GenerateUnifiedDiff(Old, New, TEXT("f.txt"), 3);
}

TEST(CVXUnifiedDiff, ShowsChangesWithThreeLinesAround)
{
	EXPECT_EQ(
		Diff(TEXT("a\nb\nc\n"), TEXT("a\nX\nc")), TEXT("--- a/f.txt\n+++ b/f.txt\n@@ -1,3 +1,3 @@\n a\n-b\n+X\n c\n"));
	EXPECT_EQ(Diff(TEXT("1\n2\n3\n4\n5\n6\n7\n8\n9\n10\n"), TEXT("1\n2\n3\n4\n5\n6\n7\n8\n9\n10\n11\n")),
		TEXT("--- a/f.txt\n+++ b/f.txt\n@@ -8,3 +8,4 @@\n 8\n 9\n 10\n+11\n"));
	EXPECT_EQ(Diff(TEXT(""), TEXT("a\r\nb\rc\n")), TEXT("--- /dev/null\n+++ b/f.txt\n@@ -1,0 +1,3 @@\n+a\n+b\n+c\n"));
	EXPECT_EQ(Diff(TEXT("a\n\n"), TEXT("")), TEXT("--- a/f.txt\n+++ /dev/null\n@@ -1,2 +1,0 @@\n-a\n-\n"));
	for (const TCHAR* Same : {TEXT("a\nB\n"), TEXT("A\nb\n"), TEXT("a\r\nb")})
	{
		EXPECT_EQ(Diff(TEXT("a\nb\n"), Same), TEXT("(no changes)"));
	}
}

TEST(CVXUnifiedDiff, JoinsChangesWhoseContextsMeet)
{
	// Six equal lines between the changes leave no gap, seven leave one line out.
	EXPECT_EQ(Diff(TEXT("x\n1\n2\n3\n4\n5\n6\ny\n"), TEXT("X1\n1\n2\n3\n4\n5\n6\nY1\n")),
		TEXT("--- a/f.txt\n+++ b/f.txt\n@@ -1,8 +1,8 @@\n-x\n+X1\n 1\n 2\n 3\n 4\n 5\n 6\n-y\n+Y1\n"));
	EXPECT_EQ(Diff(TEXT("x\n1\n2\n3\n4\n5\n6\n7\ny\n"), TEXT("1\n2\n3\n4\n5\n6\n7\nY1\nY2\n")),
		TEXT("--- a/f.txt\n+++ b/f.txt\n@@ -1,4 +1,3 @@\n-x\n 1\n 2\n 3\n@@ -6,4 +5,5 @@\n 5\n 6\n 7\n-y\n+Y1\n+Y2\n"));
}

TEST(CVXUnifiedDiff, ComparesTheFirstTwoThousandLines)
{
	FString Old;
	for (int32 Line = 1; Line <= 2001; ++Line)
	{
		Old += FString::Printf(TEXT("line %d\n"), Line);
	}
	const TCHAR* const Note = TEXT("\n... (diff truncated: file exceeds 2000 lines)\n");
	const FString ChangedAbove = GenerateUnifiedDiff(Old, TEXT("new\n") + Old, TEXT("f"), 3);
	EXPECT_TRUE(ChangedAbove.StartsWith(TEXT("--- a/f\n+++ b/f\n@@ -1,3 +1,4 @@\n+new\n line 1\n")));
	EXPECT_TRUE(ChangedAbove.EndsWith(FString(TEXT("-line 2000\n")) + Note));
	EXPECT_EQ(GenerateUnifiedDiff(Old, Old + TEXT("new\n"), TEXT("f"), 3), TEXT("(no changes)"));
	EXPECT_FALSE(GenerateUnifiedDiff(Old.LeftChop(10), TEXT("x"), TEXT("f"), 3).Contains(Note)) << "2000 lines";
}

/** The script as a table of whole counts gives it, written with a letter for each line's fate. */
std::string ScriptByCounts(const std::vector<int>& Old, const std::vector<int>& New)
{
	std::vector<std::vector<int>> Counts(Old.size() + 1, std::vector<int>(New.size() + 1));
	for (std::size_t Row = 1; Row <= Old.size(); ++Row)
	{
		for (std::size_t Column = 1; Column <= New.size(); ++Column)
		{
			Counts[Row][Column] = Old[Row - 1] == New[Column - 1]
				? Counts[Row - 1][Column - 1] + 1
				: std::max(Counts[Row - 1][Column], Counts[Row][Column - 1]);
		}
	}
	std::string Script;
	std::size_t Row = Old.size();
	std::size_t Column = New.size();
	while (Row > 0 || Column > 0)
	{
		const bool bEqual = Row > 0 && Column > 0 && Old[Row - 1] == New[Column - 1];
		const bool bAdded = !bEqual && Column > 0 && (Row == 0 || Counts[Row][Column - 1] >= Counts[Row - 1][Column]);
		Script.insert(Script.begin(), bEqual ? '=' : (bAdded ? '+' : '-'));
		Row -= bAdded ? 0 : 1;
		Column -= bEqual || bAdded ? 1 : 0;
	}
	return Script;
}

TArray<FStringView> AsLines(const std::vector<int>& Letters)
{
	static const TCHAR* const Names[] = {TEXT("a"), TEXT("b"), TEXT("c"), TEXT("d"), TEXT("e")};
	TArray<FStringView> Lines;
	for (const int Letter : Letters)
	{
		Lines.Add(Names[Letter]);
	}
	return Lines;
}

TEST(CVXUnifiedDiff, ChoosesAmongEqualScriptsAsTheTableOfCountsDoes)
{
	std::mt19937 Random(7);
	for (int32 Run = 0; Run < 300; ++Run)
	{
		const int Letters = 2 + (int)(Random() % 4);
		const auto Make = [&]
		{
			std::vector<int> Lines(Random() % (Run % 10 == 0 ? 200 : 12));
			std::generate(Lines.begin(), Lines.end(), [&] { return (int)(Random() % (unsigned)Letters); });
			return Lines;
		};
		const std::vector<int> Old = Make();
		const std::vector<int> New = Make();
		std::string Script;
		for (const FCVXScriptLine& Line : MakeLineScript(AsLines(Old), AsLines(New)))
		{
			Script += "=-+"[(int)Line.Fate];
		}
		ASSERT_EQ(Script, ScriptByCounts(Old, New));
	}
}

TEST(CVXUnifiedDiff, MakesWhatGitAppliesToTheSameEffect)
{
	const FTempProject Project;
	std::mt19937 Random(11);
	const FString Enter = TEXT("cd '") + Project.Dir() + TEXT("' && ");
	EXPECT_EQ(RunShell(Enter + TEXT("git init -q .")), TEXT(""));
	for (int32 Run = 0; Run < 12; ++Run)
	{
		std::string Old;
		std::string New;
		for (int32 Line = 0; Line < 150; ++Line)
		{
			const std::string Text = "line " + std::to_string(Random() % 40) + "\n";
			const unsigned What = Random() % 20;
			Old += What == 0 ? "" : Text;
			New += What == 1 ? "" : (What == 2 ? "é " + Text : Text);
		}
		Old = Run == 10 ? "" : Old;
		Project.Write("f.txt", Old);
		Project.Write("p.diff",
			TCHAR_TO_UTF8(*GenerateUnifiedDiff(FString(Old.c_str()), FString(New.c_str()), TEXT("f.txt"), 3)));
		const FString Remove = Run == 10 ? TEXT("rm f.txt && ") : TEXT("");
		EXPECT_EQ(RunShell(Enter + Remove + TEXT("git apply p.diff")), TEXT(""));
		EXPECT_EQ(Project.Read("f.txt"), New);
	}
}
} // namespace
