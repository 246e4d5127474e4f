#include "Tools/Edit/CVXApplyPatchTool.h"

#include "../ToolCalls.h"
#include "../ToolFixture.h"
#include "Support/FaultPlan.h"
#include "Support/ProcessProbe.h"

#include <filesystem>
#include <map>
#include <sys/stat.h>

namespace
{
namespace fs = std::filesystem;

/** The bytes of files by their paths. */
using FFiles = std::map<std::string, std::string>;

class CVXApplyPatch : public FToolFixture
{
protected:
	static FString Apply(const FString& Patch)
	{
		return RunTool(FCVXApplyPatchTool(), ToolArguments({{TEXT("patch"), Patch}}));
	}

	/** A patch of one file with one hunk. */
	static FString Patch(const TCHAR* Hunk, const TCHAR* File = TEXT("Source/t.txt"))
	{
		return FString::Printf(TEXT("--- a/%s\n+++ b/%s\n"), File, File) + Hunk;
	}

	/** The file after a hunk, which has to apply. */
	std::string Patched(const std::string& Bytes, const TCHAR* Hunk)
	{
		Project.Write("Source/t.txt", Bytes);
		const FString Answer = Apply(Patch(Hunk));
		EXPECT_TRUE(Answer.StartsWith(TEXT("[OK] Source/t.txt — "))) << TCHAR_TO_UTF8(*Answer);
		return Project.Read("Source/t.txt");
	}

	void WriteAll(const std::string& Root, const FFiles& Files) const
	{
		for (const auto& [Path, Bytes] : Files)
		{
			Project.Write(Root + Path, Bytes);
		}
	}

	FFiles ReadAll(const std::string& Root) const
	{
		FFiles Files;
		const fs::path Directory = TCHAR_TO_UTF8(*Project.Path(Root));
		for (const fs::directory_entry& Entry : fs::recursive_directory_iterator(Directory))
		{
			const std::string Path = Entry.path().lexically_relative(Directory).string();
			if (Entry.is_regular_file() && Path.rfind(".git", 0) != 0)
			{
				Files[Path] = Project.Read(Root + Path);
			}
		}
		return Files;
	}

	/** Runs a script in the other system's copy of the tree. */
	FString InPeer(const TCHAR* Script) const
	{
		return RunShell(TEXT("cd '") + Project.Path("Saved/peer") + TEXT("' && ") + Script);
	}

