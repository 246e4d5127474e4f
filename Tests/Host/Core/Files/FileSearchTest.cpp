#include "HAL/FileManager.h"
#include "Support/FaultPlan.h"
#include "Support/HostTypePrinting.h"
#include "Support/TempProject.h"

#include <gtest/gtest.h>

#include <unistd.h>

namespace
{
using FNames = TArray<FString>;

class FileSearch : public testing::Test
{
protected:
	FileSearch()
	{
		for (const char* File :
			{"T/b.TXT", "T/a.txt", "T/notes", "T/.hidden.txt", "T/Sub/c.txt", "T/Sub/Deep/d.cpp", "T/Empty/x"})
		{
			Project.Write(File, "");
		}
		EXPECT_EQ(::unlink(TCHAR_TO_UTF8(*Project.Path("T/Empty/x"))), 0);
	}

	FNames Find(const TCHAR* Pattern, bool bFiles, bool bDirectories)
	{
		FNames Names;
		IFileManager::Get().FindFiles(Names, *(Project.Path("T/") + Pattern), bFiles, bDirectories);
		Names.Sort();
		return Names;
	}

	/** Paths below T, sorted. */
	FNames FindAll(const TCHAR* Pattern, bool bFiles, bool bDirectories)
	{
		FNames Paths;
		IFileManager::Get().FindFilesRecursive(Paths, *Project.Path("T"), Pattern, bFiles, bDirectories);
		for (FString& Path : Paths)
		{
			EXPECT_TRUE(Path.RemoveFromStart(Project.Path("T/"), ESearchCase::CaseSensitive)) << TCHAR_TO_UTF8(*Path);
		}
		Paths.Sort();
		return Paths;
	}

	void Link(const char* Target, const char* Name)
	{
		EXPECT_EQ(::symlink(Target, TCHAR_TO_UTF8(*Project.Path(Name))), 0);
	}

	FTempProject Project;
};
} // namespace

TEST_F(FileSearch, FindsNamesInOneDirectory)
{
	const struct
	{
		const TCHAR* Pattern;
		bool bFiles;
		bool bDirectories;
		FNames Names;
	} Cases[] = {
		{TEXT("*"), true, false, {TEXT(".hidden.txt"), TEXT("a.txt"), TEXT("b.TXT"), TEXT("notes")}},
		{TEXT("*.*"), true, false, {TEXT(".hidden.txt"), TEXT("a.txt"), TEXT("b.TXT"), TEXT("notes")}},
		{TEXT(""), false, true, {TEXT("Empty"), TEXT("Sub")}},
		{TEXT("*.txt"), true, true, {TEXT(".hidden.txt"), TEXT("a.txt"), TEXT("b.TXT")}},
		{TEXT("?.TXT"), true, true, {TEXT("a.txt"), TEXT("b.TXT")}},
		{TEXT("s*"), true, true, {TEXT("Sub")}},
		{TEXT("notes"), true, false, {TEXT("notes")}},
		{TEXT("none*"), true, true, {}},
		{TEXT("missing/*"), true, true, {}},
		{TEXT("Sub\\*"), true, true, {TEXT("Deep"), TEXT("c.txt")}},
	};
	for (const auto& Case : Cases)
	{
		FNames Expected = Case.Names;
		Expected.Sort();
		EXPECT_EQ(Find(Case.Pattern, Case.bFiles, Case.bDirectories), Expected) << TCHAR_TO_UTF8(Case.Pattern);
	}
}

TEST_F(FileSearch, FindsFilesByTheirExtensionHoweverItIsWritten)
{
	for (const TCHAR* Extension : {TEXT("txt"), TEXT(".txt"), TEXT("*.txt"), TEXT("TXT")})
	{
		FNames Names = {TEXT("kept")};
		IFileManager::Get().FindFiles(Names, *Project.Path("T"), Extension);
		EXPECT_EQ(Names.Num(), 4) << TCHAR_TO_UTF8(Extension);
	}
	FNames Names;
	IFileManager::Get().FindFiles(Names, *Project.Path("T"));
	EXPECT_EQ(Names.Num(), 4);
}

