#include "HAL/FileManager.h"
#include "HAL/PlatformFileManager.h"
#include "Support/FaultPlan.h"
#include "Support/HostTypePrinting.h"
#include "Support/LogCapture.h"
#include "Support/TempProject.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <sys/stat.h>
#include <unistd.h>

namespace
{
IFileManager& Files()
{
	return IFileManager::Get();
}

IPlatformFile& Platform()
{
	return FPlatformFileManager::Get().GetPlatformFile();
}

int32 ModeOf(const FString& Path)
{
	struct stat Status = {};
	EXPECT_EQ(::stat(TCHAR_TO_UTF8(*Path), &Status), 0);
	return (int32)(Status.st_mode & 07777);
}
} // namespace

TEST(FileManager, KnowsFilesFromDirectoriesAndWhatIsMissing)
{
	FTempProject Project;
	Project.Write("Saved/a.txt", "12345");
	const FString File = Project.Path("Saved/a.txt");
	const FString Missing = Project.Path("Saved/none");
	EXPECT_TRUE(Files().FileExists(*File));
	EXPECT_FALSE(Files().FileExists(*Project.Path("Saved")));
	EXPECT_FALSE(Files().FileExists(*(File + TEXT("/below"))));
	EXPECT_TRUE(Files().DirectoryExists(*Project.Path("Saved")));
	EXPECT_TRUE(Files().DirectoryExists(*(Project.Path("Saved") + TEXT("/"))));
	EXPECT_FALSE(Files().DirectoryExists(*File));
	EXPECT_FALSE(Files().DirectoryExists(TEXT("")));
	EXPECT_EQ(Files().FileSize(*File), 5);
	EXPECT_EQ(Files().FileSize(*Missing), -1);
	EXPECT_EQ(Files().FileSize(*Project.Path("Saved")), -1);
	EXPECT_EQ(Files().GetFileAgeSeconds(*Missing), -1);
	EXPECT_TRUE(Files().GetTimeStamp(*Missing) == FDateTime::MinValue());
	EXPECT_FALSE(Files().GetStatData(*Missing).bIsValid);
	const FFileStatData Data = Files().GetStatData(*Project.Path("Saved"));
	EXPECT_TRUE(Data.bIsValid && Data.bIsDirectory && Data.FileSize == -1);
}

TEST(FileManager, KeepsTheTimeStampThatIsSet)
{
	FTempProject Project;
	Project.Write("Saved/a.txt", "");
	const FString File = Project.Path("Saved/a.txt");
	for (const FDateTime& Time : {FDateTime(2024, 2, 29, 23, 59, 59, 123), FDateTime(1969, 12, 31, 23, 59, 59, 500)})
	{
		EXPECT_TRUE(Files().SetTimeStamp(*File, Time));
		EXPECT_EQ(Files().GetTimeStamp(*File).GetTicks(), Time.GetTicks());
	}
	EXPECT_FALSE(Files().SetTimeStamp(*Project.Path("none"), FDateTime(2024, 1, 1)));
}

TEST(FileManager, MovesAndCopiesByTheirRules)
{
	FTempProject Project;
	const auto Reset = [&]
	{
		Project.Write("Saved/a.txt", "a");
		Project.Write("Saved/b.txt", "b");
	};
	const FString A = Project.Path("Saved/a.txt");
	const FString B = Project.Path("Saved/b.txt");
	Reset();
	EXPECT_FALSE(Files().Move(*B, *A, false));
	EXPECT_EQ(Files().Copy(*B, *A, false), (uint32)COPY_Fail);
	EXPECT_EQ(Project.Read("Saved/b.txt"), "b");
	EXPECT_EQ(Files().Copy(*B, *A), (uint32)COPY_OK);
	EXPECT_EQ(Project.Read("Saved/b.txt"), "a");
	EXPECT_TRUE(Files().Move(*Project.Path("Saved/new/deep/c.txt"), *A));
	EXPECT_FALSE(Project.Exists("Saved/a.txt"));
	EXPECT_EQ(Project.Read("Saved/new/deep/c.txt"), "a");

	EXPECT_FALSE(Files().Move(*Project.Path("Saved/x/y.txt"), *Project.Path("none")));
	EXPECT_EQ(Files().Copy(*Project.Path("Saved/x/y.txt"), *Project.Path("none")), (uint32)COPY_Fail);
	EXPECT_FALSE(Project.Exists("Saved/x")) << "a failure makes no directory";
	EXPECT_FALSE(Files().Move(*Project.Path("Saved/new"), *B)) << "a directory isn't replaced";

	Reset();
	ASSERT_EQ(::chmod(TCHAR_TO_UTF8(*A), 0751), 0);
	ASSERT_EQ(::chmod(TCHAR_TO_UTF8(*B), 0444), 0);
	EXPECT_EQ(Files().Copy(*B, *A), (uint32)COPY_Fail) << "read-only";
	EXPECT_EQ(Files().Copy(*B, *A, true, true), (uint32)COPY_OK);
	EXPECT_EQ(ModeOf(B), 0751);
	EXPECT_TRUE(Files().Move(*A, *A)) << "onto itself";
	EXPECT_EQ(Project.Read("Saved/a.txt"), "a");
}

