#include "Tools/Edit/CVXEditFileTool.h"

#include "../ToolCalls.h"
#include "../ToolFixture.h"
#include "Support/FaultPlan.h"
#include "Tools/Files/CVXWriteFileTool.h"

#include <filesystem>
#include <sys/stat.h>

namespace
{
namespace fs = std::filesystem;

class CVXEditFile : public FToolFixture
{
protected:
	static FString Edit(const TCHAR* Old, const TCHAR* New, bool bAll = false, const TCHAR* Path = TEXT("Source/t.txt"))
	{
		FString Arguments = ToolArguments({{TEXT("path"), Path}, {TEXT("old_string"), Old}, {TEXT("new_string"), New}});
		if (bAll)
		{
			Arguments = Arguments.LeftChop(1) + TEXT(",\"replace_all\":true}");
		}
		return RunTool(FCVXEditFileTool(), Arguments);
	}

	/** The file after an edit of it, which has to succeed. */
	std::string Edited(const std::string& Bytes, const TCHAR* Old, const TCHAR* New, bool bAll = false)
	{
		Project.Write("Source/t.txt", Bytes);
		const FString Answer = Edit(Old, New, bAll);
		EXPECT_TRUE(Answer.StartsWith(TEXT("Successfully edited 'Source/t.txt' ("))) << TCHAR_TO_UTF8(*Answer);
		return Project.Read("Source/t.txt");
	}
};

TEST_F(CVXEditFile, ReplacesTheOnlyPlaceOrAllOfThem)
{
	Project.Write("Source/t.txt", "one two One two\n");
	EXPECT_EQ(Edit(TEXT("One"), TEXT("1")), TEXT("Successfully edited 'Source/t.txt' (1 replacement)."));
	EXPECT_EQ(Edit(TEXT("two"), TEXT("2")),
		TEXT("ERROR old_string found 2 times — ambiguous. Use replace_all:true or make old_string more specific."));
	EXPECT_EQ(Edit(TEXT("two"), TEXT("two two"), true), TEXT("Successfully edited 'Source/t.txt' (2 replacements)."));
	EXPECT_EQ(Project.Read("Source/t.txt"), "one two two 1 two two\n");
	EXPECT_EQ(Edited("aaa", TEXT("aa"), TEXT("b")), "ba") << "places don't overlap";
	EXPECT_EQ(Edited("a b", TEXT(" b"), TEXT("")), "a");
}

TEST_F(CVXEditFile, TakesAnyLineEndsAndKeepsThoseOfTheFile)
{
	EXPECT_EQ(Edited("a\r\nb\r\nc", TEXT("a\nb"), TEXT("x\ny\n")), "x\r\ny\r\n\r\nc");
	EXPECT_EQ(Edited("a\nb\nc", TEXT("a\r\nb"), TEXT("x\r\ny")), "x\ny\nc");
	EXPECT_EQ(Edited("a\r\nb\nc\n", TEXT("c"), TEXT("d")), "a\r\nb\r\nd\r\n");
}

TEST_F(CVXEditFile, LooksAgainWithoutBlanksAtLineEnds)
{
	EXPECT_EQ(Edited("keep \t\nif (a)\n{\nend  ", TEXT("if (a)  \n{ "), TEXT("if (b) \n{")), "keep\nif (b)\n{\nend");
	EXPECT_EQ(Edited("if (a)  \n{\n", TEXT("if (a)\n{"), TEXT("x")), "x\n");
	EXPECT_EQ(Edited("a  \nb\n", TEXT("b"), TEXT("c")), "a  \nc\n") << "an exact match leaves blanks alone";
}

TEST_F(CVXEditFile, ChangesNothingWhenItDoesNotKnowWhere)
{
	const FString NotFound =
		TEXT("ERROR old_string not found in file. The text may differ from what you expect — use read_file to see the "
			 "exact content before editing.");
	Project.Write("Source/t.txt", "text \n");
	for (const TCHAR* Old : {TEXT(""), TEXT("   "), TEXT("TEXT"), TEXT("text\nmore")})
	{
		EXPECT_EQ(Edit(Old, TEXT("x"), true), NotFound);
	}
	EXPECT_EQ(RunTool(FCVXEditFileTool(), TEXT(R"({"path":"Source/t.txt"})")), NotFound);
	EXPECT_EQ(RunTool(FCVXEditFileTool(), TEXT(R"({"path":"Source/t.txt","old_string":"text","new_string":[1]})")),
		TEXT("ERROR 'new_string' must be a string."));
	EXPECT_EQ(RunTool(FCVXEditFileTool(), TEXT("")), TEXT("ERROR Empty JSON input."));
	EXPECT_EQ(RunTool(FCVXEditFileTool(), TEXT("[]")), TEXT("ERROR Invalid JSON input."));
	EXPECT_EQ(RunTool(FCVXEditFileTool(), TEXT("{}")), TEXT("ERROR 'path' is required."));
	EXPECT_EQ(RunTool(FCVXEditFileTool(), ToolArguments({{TEXT("path"), FString::ChrN(5'000'000, u'x')}})).Left(27),
		TEXT("ERROR The path is too long:"));
	EXPECT_EQ(Edit(TEXT("a"), TEXT("b"), false, TEXT("Source/none")),
		FString::Printf(TEXT("ERROR Failed to read file: %sSource/none"), *Project.Dir()));
	EXPECT_EQ(Project.Read("Source/t.txt"), "text \n");
}

TEST_F(CVXEditFile, StaysInTheProjectAndOffProtectedPaths)
{
	const fs::path Outside = fs::path(TCHAR_TO_UTF8(*Project.Dir())).parent_path().string() + "-outside.txt";
	Project.Write(Outside.string(), "text");
	fs::create_directories(TCHAR_TO_UTF8(*Project.Path("Source")));
	fs::create_symlink(Outside, TCHAR_TO_UTF8(*Project.Path("Source/link.txt")));
	Project.Write("Config/locked.ini", "text");
	fs::create_symlink(TCHAR_TO_UTF8(*Project.Path("Config/locked.ini")), TCHAR_TO_UTF8(*Project.Path("Source/l2")));
	Settings.ProtectedPaths = {TEXT("Config/*")};
	const FString OutsidePath(Outside.c_str());
	for (const TCHAR* Path : {TEXT("Source/link.txt"), TEXT("Config/locked.ini"), TEXT("Source/l2"),
			 TEXT("Config\\locked.ini"), TEXT("../x"), *OutsidePath})
	{
		EXPECT_TRUE(Edit(TEXT("text"), TEXT("x"), false, Path).StartsWith(TEXT("ERROR "))) << TCHAR_TO_UTF8(Path);
	}
	EXPECT_EQ(Project.Read(Outside.string()), "text");
	EXPECT_EQ(Project.Read("Config/locked.ini"), "text");
	fs::remove(Outside);
}

TEST_F(CVXEditFile, KeepsEncodingMarkAndModeAndLeavesAWholeFileWhateverFails)
{
	EXPECT_EQ(Edited("\xEF\xBB\xBFh\xC3\xA9", TEXT("é"), TEXT("中")), "\xEF\xBB\xBFh\xE4\xB8\xAD");
	EXPECT_EQ(Edited(std::string("\xFF\xFEh\0i\0", 6), TEXT("i"), TEXT("o")), std::string("\xFF\xFEh\0o\0", 6));
	EXPECT_EQ(Edited("caf\xE9 x", TEXT("x"), TEXT("é")), "caf\xE9 \xE9");
	EXPECT_EQ(Edit(TEXT("caf"), TEXT("中")), TEXT("ERROR Failed to write edited file."));
	const std::string File = TCHAR_TO_UTF8(*Project.Path("Source/t.txt"));
	ASSERT_EQ(::chmod(File.c_str(), 0750), 0);
	const int32 Calls = FFaultPlan::ForEach(EHostFault::File, FFaultPlan::EHow::FromThereOn,
		[&](int32)
		{
			Project.Write("Source/t.txt", "old text");
			const FString Answer = Edit(TEXT("old"), TEXT("new"));
			EXPECT_EQ(Project.Read("Source/t.txt"), Answer.StartsWith(TEXT("ERROR")) ? "old text" : "new text");
		});
	EXPECT_GE(Calls, 4);
	struct stat Data = {};
	ASSERT_EQ(::stat(File.c_str(), &Data), 0);
	EXPECT_EQ(Data.st_mode & 0777u, 0750u);
}

TEST_F(CVXEditFile, AsksWithTheDiffOfWhatItWouldDo)
{
	Project.Write("Source/t.txt", "a\r\nb\r\nb\r\n");
	const auto Ask = [](const TCHAR* Json) { return FCVXEditFileTool().BuildApprovalRequest(Json); };
	const FCVXApprovalRequest One = Ask(TEXT(R"({"path":"Source/t.txt","old_string":"b","new_string":"c"})"));
	EXPECT_EQ(One.FilePath, TEXT("Source/t.txt"));
	EXPECT_EQ(One.Description, TEXT("Edit 'Source/t.txt'"));
	EXPECT_EQ(One.DiffPreview, TEXT("--- a/Source/t.txt\n+++ b/Source/t.txt\n@@ -1,3 +1,3 @@\n a\n-b\n+c\n b\n"));
	const FCVXApprovalRequest All =
		Ask(TEXT(R"({"path":"Source/t.txt","old_string":"b","new_string":"c","replace_all":true})"));
	EXPECT_TRUE(All.DiffPreview.EndsWith(TEXT(" a\n-b\n-b\n+c\n+c\n"))) << TCHAR_TO_UTF8(*All.DiffPreview);
	EXPECT_EQ(Ask(TEXT(R"({"path":"Source/t.txt","old_string":"z"})")).DiffPreview, TEXT("(no changes)"));
	const FCVXApprovalRequest None = Ask(TEXT(R"({"path":"../t.txt","old_string":"b"})"));
	EXPECT_EQ(None.Description, TEXT("Edit '../t.txt' (file not found at approval time)"));
	EXPECT_EQ(None.DiffPreview, TEXT(""));
	EXPECT_EQ(Ask(TEXT("{")).ToolName + Ask(TEXT("{")).Description, TEXT("edit_file"));
	const FCVXApprovalRequest Written = FCVXWriteFileTool().BuildApprovalRequest(
		ToolArguments({{TEXT("path"), TEXT("Source/t.txt")}, {TEXT("content"), TEXT("a\nb\n")}}));
	EXPECT_EQ(Written.DiffPreview, TEXT("--- a/Source/t.txt\n+++ b/Source/t.txt\n@@ -1,3 +1,2 @@\n a\n-b\n b\n"));
}
} // namespace