TEST_F(FileSearch, FindsPathsInTheWholeTree)
{
	EXPECT_EQ(FindAll(TEXT("*.txt"), true, false),
		(FNames{TEXT(".hidden.txt"), TEXT("a.txt"), TEXT("b.TXT"), TEXT("Sub/c.txt")}));
	EXPECT_EQ(FindAll(TEXT("*"), false, true), (FNames{TEXT("Empty"), TEXT("Sub"), TEXT("Sub/Deep")}));
	EXPECT_EQ(FindAll(TEXT("d*"), true, true), (FNames{TEXT("Sub/Deep"), TEXT("Sub/Deep/d.cpp")}));
	EXPECT_EQ(FindAll(TEXT("*"), true, true).Num(), 9);

	FNames Kept = {TEXT("kept")};
	IFileManager::Get().FindFilesRecursive(Kept, *Project.Path("T"), TEXT("*.cpp"), true, false, false);
	EXPECT_EQ(Kept.Num(), 2);
	IFileManager::Get().FindFilesRecursive(Kept, *Project.Path("none"), TEXT("*"), true, true);
	EXPECT_TRUE(Kept.IsEmpty());
}

TEST_F(FileSearch, FollowsLinksOnceAndNeverInCircles)
{
	Project.Write("Outside/o.txt", "");
	Link("..", "T/Sub/up");
	Link(".", "T/self");
	Link("../Outside", "T/out1");
	Link("../../Outside", "T/Sub/out2");
	Link("nowhere.txt", "T/dangling.txt");
	Link("loop.txt", "T/loop.txt");
	const FNames Found = FindAll(TEXT("*.txt"), true, false);
	EXPECT_EQ(Found.FilterByPredicate([](const FString& Path) { return Path.EndsWith(TEXT("o.txt")); }).Num(), 1);
	EXPECT_EQ(Found.FilterByPredicate([](const FString& Path) { return Path.EndsWith(TEXT("c.txt")); }).Num(), 1);
	EXPECT_TRUE(Found.Contains(FString(TEXT("dangling.txt"))));
	EXPECT_TRUE(Found.Contains(FString(TEXT("loop.txt"))));
	EXPECT_TRUE(FindAll(TEXT("*"), false, true).Contains(FString(TEXT("Sub/up")))) << "a link to a directory is one";

	int32 Visits = 0;
	EXPECT_TRUE(IFileManager::Get().IterateDirectoryRecursively(*Project.Path("T"),
		[&](const TCHAR* Path, bool)
		{
			Visits += FString(Path).EndsWith(TEXT("/o.txt")) ? 1 : 0;
			return true;
		}));
	EXPECT_EQ(Visits, 1);
}

TEST_F(FileSearch, VisitsUntilItIsToldToEnd)
{
	TSet<FString> Seen;
	EXPECT_TRUE(IFileManager::Get().IterateDirectory(*Project.Path("T"),
		[&](const TCHAR* Path, bool bIsDirectory)
		{
			EXPECT_EQ(bIsDirectory, IFileManager::Get().DirectoryExists(Path));
			Seen.Add(Path);
			return true;
		}));
	EXPECT_EQ(Seen.Num(), 6);
	EXPECT_TRUE(Seen.Contains(Project.Path("T/Sub")));

	int32 Total = 0;
	IFileManager::Get().IterateDirectoryRecursively(
		*Project.Path("T"), [&](const TCHAR*, bool) { return ++Total > 0; });
	EXPECT_EQ(Total, 9);
	for (int32 Limit = 1; Limit < Total; ++Limit)
	{
		int32 Count = 0;
		EXPECT_FALSE(IFileManager::Get().IterateDirectoryRecursively(
			*Project.Path("T"), [&](const TCHAR*, bool) { return ++Count < Limit; }));
		EXPECT_EQ(Count, Limit);
	}
	EXPECT_FALSE(IFileManager::Get().IterateDirectory(*Project.Path("none"), [](const TCHAR*, bool) { return true; }));
}

TEST_F(FileSearch, AVisitorMayDeleteWhatItSees)
{
	EXPECT_TRUE(IFileManager::Get().IterateDirectory(*Project.Path("T"),
		[](const TCHAR* Path, bool bIsDirectory) { return bIsDirectory || IFileManager::Get().Delete(Path, true); }));
	EXPECT_EQ(Find(TEXT("*"), true, false), FNames());
}
