#include "Misc/FileHelper.h"
#include "HAL/PlatformFileManager.h"
#include "Support/FaultPlan.h"
#include "Support/HostTypePrinting.h"
#include "Support/LogCapture.h"
#include "Support/TempProject.h"

#include <gtest/gtest.h>

#include <atomic>
#include <filesystem>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>
#include <vector>

namespace
{
using EEncoding = FFileHelper::EEncodingOptions;

mode_t ModeOf(const FString& Path)
{
	struct stat Status = {};
	EXPECT_EQ(::lstat(TCHAR_TO_UTF8(*Path), &Status), 0);
	return Status.st_mode;
}

/** Without the host, whose calls may be made to fail. */
TArray<FString> NamesIn(const FString& Directory)
{
	TArray<FString> Names;
	for (const auto& Entry : std::filesystem::directory_iterator(TCHAR_TO_UTF8(*Directory)))
	{
		Names.Add(FString(Entry.path().filename().c_str()));
	}
	return Names;
}

TArrayView<const uint8> BytesOf(const std::string& Text)
{
	return TArrayView<const uint8>((const uint8*)Text.data(), (int32)Text.size());
}
} // namespace

TEST(FileHelper, LoadsWhatEachEncodingSaved)
{
	FTempProject Project;
	const FString Path = Project.Path("Saved/text.txt");
	const FString Text(TEXT("Zeile\r\nü€😀\n"));
	const struct
	{
		EEncoding Encoding;
		std::string Bytes;
	} Cases[] = {
		{EEncoding::AutoDetect, "Zeile\r\nü€😀\n"},
		{EEncoding::ForceAnsi, "Zeile\r\nü€😀\n"},
		{EEncoding::ForceUTF8, "\xEF\xBB\xBFZeile\r\nü€😀\n"},
		{EEncoding::ForceUTF8WithoutBOM, "Zeile\r\nü€😀\n"},
		{EEncoding::ForceUnicode, std::string("\xFF\xFEZ\0e\0i\0l\0e\0\r\0\n\0\xFC\0\xAC\x20\x3D\xD8\x00\xDE\n\0", 26)},
	};
	for (const auto& Case : Cases)
	{
		EXPECT_TRUE(FFileHelper::SaveStringToFile(Text, *Path, Case.Encoding));
		EXPECT_EQ(Project.Read("Saved/text.txt"), Case.Bytes);
		FString Loaded(TEXT("old"));
		EXPECT_TRUE(FFileHelper::LoadFileToString(Loaded, *Path));
		EXPECT_TRUE(Loaded.Equals(Text));
		EXPECT_TRUE(FFileHelper::SaveStringToFile(FString(), *Path, Case.Encoding));
		EXPECT_TRUE(FFileHelper::LoadFileToString(Loaded, *Path));
		EXPECT_TRUE(Loaded.IsEmpty());
	}
}

TEST(FileHelper, LoadsForeignAndBrokenBytes)
{
	const struct
	{
		std::string Bytes;
		const TCHAR* Text;
	} Cases[] = {
		{std::string("\xFE\xFF\0A\x20\xAC", 6), TEXT("A€")},
		{std::string("\xFF\xFE"
					 "A\0B",
			 5),
			TEXT("A")},
		{"\xFF\xFE", TEXT("")},
		{"\xEF\xBB\xBF", TEXT("")},
		{"\xEF\xBB", TEXT("\uFFFD")},
		{"a\xFF\xC3(b", TEXT("a\uFFFD\uFFFD(b")},
	};
	for (const auto& Case : Cases)
	{
		FString Text;
		FFileHelper::BufferToString(Text, (const uint8*)Case.Bytes.data(), (int32)Case.Bytes.size());
		EXPECT_EQ(Text, FString(Case.Text));
	}
	FString Nul;
	FFileHelper::BufferToString(Nul, (const uint8*)"a\0b", 3);
	EXPECT_EQ(Nul.Len(), 3) << "a zero byte is a character like others";
}

TEST(FileHelper, LinesComeBackAsTheyWereSaved)
{
	FTempProject Project;
	const FString Path = Project.Path("Saved/lines.txt");
	const TArray<FString> Lines = {TEXT("one"), TEXT(""), TEXT("three")};
	EXPECT_TRUE(FFileHelper::SaveStringArrayToFile(Lines, *Path));
	EXPECT_EQ(Project.Read("Saved/lines.txt"), "one\n\nthree\n");
	TArray<FString> Loaded;
	EXPECT_TRUE(FFileHelper::LoadFileToStringArray(Loaded, *Path));
	EXPECT_EQ(Loaded, Lines);
	Project.Write("Saved/lines.txt", "a\r\nb");
	EXPECT_TRUE(FFileHelper::LoadFileToStringArray(Loaded, *Path));
	EXPECT_EQ(Loaded, (TArray<FString>{TEXT("a"), TEXT("b")}));
}