TEST(FileManager, MovesAcrossFileSystemsByCopying)
{
	FTempProject Project;
	Project.Write("Saved/a.txt", "content");
	const FFaultPlan Plan(EHostFault::File, 1, FFaultPlan::EHow::Once, EXDEV);
	EXPECT_TRUE(Files().Move(*Project.Path("Saved/b.txt"), *Project.Path("Saved/a.txt")));
	EXPECT_EQ(Plan.Failures(), 1);
	EXPECT_EQ(Project.Read("Saved/b.txt"), "content");
	EXPECT_FALSE(Project.Exists("Saved/a.txt"));
}

TEST(FileManager, AFailedMoveOrCopyLosesNothing)
{
	FTempProject Project;
	for (const bool bMove : {false, true})
	{
		const int32 Faults = FFaultPlan::ForEach(EHostFault::File, FFaultPlan::EHow::FromThereOn,
			[&](int32)
			{
				FLogCapture Log;
				Project.Write("Saved/a.txt", "a");
				Project.Write("Saved/b.txt", "b");
				const FString From = Project.Path("Saved/a.txt");
				const FString To = Project.Path("Saved/b.txt");
				const bool bDone = bMove ? Files().Move(*To, *From) : Files().Copy(*To, *From) == COPY_OK;
				EXPECT_EQ(Project.Read("Saved/b.txt"), bDone ? "a" : "b");
				EXPECT_EQ(Project.Exists("Saved/a.txt"), !bMove || !bDone);
				EXPECT_EQ(Log.Count(TEXT("b.txt"), ELogVerbosity::Warning), bDone ? 0 : 1);
			});
		EXPECT_GE(Faults, 1);
		EXPECT_EQ(std::distance(std::filesystem::directory_iterator(TCHAR_TO_UTF8(*Project.Path("Saved"))),
					  std::filesystem::directory_iterator()),
			bMove ? 1 : 2);
	}
}

TEST(FileManager, DeletesByTheRulesOfItsFlags)
{
	FTempProject Project;
	Project.Write("Saved/a.txt", "a");
	Project.Write("Saved/locked.txt", "a");
	const FString Locked = Project.Path("Saved/locked.txt");
	ASSERT_EQ(::chmod(TCHAR_TO_UTF8(*Locked), 0444), 0);
	ASSERT_EQ(::symlink("nowhere", TCHAR_TO_UTF8(*Project.Path("Saved/dangling"))), 0);
	FLogCapture Log;
	EXPECT_TRUE(Files().Delete(*Project.Path("Saved/a.txt")));
	EXPECT_TRUE(Files().Delete(*Project.Path("Saved/a.txt")));
	EXPECT_TRUE(Files().Delete(*Project.Path("Saved/dangling"), true));
	EXPECT_EQ(Log.Lines().Num(), 0);
	EXPECT_FALSE(Files().Delete(*Project.Path("Saved/a.txt"), true, false, true));
	EXPECT_EQ(Log.Lines().Num(), 0) << "quiet";
	EXPECT_FALSE(Files().Delete(*Project.Path("Saved/a.txt"), true));
	EXPECT_FALSE(Files().Delete(*Locked));
	EXPECT_FALSE(Files().Delete(*Project.Path("Saved")));
	EXPECT_EQ(Log.Count(TEXT("Cannot delete"), ELogVerbosity::Warning), 3);
	EXPECT_TRUE(Files().Delete(*Locked, false, true));
	EXPECT_FALSE(Project.Exists("Saved/locked.txt"));
}

