#include "../ToolFixture.h"
#include "Misc/FileHelper.h"
#include "Support/FaultPlan.h"
#include "Tools/CVXBuiltinTools.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <sys/stat.h>

namespace
{
namespace fs = std::filesystem;

class CVXFileTools : public FToolFixture
{
protected:
	CVXFileTools() { RegisterBuiltinTools(); }

	/** What a tool answers; errors begin with "ERROR ". */
	static FString Run(const TCHAR* Tool, const FString& Arguments)
	{
		const FCVXToolExecutionResult Result = FCVXToolRegistry::Get().FindTool(Tool)->Execute(Arguments, {});
		return (Result.bIsError ? TEXT("ERROR ") : TEXT("")) + Result.Output;
	}

	static FString Write(const TCHAR* Path, const TCHAR* Content)
	{
		return Run(TEXT("write_file"), FString::Printf(TEXT(R"({"path":"%s","content":"%s"})"), Path, Content));
	}

	/** Every file and directory below a directory, with its bytes. */
	static std::string Snapshot(const fs::path& Root)
	{
		std::vector<std::string> Entries;
		for (const fs::directory_entry& Entry : fs::recursive_directory_iterator(Root))
		{
			Entries.push_back(
				Entry.path().string() + (Entry.is_regular_file() ? std::to_string(Entry.file_size()) : ""));
		}
		std::sort(Entries.begin(), Entries.end());
		std::string All;
		for (const std::string& Entry : Entries)
		{
			All += Entry + "\n";
		}
		return All;
	}
};

TEST_F(CVXFileTools, AnswerWhatAModelGetsWrongWithAMessage)
{
	const TCHAR* const Tools[] = {
		TEXT("read_file"), TEXT("write_file"), TEXT("list_files"), TEXT("search_files"), TEXT("search_in_files")};
	const std::string Before = Snapshot(TCHAR_TO_UTF8(*Project.Dir()));
	const FString Huge = FString::ChrN(5'000'000, u'x');
	for (const TCHAR* Tool : Tools)
	{
		EXPECT_EQ(Run(Tool, TEXT("")), TEXT("ERROR Empty JSON input."));
		for (const TCHAR* Text : {TEXT("not json"), TEXT("[1]"), TEXT("\"path\""), TEXT("{\"path\":"), TEXT("null")})
		{
			EXPECT_EQ(Run(Tool, Text), TEXT("ERROR Invalid JSON input.")) << TCHAR_TO_UTF8(Tool);
		}
		for (const FString& Path : {FString(TEXT("../x/y")), FString(TEXT("~/x")), FString(TEXT("C:\\\\x\\\\y")),
				 FString(TEXT("a/\\u0000b")), Huge})
		{
			const FString Answer =
				Run(Tool, FString::Printf(TEXT(R"({"path":"%s","content":"c","pattern":"p"})"), *Path));
			EXPECT_TRUE(Answer.StartsWith(TEXT("ERROR "))) << TCHAR_TO_UTF8(*Answer.Left(200));
			EXPECT_LT(Answer.Len(), 1000);
		}
	}
	for (const TCHAR* Text : {TEXT("{}"), TEXT(R"({"path":""})"), TEXT(R"({"path":["a"]})"), TEXT(R"({"path":null})")})
	{
		EXPECT_EQ(Run(TEXT("read_file"), Text), TEXT("ERROR 'path' is required."));
		EXPECT_EQ(Run(TEXT("write_file"), Text), TEXT("ERROR 'path' is required."));
	}
	EXPECT_EQ(Run(TEXT("read_file"), TEXT(R"({"path":12})")),
		FString::Printf(TEXT("ERROR File not found: %s12"), *Project.Dir()));
	EXPECT_EQ(Run(TEXT("write_file"), TEXT(R"({"path":"Saved/a","content":{"a":1}})")),
		TEXT("ERROR 'content' must be a string."));
	for (const TCHAR* Tool : {TEXT("list_files"), TEXT("search_files"), TEXT("search_in_files")})
	{
		EXPECT_EQ(Run(Tool, TEXT(R"({"path":["a"]})")), TEXT("ERROR 'path' must be a string."));
	}
	EXPECT_EQ(Run(TEXT("search_in_files"), TEXT(R"({"path":"Saved","pattern":{}})")),
		TEXT("ERROR 'pattern' must be a string."));
	for (const TCHAR* Tool : {TEXT("search_files"), TEXT("search_in_files")})
	{
		EXPECT_EQ(Run(Tool, TEXT(R"({"path":"Saved","recursive":false,"pattern":"../*","file_glob":"../*"})")),
			TEXT("ERROR Access denied: '../*' is outside the project directory."));
	}
	EXPECT_EQ(Snapshot(TCHAR_TO_UTF8(*Project.Dir())), Before);
}

TEST_F(CVXFileTools, ReadWholeFilesUnchangedAndRangesJoinedByLineFeeds)
{
	Project.Write("Source/a.txt", "\xEF\xBB\xBFone\r\ntwo\nthree\rfour\n");
	Project.Write("Source/empty.txt", "");
	const auto Read = [&](const TCHAR* More)
	{ return Run(TEXT("read_file"), FString::Printf(TEXT(R"({"path":"Source/a.txt"%s})"), More)); };
	EXPECT_EQ(Read(TEXT("")), TEXT("one\r\ntwo\nthree\rfour\n"));
	EXPECT_EQ(Read(TEXT(R"(,"start_line":1)")), TEXT("one\r\ntwo\nthree\rfour\n"));
	EXPECT_EQ(Read(TEXT(R"(,"start_line":-2147483648)")), TEXT("one\r\ntwo\nthree\rfour\n"));
	EXPECT_EQ(Read(TEXT(R"(,"start_line":2,"end_line":3.9)")), TEXT("two\nthree"));
	EXPECT_EQ(Read(TEXT(R"(,"start_line":3,"end_line":2)")), TEXT("two\nthree"));
	EXPECT_EQ(Read(TEXT(R"(,"end_line":1)")), TEXT("one"));
	EXPECT_EQ(Read(TEXT(R"(,"start_line":4)")), TEXT("four\n"));
	EXPECT_EQ(Read(TEXT(R"(,"start_line":99,"end_line":1e99)")), TEXT(""));
	EXPECT_EQ(Read(TEXT(R"(,"end_line":-2147483648)")), TEXT("one"));
	EXPECT_EQ(Run(TEXT("read_file"), TEXT(R"({"path":"Source/empty.txt","start_line":5})")), TEXT(""));
	EXPECT_EQ(Run(TEXT("read_file"), TEXT(R"({"path":"Source"})")),
		FString::Printf(TEXT("ERROR File not found: %sSource"), *Project.Dir()));
}

TEST_F(CVXFileTools, ReadFoldsTheMiddleOfALongText)
{
	Project.Write("Source/limit.txt", std::string(100000, 'a'));
	EXPECT_EQ(Run(TEXT("read_file"), TEXT(R"({"path":"Source/limit.txt"})")).Len(), 100000);
	Project.Write("Source/long.txt", std::string(75000, 'a') + std::string(201, 'b') + std::string(24800, 'c'));
	const FString Folded = Run(TEXT("read_file"), TEXT(R"({"path":"Source/long.txt"})"));
	const FString Marker = TEXT("\n\n--- OUTPUT TRUNCATED (100001 / 100000 chars) ---\nUse start_line/end_line "
								"parameters to read specific sections.\n\n");
	EXPECT_EQ(Folded, FString::ChrN(75000, u'a') + Marker + FString::ChrN(24800, u'c'));
}

TEST_F(CVXFileTools, WriteMakesFoldersKeepsTheModeAndRefusesTheRoot)
{
	EXPECT_EQ(Write(TEXT("Saved/New/deep/a.txt"), TEXT("é\\n")),
		TEXT("Successfully wrote 3 bytes to 'Saved/New/deep/a.txt'."));
	EXPECT_EQ(Project.Read("Saved/New/deep/a.txt"), "é\n");
	ASSERT_EQ(::chmod(TCHAR_TO_UTF8(*Project.Path("Saved/New/deep/a.txt")), 0750), 0);
	EXPECT_EQ(Run(TEXT("write_file"), TEXT(R"({"path":"Saved/New/deep/a.txt"})")),
		TEXT("Successfully wrote 0 bytes to 'Saved/New/deep/a.txt'."));
	struct stat Status = {};
	ASSERT_EQ(::stat(TCHAR_TO_UTF8(*Project.Path("Saved/New/deep/a.txt")), &Status), 0);
	EXPECT_EQ(Status.st_mode & 0777, 0750u);

	for (const TCHAR* Path : {TEXT("notes.txt"), TEXT("./notes.txt"), TEXT("Saved/../notes.txt"), TEXT(".")})
	{
		EXPECT_TRUE(
			Write(Path, TEXT("x"))
				.StartsWith(FString::Printf(
					TEXT("ERROR Cannot write '%s' directly to the project root directory. Place files into"), Path)));
	}
	EXPECT_EQ(Write(TEXT("Saved/New"), TEXT("x")),
		FString::Printf(TEXT("ERROR Failed to write file: %sSaved/New"), *Project.Dir()));
	EXPECT_EQ(Write(TEXT("Saved/NUL.txt"), TEXT("x")),
		TEXT("ERROR Cannot write 'Saved/NUL.txt': 'NUL.txt' is a reserved name."));
	Settings.ProtectedPaths = {TEXT("Config/*")};
	EXPECT_EQ(Write(TEXT("Config/a.ini"), TEXT("x")), TEXT("ERROR 'Config/a.ini' is protected by pattern 'Config/*'."));
	EXPECT_FALSE(Project.Exists("notes.txt") || Project.Exists("Config/a.ini") || Project.Exists("Saved/NUL.txt"));
}

TEST_F(CVXFileTools, WriteNeverLeavesTheProjectThroughALink)
{
	const std::string Outside = TCHAR_TO_UTF8(*(Project.Dir().LeftChop(1) + TEXT("-outside")));
	fs::create_directories(Outside + "/dir");
	std::ofstream(Outside + "/file.txt") << "theirs";
	const auto Link = [&](const std::string& To, const char* Name)
	{ fs::create_symlink(To, TCHAR_TO_UTF8(*Project.Path(Name))); };
	Link(Outside, "Saved/out");
	Link(Outside + "/file.txt", "Saved/file.txt");
	Link(Outside + "/none.txt", "Saved/none.txt");
	Link(Outside + "/nodir", "Saved/nodir");
	Link("out/dir", "Saved/chain");
	const std::string Before = Snapshot(Outside);
	for (const TCHAR* Path :
		{TEXT("Saved/out/x.txt"), TEXT("Saved/out/dir/new/x.txt"), TEXT("Saved/file.txt"), TEXT("Saved/none.txt"),
			TEXT("Saved/nodir/x.txt"), TEXT("Saved/chain/x.txt"), TEXT("Saved/out/../x/../../y")})
	{
		(void)Write(Path, TEXT("ours"));
	}
	EXPECT_EQ(Snapshot(Outside), Before);
	fs::remove_all(Outside);
}

TEST_F(CVXFileTools, WriteLeavesTheOldOrTheNewFileWhateverFails)
{
	const FFaultPlan::EHow How[] = {FFaultPlan::EHow::Once, FFaultPlan::EHow::FromThereOn};
	for (const FFaultPlan::EHow Each : How)
	{
		const int32 Calls = FFaultPlan::ForEach(EHostFault::File, Each,
			[&](int32)
			{
				Project.Write("Saved/a/t.txt", "old");
				const FString Answer = Write(TEXT("Saved/a/t.txt"), TEXT("the new text"));
				const std::string Now = Project.Read("Saved/a/t.txt");
				EXPECT_EQ(Now, Answer.StartsWith(TEXT("ERROR")) ? "old" : "the new text");
			});
		EXPECT_GE(Calls, 4);
	}
	int32 Entries = 0;
	for ([[maybe_unused]] const fs::directory_entry& Entry :
		fs::directory_iterator(TCHAR_TO_UTF8(*Project.Path("Saved/a"))))
	{
		++Entries;
	}
	EXPECT_EQ(Entries, 1) << "nothing is left beside the file";
}

TEST_F(CVXFileTools, WriteAsksWithPathAndSize)
{
	const ICVXTool& Tool = *FCVXToolRegistry::Get().FindTool(TEXT("write_file"));
	const FCVXApprovalRequest Request = Tool.BuildApprovalRequest(TEXT(R"({"path":"Saved\\a","content":"éa"})"));
	EXPECT_EQ(Request.Description, TEXT("Write 2 chars to 'Saved\\a'"));
	EXPECT_EQ(Request.FilePath, TEXT("Saved\\a"));
	EXPECT_TRUE(Request.bIsDestructive);
	const FCVXApprovalRequest Bad = Tool.BuildApprovalRequest(TEXT("nonsense"));
	EXPECT_EQ(Bad.ToolName, TEXT("write_file"));
	EXPECT_TRUE(Bad.Description.IsEmpty() && Bad.FilePath.IsEmpty() && Bad.bIsDestructive);
}

TEST_F(CVXFileTools, ListShowsSortedEntriesUpToTheLimit)
{
	Project.Write("Content/b.uasset", "");
	Project.Write("Content/A/c.txt", "");
	Project.Write("Content/A/Skip/d.tmp", "");
	fs::create_directories(TCHAR_TO_UTF8(*Project.Path("Content/Void")));
	EXPECT_EQ(
		Run(TEXT("list_files"), TEXT(R"({"path":"Content"})")), TEXT("Content/A/\nContent/b.uasset\nContent/Void/"));
	EXPECT_EQ(Run(TEXT("list_files"), TEXT(R"({"path":"Content","recursive":true})")),
		TEXT("Content/A\nContent/A/c.txt\nContent/A/Skip\nContent/A/Skip/d.tmp\nContent/b.uasset\nContent/Void"));
	Settings.IgnorePatterns = {TEXT("*.TMP"), TEXT("Content/Void")};
	EXPECT_EQ(Run(TEXT("list_files"), TEXT(R"({"path":"Content","recursive":true,"max_results":0})")),
		TEXT("Content/A\n\n[Showing 1 of 4 entries. Use a more specific path or filter to narrow results.]"));
	EXPECT_EQ(Run(TEXT("list_files"), TEXT(R"({"path":"Content/Void"})")), TEXT("(empty directory)"));
	EXPECT_EQ(Run(TEXT("list_files"), TEXT(R"({"path":"None"})")),
		FString::Printf(TEXT("ERROR Directory not found: %sNone"), *Project.Dir()));
	const FString Noted = Run(TEXT("list_files"), TEXT(R"({"path":"/Game/A"})"));
	EXPECT_TRUE(Noted.StartsWith(TEXT("NOTE: '/Game/' is a UE content path")));
	EXPECT_TRUE(Noted.EndsWith(TEXT("in Python unreal API.\n\nContent/A/c.txt\nContent/A/Skip/")));
	EXPECT_FALSE(Run(TEXT("list_files"), TEXT(R"({"path":"/Game/None"})")).Contains(TEXT("NOTE")));
}

TEST_F(CVXFileTools, SearchFilesByPattern)
{
	Project.Write("Content/BP_b.uasset", "");
	Project.Write("Content/A/BP_a.uasset", "");
	Project.Write("Content/A/bp_not.txt", "");
	EXPECT_EQ(Run(TEXT("search_files"), TEXT(R"({"path":"Content","pattern":"bp_*.uasset"})")),
		TEXT("Content/A/BP_a.uasset\nContent/BP_b.uasset"));
	EXPECT_EQ(Run(TEXT("search_files"), TEXT(R"({"path":"Content","recursive":false})")), TEXT("Content/BP_b.uasset"));
	EXPECT_TRUE(Run(TEXT("search_files"), TEXT(R"({"path":"Game/A","pattern":"*.h"})"))
					.EndsWith(TEXT("\n\nNo files matching '*.h' found in 'Content/A'.")));
	for (int32 Index = 0; Index < 2001; ++Index)
	{
		Project.Write("Saved/many/" + std::to_string(10000 + Index), "");
	}
	const FString Many = Run(TEXT("search_files"), TEXT(R"({"path":"Saved/many"})"));
	EXPECT_TRUE(Many.StartsWith(TEXT("Saved/many/10000\nSaved/many/10001\n")));
	EXPECT_TRUE(Many.EndsWith(TEXT("\nSaved/many/11999\n\n[Showing 2000 of 2001 results. Use a more specific pattern "
								   "to narrow results.]")));
}

TEST_F(CVXFileTools, SearchInFilesTellsPathLineAndText)
{
	Project.Write("Source/a.cpp", "one\r\n\t foo bar \nFOO\n");
	Project.Write("Source/b.txt", "Foo");
	const auto Search = [&](const TCHAR* More)
	{ return Run(TEXT("search_in_files"), FString::Printf(TEXT(R"({"path":"Source","file_glob":"*.cpp"%s})"), More)); };
	EXPECT_EQ(Search(TEXT(R"(,"pattern":"Foo")")), TEXT("Source/a.cpp:2: foo bar\nSource/a.cpp:3: FOO"));
	EXPECT_EQ(Search(TEXT(R"(,"pattern":"FOO","case_sensitive":true)")), TEXT("Source/a.cpp:3: FOO"));
	EXPECT_EQ(Search(TEXT(R"(,"pattern":"foo","max_results":-1)")),
		TEXT("Source/a.cpp:2: foo bar\n[Results truncated at 1. Refine your search.]"));
	EXPECT_EQ(Search(TEXT(R"(,"pattern":"fo+")")), TEXT("No matches found for 'fo+' in 'Source'."));
	EXPECT_EQ(Search(TEXT("")),
		TEXT("Source/a.cpp:1: one\nSource/a.cpp:2: foo bar\nSource/a.cpp:3: FOO\n"
			 "Source/a.cpp:4: "));
}

TEST_F(CVXFileTools, SearchInFilesKeepsTheOrderOfTheWalkOverManyFiles)
{
	for (int32 Index = 0; Index < 1000; ++Index)
	{
		Project.Write("Source/" + std::to_string(Index % 7) + "/" + std::to_string(Index), "needle\nhay\nneedle\n");
	}
	TArray<FString> Files;
	IFileManager::Get().FindFilesRecursive(Files, *Project.Path("Source"), TEXT("*"), true, false);
	FString Expected;
	for (int32 Index = 0; Index < 600; ++Index)
	{
		const FString File = Files[Index].RightChop(Project.Dir().Len());
		Expected += FString::Printf(TEXT("%s:1: needle\n%s:3: needle\n"), *File, *File);
	}
	EXPECT_EQ(Run(TEXT("search_in_files"), TEXT(R"({"path":"Source","pattern":"Needle","max_results":1200})")),
		Expected + TEXT("[Results truncated at 1200. Refine your search.]"));
}
} // namespace