TEST(FileHelper, AFailedSaveLeavesTheOldFileAndNothingElse)
{
	FTempProject Project;
	for (const FFaultPlan::EHow How : {FFaultPlan::EHow::Once, FFaultPlan::EHow::FromThereOn})
	{
		for (const bool bOldExists : {true, false})
		{
			const FString Path = Project.Path("Saved/Deep/er/file.txt");
			const int32 Faults = FFaultPlan::ForEach(EHostFault::File, How,
				[&](int32 Nth)
				{
					FFaultInjection::Disarm();
					IFileManager::Get().DeleteDirectory(*Project.Path("Saved/Deep"), false, true);
					if (bOldExists)
					{
						Project.Write("Saved/Deep/er/file.txt", "the old text");
					}
					const FFaultPlan Plan(EHostFault::File, Nth, How);
					FLogCapture Log;
					const bool bSaved = FFileHelper::SaveStringToFile(FString(TEXT("the new text")), *Path);
					EXPECT_EQ(bSaved, Plan.Failures() == 0);
					EXPECT_EQ(Log.Count(TEXT("Cannot write"), ELogVerbosity::Warning), bSaved ? 0 : 1);
					if (bSaved || bOldExists)
					{
						EXPECT_EQ(Project.Read("Saved/Deep/er/file.txt"), bSaved ? "the new text" : "the old text");
						EXPECT_EQ(NamesIn(Project.Path("Saved/Deep/er")), TArray<FString>{TEXT("file.txt")});
					}
					else
					{
						EXPECT_FALSE(Project.Exists("Saved/Deep/er/file.txt"));
					}
				});
			EXPECT_GE(Faults, 4) << "open, write, sync, rename";
		}
	}
}

TEST(FileHelper, AFailedAppendLeavesNoPartOfTheRecord)
{
	FTempProject Project;
	const FString Path = Project.Path("Saved/log.jsonl");
	FFaultPlan::ForEach(EHostFault::File, FFaultPlan::EHow::Once,
		[&](int32)
		{
			Project.Write("Saved/log.jsonl", "first\n");
			const bool bSaved = FFileHelper::SaveStringToFile(
				FString(TEXT("second\n")), *Path, EEncoding::AutoDetect, &IFileManager::Get(), FILEWRITE_Append);
			EXPECT_EQ(Project.Read("Saved/log.jsonl"), bSaved ? "first\nsecond\n" : "first\n");
		});
}

TEST(FileHelper, SavingKeepsTheModeAndTheLinkToTheFile)
{
	FTempProject Project;
	Project.Write("Saved/real/tool.sh", "old");
	const FString Real = Project.Path("Saved/real/tool.sh");
	const FString Link = Project.Path("Saved/link.sh");
	ASSERT_EQ(::chmod(TCHAR_TO_UTF8(*Real), 0751), 0);
	ASSERT_EQ(::symlink("real/tool.sh", TCHAR_TO_UTF8(*Link)), 0);
	EXPECT_TRUE(FFileHelper::SaveStringToFile(FString(TEXT("new")), *Link));
	EXPECT_TRUE(S_ISLNK(ModeOf(Link)));
	EXPECT_EQ(ModeOf(Real) & 07777, 0751u);
	EXPECT_EQ(Project.Read("Saved/real/tool.sh"), "new");
	EXPECT_EQ(NamesIn(Project.Path("Saved/real")).Num(), 1);

	ASSERT_EQ(::chmod(TCHAR_TO_UTF8(*Real), 0444), 0);
	EXPECT_FALSE(FFileHelper::SaveStringToFile(FString(TEXT("refused")), *Real));
	EXPECT_EQ(Project.Read("Saved/real/tool.sh"), "new");
	EXPECT_TRUE(FFileHelper::SaveStringToFile(
		FString(TEXT("forced")), *Real, EEncoding::AutoDetect, &IFileManager::Get(), FILEWRITE_EvenIfReadOnly));
	EXPECT_EQ(Project.Read("Saved/real/tool.sh"), "forced");
	EXPECT_EQ(ModeOf(Real) & 07777, 0444u);
	EXPECT_FALSE(FFileHelper::SaveArrayToFile(BytesOf("x"), *Project.Path("Saved/real/tool.sh"), &IFileManager::Get(),
		FILEWRITE_NoReplaceExisting | FILEWRITE_EvenIfReadOnly));
}