	/** @return the patch that git makes of the change, whose old state is then what lies in both trees. */
	FString MakePatch(const FFiles& Old, const FFiles& New)
	{
		fs::remove_all(TCHAR_TO_UTF8(*Project.Path("Saved/peer")));
		fs::remove_all(TCHAR_TO_UTF8(*Project.Path("Source")));
		fs::create_directories(TCHAR_TO_UTF8(*Project.Path("Saved/peer")));
		fs::create_directories(TCHAR_TO_UTF8(*Project.Path("Source")));
		WriteAll("Saved/peer/Source/", Old);
		WriteAll("Source/", Old);
		const FString Begin = TEXT("git init -q . && git config user.name t && git config user.email t && "
								   "git config core.autocrlf false && ");
		EXPECT_EQ(InPeer(*(Begin + TEXT("git add -A && git commit -q --allow-empty -m old"))), TEXT(""));
		WriteAll("Saved/peer/Source/", New);
		EXPECT_EQ(InPeer(TEXT("git add -A && git commit -q -m 'the change\n\n indented text\n+ and more'")), TEXT(""));
		const FString Made = InPeer(TEXT("git format-patch -1 --stdout | tee ../change.patch"));
		EXPECT_EQ(InPeer(TEXT("git reset -q --hard HEAD~ && git clean -fdq")), TEXT(""));
		return Made;
	}
};

std::string Numbered(int32 Count, const std::map<int32, std::string>& Changed = {})
{
	std::string Text;
	for (int32 Line = 1; Line <= Count; ++Line)
	{
		const auto Found = Changed.find(Line);
		Text += Found == Changed.end() ? "line " + std::to_string(Line) + "\n" : Found->second;
	}
	return Text;
}

TEST_F(CVXApplyPatch, AgreesWithGitOnWhatGitMakes)
{
	struct FChange
	{
		FFiles Old;
		FFiles New;
	};
	const std::string Long = Numbered(60);
	const FChange Changes[] = {
		{{{"a.txt", Long}}, {{"a.txt", Numbered(60, {{30, "changed\n"}})}}},
		{{{"a.txt", Long}}, {{"a.txt", Numbered(60, {{1, "x\nx\n"}, {2, ""}, {30, "a\nb\nc\n"}, {60, ""}})}}},
		{{{"a.txt", Long}, {"b/c.txt", "x\n"}, {"d.txt", "same\n"}},
			{{"a.txt", Long + "more\n"}, {"b/c.txt", "y\n"}, {"e/f/g.txt", "new\n\nfile\n"}}},
		{{{"a.txt", "a\r\nb\r\nc\r\n"}}, {{"a.txt", "a\r\nB1\r\nc\r\nd\r\n"}}},
		{{{"a.txt", "a\r\nb\nc\r\nd\n"}}, {{"a.txt", "a\r\nx\nc\r\ny\r\nd\n"}}},
		{{{"a.txt", "a\nb\nc\n"}}, {{"a.txt", "a\r\nb\r\nc\r\n"}}},
		{{{"a.txt", "a\nb"}}, {{"a.txt", "a\nc"}}},
		{{{"a.txt", "a\nb"}}, {{"a.txt", "x\nb"}}},
		{{{"a.txt", "a\nb"}}, {{"a.txt", "a\nb\n"}}},
		{{{"a.txt", "a\nb\n"}}, {{"a.txt", "a\nb"}}},
		{{{"a.txt", "a\r\nb"}}, {{"a.txt", "a\r\nb\r\nc"}}},
		{{{"a.txt", "a\nb\n"}}, {{"a.txt", ""}}},
		{{{"a.txt", ""}}, {{"a.txt", "a\nb\n"}}},
		{{}, {{"n.txt", "no end"}, {"m.txt", "\r\n\r\n"}, {"o.txt", "\n"}}},
		{{{"\xC3\xA9 \xE4\xB8\xAD.txt", "a\n"}, {"with blank.txt", "a\n"}, {"q\"u.txt", "a\n"}},
			{{"\xC3\xA9 \xE4\xB8\xAD.txt", "b\n"}, {"with blank.txt", "b\n"}, {"q\"u.txt", "b\n"}}},
		{{{"a.lua", "-- one\n-- two\ncode\n\n\n-- end\n"}}, {{"a.lua", "-- one\n++ two\ncode\n\n\n\n"}}},
		{{{"a.lua", Numbered(9, {{5, "-- a\n"}})}}, {{"a.lua", Numbered(9, {{5, "++ b\n"}})}}},
		{{{"a.txt", "\xEF\xBB\xBFone\ntwo\n"}}, {{"a.txt", "\xEF\xBB\xBFONE!\ntwo\n"}}},
		{{{"a.txt", "\xEF\xBB\xBFone\n"}, {"b.txt", "one\n"}}, {{"a.txt", "one\n"}, {"b.txt", "\xEF\xBB\xBFone\n"}}},
		{{{"a.txt", "x\ry\n\n \n\t\n@@ -1 +1 @@\ndiff a\n"}}, {{"a.txt", "x\rz\n\n \n\t \n@@ -1 +1 @@\ndiff b\n"}}},
	};
	for (const FChange& Change : Changes)
	{
		const FString Made = MakePatch(Change.Old, Change.New);
		const FString Answer = Apply(Made);
		EXPECT_FALSE(Answer.Contains(TEXT("ERROR"))) << TCHAR_TO_UTF8(*(Answer + TEXT("\n") + Made));
		EXPECT_EQ(InPeer(TEXT("git apply --whitespace=nowarn ../change.patch")), TEXT(""));
		EXPECT_EQ(ReadAll("Source/"), ReadAll("Saved/peer/Source/")) << TCHAR_TO_UTF8(*Made);
	}
}

TEST_F(CVXApplyPatch, KeepsWhatTheFileHad)
{
	EXPECT_EQ(Patched("a\r\nb\r\n", TEXT("@@ -1,2 +1,2 @@\n a\n-b\n+c\n")), "a\r\nc\r\n");
	EXPECT_EQ(Patched("a\r\nb", TEXT("@@ -1,2 +1,3 @@\n a\n b\n+c\n")), "a\r\nb\r\nc");
	EXPECT_EQ(Patched("a\nb", TEXT("@@ -1,2 +1,2 @@\n a\n-b\n+c\n")), "a\nc");
	EXPECT_EQ(Patched("\xEF\xBB\xBF"
					  "a\n",
				  TEXT("@@ -1 +1 @@\n-a\n+\x00E9\n")),
		"\xEF\xBB\xBF\xC3\xA9\n");
	EXPECT_EQ(Patched("caf\xE9\nx\n", TEXT("@@ -1,2 +1,2 @@\n caf\x00E9\n-x\n+y\n")), "caf\xE9\ny\n");
	const FString Crlf = Patch(TEXT("@@ -2 +2 @@\n-y\n+z\n")).Replace(TEXT("\n"), TEXT("\r\n"));
	EXPECT_EQ(Apply(Crlf), TEXT("[OK] Source/t.txt — 1 hunk(s) applied.")) << "the patch came with other line ends";
	EXPECT_EQ(Project.Read("Source/t.txt"), "caf\xE9\nz\n");
	const std::string File = TCHAR_TO_UTF8(*Project.Path("Source/t.txt"));
	ASSERT_EQ(::chmod(File.c_str(), 0750), 0);
	EXPECT_EQ(Patched("a\n", TEXT("@@ -1 +1 @@\n-a\n+b\n")), "b\n");
	struct stat Data = {};
	ASSERT_EQ(::stat(File.c_str(), &Data), 0);
	EXPECT_EQ(Data.st_mode & 0777u, 0750u);
}

TEST_F(CVXApplyPatch, TakesWhatModelsWriteAsFarAsItIsClear)
{
	EXPECT_EQ(Patched("Some Text\nb\n", TEXT("@@ -1,2 +1,2 @@\n some text\n-B\n+c\n")), "some text\nc\n");
	EXPECT_EQ(Patched("a\n\nb\n\nc\n", TEXT("@@ -1,4 +1,4 @@ here\n a\n\n-b\n+x\n\n\n\n")), "a\n\nx\n\nc\n")
		<< "empty lines within the counts are lines of the file, those behind aren't";
	EXPECT_EQ(Patched("a\nb\nc\n", TEXT("@@ -1 +1 @@\n a\n-b\n+x\n c\n")), "a\nx\nc\n") << "wrong counts";
	EXPECT_EQ(Patched(Numbered(9), TEXT("@@ -2,1 +2,3 @@\n line 2\n+x\n+y\n@@ -8,2 +10 @@\n-line 8\n line 9")),
		Numbered(9, {{3, "x\ny\nline 3\n"}, {8, ""}}));
	EXPECT_EQ(Patched("a\nb\n", TEXT("@@ -1,0 +2,1 @@\n+x\n")), "a\nx\nb\n") << "goes behind the line it names";
	TArray<FString> Lines = {TEXT("a"), TEXT("b")};
	FString Error;
	EXPECT_TRUE(FCVXApplyPatchTool::ApplyHunksToLines(
		Lines, FCVXApplyPatchTool::ParseUnifiedDiff(TEXT("--- t\n+++ t\n@@ -2 +2 @@\n-b\n+c"))[0], Error));
	EXPECT_EQ(Lines, (TArray<FString>{TEXT("a"), TEXT("c")}));
}

TEST_F(CVXApplyPatch, ReadsPathsAndRanges)
{
	const TArray<FCVXFilePatch> Files = FCVXApplyPatchTool::ParseUnifiedDiff(
		TEXT("text\n@@ -1 +1 @@\n+++ b/x\n--- a/old.txt\t2024-01-01\n+++ b/dir/new.txt \n@@ -3 +4,5 @@ int f()\n x\n?\n"
			 "@@ nonsense @@\n--- /dev/null\n+++ \"b/tab\\tq\\\"\\303\\251\"\n@@ -0,0 +1,2 @@\n+a"));
	ASSERT_EQ(Files.Num(), 2);
	EXPECT_EQ(Files[0].OldPath, TEXT("old.txt"));
	EXPECT_EQ(Files[0].NewPath, TEXT("dir/new.txt"));
	ASSERT_EQ(Files[0].Hunks.Num(), 2);
	const FCVXDiffHunk& Hunk = Files[0].Hunks[0];
	EXPECT_EQ((TArray<int32>{Hunk.OldStart, Hunk.OldCount, Hunk.NewStart, Hunk.NewCount}), (TArray<int32>{3, 1, 4, 5}));
	EXPECT_EQ(Hunk.Lines, (TArray<FString>{TEXT(" x")}));
	EXPECT_EQ(Files[0].Hunks[1].OldStart, 0);
	EXPECT_EQ(Files[1].OldPath, TEXT("/dev/null"));
	EXPECT_EQ(Files[1].NewPath, TEXT("tab\tq\"é"));
}

TEST_F(CVXApplyPatch, TellsWhatDoesNotMatchAndLeavesTheFile)
{
	struct FCase
	{
		const TCHAR* Hunk;
		const TCHAR* Error;
	};
	const FCase Cases[] = {
		{TEXT("@@ -1,2 +1,2 @@\n line 1\n-line  2\n"),
			TEXT("line 2:\n  Expected: \"line  2\"\n  Got:      \"line 2\"")},
		{TEXT("@@ -9,2 +9,2 @@\n line 9\n-line 10\n"), TEXT("line 10: file has fewer lines than expected.")},
		{TEXT("@@ -0,0 +1 @@\n+x\n"), TEXT("line 0: file has fewer lines than expected.")},
		{TEXT("@@ -2147483647 +1 @@\n x\n"), TEXT("line 2147483647: file has fewer lines than expected.")},
		{TEXT("@@ -99,0 +1 @@\n+x\n"), TEXT("line 100: file has fewer lines than expected.")},
		{TEXT("@@ -1 +1,3 @@\n line 1\n+x\n+y\n@@ -3 +5 @@\n-line 4\n"),
			TEXT("line 5:\n  Expected: \"line 4\"\n  Got:      \"line 3\"")},
		{TEXT("@@ -3 +3 @@\n-line 3\n+x\n@@ -1 +1 @@\n-line 1\n"),
			TEXT("line 1: an earlier hunk has changed it; hunks must come in file order.")},
	};
	Project.Write("Source/t.txt", Numbered(9));
	for (const FCase& Case : Cases)
	{
		EXPECT_EQ(
			Apply(Patch(Case.Hunk)), FString(TEXT("ERROR [ERROR] Source/t.txt — Hunk mismatch at ")) + Case.Error);
	}
	EXPECT_EQ(Project.Read("Source/t.txt"), Numbered(9));
	EXPECT_EQ(Apply(TEXT("")), TEXT("ERROR Missing required field: patch"));
	EXPECT_EQ(Apply(FString::ChrN(5'000'000, u'\n')), TEXT("ERROR No file patches found in the provided diff."));
	EXPECT_EQ(RunTool(FCVXApplyPatchTool(), TEXT("{}")), TEXT("ERROR Missing required field: patch"));
	EXPECT_EQ(RunTool(FCVXApplyPatchTool(), TEXT("[]")), TEXT("ERROR Invalid JSON input."));
	EXPECT_EQ(RunTool(FCVXApplyPatchTool(), TEXT(R"({"patch":[]})")), TEXT("ERROR 'patch' must be a string."));
}

TEST_F(CVXApplyPatch, TreatsEachFileByItselfAndNoneOutsideTheProject)
{
	fs::create_directories(TCHAR_TO_UTF8(*Project.Path("Source")));
	fs::create_symlink(fs::temp_directory_path(), TCHAR_TO_UTF8(*Project.Path("Source/out")));
	Project.Write("Source/good.txt", "a\n");
	Project.Write("Source/bad.txt", "a\n");
	Project.Write("Config/locked.ini", "a\n");
	Settings.ProtectedPaths = {TEXT("Config/*")};
	const TCHAR* const Hunk = TEXT("@@ -1 +1 @@\n-a\n+b\n");
	const FString New = TEXT("@@ -0,0 +1 @@\n+n\n");
	EXPECT_EQ(Apply(Patch(TEXT("@@ -1 +1 @@\n-x\n"), TEXT("Source/bad.txt")) + Patch(Hunk, TEXT("Config/locked.ini")) +
				  Patch(Hunk, TEXT("../x.txt")) + TEXT("--- /dev/null\n+++ b/Source/out/corvexa-patch.txt\n") + New +
				  TEXT("--- /dev/null\n+++ b/Source/NUL.txt\n") + New + TEXT("--- a/Source/good.txt\n+++ /dev/null\n") +
				  Hunk + Patch(Hunk, TEXT("Source/none.txt")) + TEXT("--- /dev/null\n+++ b/Source/deep/new.txt\n") +
				  New + Patch(Hunk, TEXT("Source/good.txt"))),
		TEXT("ERROR [ERROR] Source/bad.txt — Hunk mismatch at line 1:\n  Expected: \"x\"\n  Got:      \"a\"\n"
			 "[ERROR] 'Config/locked.ini' is protected by pattern 'Config/*'.\n"
			 "[ERROR] Access denied: '../x.txt' is outside the project directory.\n"
			 "[ERROR] Access denied: 'Source/out/corvexa-patch.txt' is outside the project directory.\n"
			 "[ERROR] Cannot write 'Source/NUL.txt': 'NUL.txt' is a reserved name.\n"
			 "[SKIP] /dev/null target skipped.\n"
			 "[ERROR] Source/none.txt — file not found or unreadable.\n"
			 "[CREATED] Source/deep/new.txt\n"
			 "[OK] Source/good.txt — 1 hunk(s) applied."));
	EXPECT_EQ(Project.Read("Source/good.txt"), "b\n");
	EXPECT_EQ(Project.Read("Source/deep/new.txt"), "n\n");
	EXPECT_EQ(Project.Read("Config/locked.ini"), "a\n");
}

TEST_F(CVXApplyPatch, LeavesWholeFilesWhateverFails)
{
	const FString Change =
		Patch(TEXT("@@ -1 +1 @@\n-old\n+new\n")) + TEXT("--- /dev/null\n+++ b/Source/n.txt\n@@ -0,0 +1 @@\n+n\n");
	const int32 Calls = FFaultPlan::ForEach(EHostFault::File, FFaultPlan::EHow::Once,
		[&](int32)
		{
			Project.Write("Source/t.txt", "old\n");
			fs::remove(TCHAR_TO_UTF8(*Project.Path("Source/n.txt")));
			const FString Answer = Apply(Change);
			EXPECT_EQ(Project.Read("Source/t.txt"),
				Answer.Contains(TEXT("[OK] Source/t.txt — 1 hunk(s) applied.")) ? "new\n" : "old\n");
			EXPECT_EQ(Project.Exists("Source/n.txt"), Answer.Contains(TEXT("[CREATED] Source/n.txt")));
			EXPECT_EQ(Answer.StartsWith(TEXT("ERROR ")), Answer.Contains(TEXT("[ERROR]")));
		});
	EXPECT_GE(Calls, 6);
}
} // namespace