TEST(FileManager, MakesAndDeletesDirectories)
{
	FTempProject Project;
	EXPECT_FALSE(Files().MakeDirectory(*Project.Path("Saved/a/b")));
	EXPECT_TRUE(Files().MakeDirectory(*Project.Path("Saved/a//b/"), true));
	EXPECT_TRUE(Files().MakeDirectory(*Project.Path("Saved/a/b")));
	EXPECT_TRUE(Files().MakeDirectory(*Project.Path("Saved/a/b"), true));
	Project.Write("Saved/a/b/file.txt", "");
	EXPECT_FALSE(Files().MakeDirectory(*Project.Path("Saved/a/b/file.txt")));
	EXPECT_FALSE(Files().MakeDirectory(*Project.Path("Saved/a/b/file.txt/c"), true));
	EXPECT_FALSE(Files().MakeDirectory(TEXT(""), true));

	EXPECT_FALSE(Files().DeleteDirectory(*Project.Path("Saved/a"))) << "not empty";
	EXPECT_FALSE(Files().DeleteDirectory(*Project.Path("Saved/a/b/file.txt"), false, true)) << "a file";
	EXPECT_TRUE(Files().DeleteDirectory(*Project.Path("Saved/none"), false, true));
	EXPECT_FALSE(Files().DeleteDirectory(*Project.Path("Saved/none"), true, true));
	EXPECT_FALSE(Files().DeleteDirectory(TEXT("/"), false, true));
	EXPECT_FALSE(Files().DeleteDirectory(TEXT("/tmp/.."), false, true));
	EXPECT_TRUE(Files().DeleteDirectory(*Project.Path("Saved/a"), true, true));
	EXPECT_FALSE(Project.Exists("Saved/a"));
}

TEST(FileManager, DeletesATreeWithoutFollowingLinksWhateverItsNamesAre)
{
	FTempProject Project;
	Project.Write("Kept/file.txt", "kept");
	for (const char* Name :
		{"Saved/t/plain.txt", "Saved/t/back\\slash", "Saved/t/bad\xFFname/x", "Saved/t/.hidden/y", "Saved/t/new\nline"})
	{
		Project.Write(Name, "x");
	}
	ASSERT_EQ(::symlink("../../Kept", TCHAR_TO_UTF8(*Project.Path("Saved/t/link"))), 0);
	ASSERT_EQ(::symlink("Kept", TCHAR_TO_UTF8(*Project.Path("KeptLink"))), 0);
	std::string Deep = "Saved/t";
	for (int32 Level = 0; Level < 60; ++Level)
	{
		Deep += "/d";
	}
	Project.Write(Deep + "/f", "x");
	EXPECT_TRUE(Files().DeleteDirectory(*Project.Path("Saved/t"), true, true));
	EXPECT_FALSE(Project.Exists("Saved/t"));
	EXPECT_TRUE(Files().DeleteDirectory(*Project.Path("KeptLink"), true, true));
	EXPECT_FALSE(Project.Exists("KeptLink"));
	EXPECT_EQ(Project.Read("Kept/file.txt"), "kept");
}

TEST(FileManager, ATreeThatCannotBeDeletedWholeIsReported)
{
	FTempProject Project;
	const int32 Faults = FFaultPlan::ForEach(EHostFault::File, FFaultPlan::EHow::Once,
		[&](int32)
		{
			Project.Write("Saved/t/a/b.txt", "");
			Project.Write("Saved/t/c.txt", "");
			const bool bGone = Files().DeleteDirectory(*Project.Path("Saved/t"), true, true);
			EXPECT_EQ(bGone, !Project.Exists("Saved/t"));
		});
	EXPECT_GE(Faults, 4);
}

TEST(FileManager, ReadOnlyCanBeAskedAndSet)
{
	FTempProject Project;
	Project.Write("Saved/a.txt", "");
	const FString File = Project.Path("Saved/a.txt");
	EXPECT_FALSE(Files().IsReadOnly(*File));
	EXPECT_TRUE(Platform().SetReadOnly(*File, true));
	EXPECT_TRUE(Files().IsReadOnly(*File));
	EXPECT_EQ(ModeOf(File) & 0222, 0);
	EXPECT_TRUE(Platform().SetReadOnly(*File, false));
	EXPECT_FALSE(Files().IsReadOnly(*File));
	EXPECT_FALSE(Platform().SetReadOnly(*Project.Path("none"), true));
}