TEST(FileHelper, OfSeveralSavesUnderAFreeNameOneSucceedsAndNoneReplaces)
{
	FTempProject Project;
	constexpr int32 Writers = 4;
	for (int32 Round = 0; Round < 20; ++Round)
	{
		const FString Path = Project.Path("Saved/claim" + std::to_string(Round));
		std::atomic<int32> Saved = 0;
		std::atomic<int32> Winner = INDEX_NONE;
		std::vector<std::thread> Threads;
		for (int32 Writer = 0; Writer < Writers; ++Writer)
		{
			Threads.emplace_back(
				[&, Writer]
				{
					const FString Text = FString::FromInt(Writer);
					if (FFileHelper::SaveStringToFile(Text, *Path, EEncoding::AutoDetect, &IFileManager::Get(),
							FILEWRITE_NoReplaceExisting | FILEWRITE_Silent))
					{
						++Saved;
						Winner = Writer;
					}
				});
		}
		for (std::thread& Thread : Threads)
		{
			Thread.join();
		}
		EXPECT_EQ(Saved, 1);
		EXPECT_EQ(Project.Read("Saved/claim" + std::to_string(Round)), std::to_string(Winner));
	}
	EXPECT_EQ(NamesIn(Project.Path("Saved")).Num(), 20);
	ASSERT_EQ(::symlink("nowhere", TCHAR_TO_UTF8(*Project.Path("Saved/link"))), 0);
	EXPECT_FALSE(FFileHelper::SaveArrayToFile(
		BytesOf("x"), *Project.Path("Saved/link"), &IFileManager::Get(), FILEWRITE_NoReplaceExisting));
	EXPECT_FALSE(Project.Exists("Saved/nowhere"));
}

TEST(FileHelper, RefusesWhatIsNoFileInsteadOfHanging)
{
	FTempProject Project;
	const FString Fifo = Project.Path("Saved/fifo");
	ASSERT_EQ(::mkfifo(TCHAR_TO_UTF8(*Fifo), 0600), 0);
	FString Text(TEXT("old"));
	TArray<uint8> Bytes = {1};
	EXPECT_TRUE(FFileHelper::LoadFileToString(Text, *Fifo)) << "a pipe that nobody writes is an empty file";
	EXPECT_TRUE(Text.IsEmpty());
	EXPECT_FALSE(FFileHelper::SaveStringToFile(FString(TEXT("x")), *Fifo)) << "nobody reads";
	for (const FString& Path : {Project.Path("Saved"), Project.Path("missing"), Project.Path("Saved/fifo/below"),
			 FString(), FString::ChrN(5000, u'x')})
	{
		EXPECT_FALSE(FFileHelper::LoadFileToArray(Bytes, *Path)) << TCHAR_TO_UTF8(*Path);
		EXPECT_TRUE(Bytes.IsEmpty());
		EXPECT_FALSE(Path != Project.Path("missing") && FFileHelper::SaveArrayToFile(BytesOf("x"), *Path));
	}
	EXPECT_TRUE(FFileHelper::SaveStringToFile(FString(TEXT("x")), TEXT("/dev/null")));
	EXPECT_TRUE(S_ISCHR(ModeOf(TEXT("/dev/null"))));
}

TEST(FileHelper, BelievesNoClaimAboutAFilesSize)
{
	FTempProject Project;
	Project.Write("Saved/huge.bin", "x");
	const FString Huge = Project.Path("Saved/huge.bin");
	ASSERT_EQ(::truncate(TCHAR_TO_UTF8(*Huge), 1ll << 40), 0);
	TArray<uint8> Bytes;
	EXPECT_FALSE(FFileHelper::LoadFileToArray(Bytes, *Huge));
	EXPECT_EQ(Bytes.GetAllocatedSize(), 0u);
	EXPECT_FALSE(FFileHelper::LoadFileToArray(Bytes, TEXT("/dev/zero"))) << "it has no end";
	FString Status;
	EXPECT_TRUE(FFileHelper::LoadFileToString(Status, TEXT("/proc/self/status"))) << "a file that claims no size";
	EXPECT_TRUE(Status.Contains(TEXT("VmRSS")));
}

TEST(FileHelper, TakesBackSlashesAndDotsInPaths)
{
	FTempProject Project;
	const FString Odd = Project.Dir() + TEXT("Saved\\New\\..\\New\\.\\a.txt");
	EXPECT_TRUE(FPlatformFileManager::Get().GetPlatformFile().CreateDirectory(*Project.Path("Saved/New")));
	EXPECT_TRUE(FFileHelper::SaveStringToFile(FString(TEXT("x")), *Odd));
	EXPECT_EQ(Project.Read("Saved/New/a.txt"), "x");
	EXPECT_TRUE(IFileManager::Get().FileExists(*Odd));
	const TCHAR WithNul[] = TEXT("/nowhere\0/Saved");
	EXPECT_FALSE(IFileManager::Get().DirectoryExists(WithNul));
}
