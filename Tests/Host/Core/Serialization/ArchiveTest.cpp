#include "HAL/FileManager.h"
#include "Serialization/MemoryReader.h"
#include "Serialization/MemoryWriter.h"
#include "Support/FaultPlan.h"
#include "Support/HostTypePrinting.h"
#include "Support/LogCapture.h"
#include "Support/TempProject.h"
#include "Templates/UniquePtr.h"
#include "UObject/NameTypes.h"

#include <gtest/gtest.h>

namespace
{
enum class EKind : uint8
{
	First,
	Second
};

struct FRecord
{
	bool bFlag = true;
	int8 Small = -1;
	uint64 Large = MAX_uint64;
	double Real = -0.1;
	EKind Kind = EKind::Second;
	FString Narrow = TEXT("narrow");
	FString Wide = TEXT("ü€😀");
	FString Empty;
	FName Name = TEXT("Some_Name_7");
	TArray<uint8> Bytes = {0, 255, 7};
	TArray<FString> Texts = {TEXT("a"), TEXT(""), TEXT("ß")};
	TArray<TArray<int32>> Nested = {{1, 2}, {}, {3}};

	friend FArchive& operator<<(FArchive& Archive, FRecord& Record)
	{
		Archive << Record.bFlag << Record.Small << Record.Large << Record.Real << Record.Kind << Record.Narrow;
		Archive << Record.Wide << Record.Empty << Record.Name << Record.Bytes << Record.Texts << Record.Nested;
		return Archive;
	}
};

TArray<uint8> Saved()
{
	FRecord Record;
	TArray<uint8> Bytes;
	FMemoryWriter Writer(Bytes);
	Writer << Record;
	EXPECT_FALSE(Writer.IsError());
	return Bytes;
}

FRecord Blank()
{
	return FRecord{false, 0, 0, 0, EKind::First, TEXT("x"), TEXT("x"), TEXT("x"), NAME_None, {}, {}, {}};
}

void ExpectSame(const FRecord& Got)
{
	const FRecord Record;
	EXPECT_TRUE(Got.bFlag == Record.bFlag && Got.Small == Record.Small && Got.Large == Record.Large);
	EXPECT_TRUE(Got.Real == Record.Real && Got.Kind == Record.Kind && Got.Name == Record.Name);
	EXPECT_TRUE(Got.Narrow.Equals(Record.Narrow) && Got.Wide.Equals(Record.Wide) && Got.Empty.IsEmpty());
	EXPECT_EQ(Got.Bytes, Record.Bytes);
	EXPECT_EQ(Got.Texts, Record.Texts);
	EXPECT_TRUE(Got.Nested == Record.Nested);
}

/** A count, and nothing behind it. */
TArray<uint8> Claim(int32 Count)
{
	TArray<uint8> Bytes;
	FMemoryWriter(Bytes) << Count;
	Bytes.AddZeroed(3);
	return Bytes;
}

/** A stream that doesn't know its end. */
class FEndless final : public FArchive
{
public:
	FEndless() { SetIsLoading(true); }
	void Serialize(void* Data, int64 Num) override { FMemory::Memset(Data, 0x7F, (SIZE_T)Num); }
};
} // namespace

TEST(Archive, ReadsBackWhatItWrote)
{
	TArray<uint8> Bytes = Saved();
	FRecord Got = Blank();
	FMemoryReader Reader(Bytes);
	Reader << Got;
	EXPECT_FALSE(Reader.IsError());
	EXPECT_TRUE(Reader.AtEnd());
	ExpectSame(Got);
}

TEST(Archive, ReportsAnInputThatEndsTooEarlyWhereverItEnds)
{
	const TArray<uint8> Bytes = Saved();
	for (int32 Length = 0; Length < Bytes.Num(); ++Length)
	{
		FRecord Got = Blank();
		FMemoryReader Reader(TArrayView<const uint8>(Bytes.GetData(), Length));
		Reader << Got;
		EXPECT_TRUE(Reader.IsError()) << Length;
		EXPECT_EQ(Reader.GetRemaining(), 0);
	}
}

TEST(Archive, MakesNoRoomForHostileCounts)
{
	for (const int32 Count : {MAX_int32, MIN_int32, -1, -MAX_int32, 4, 1000000000, -1000000000})
	{
		const TArray<uint8> Bytes = Claim(Count);
		FString Text(TEXT("old"));
		FMemoryReader ForText(Bytes);
		ForText << Text;
		EXPECT_EQ(ForText.IsError(), Count != -1) << Count;
		EXPECT_TRUE(Text.IsEmpty()) << Count;
		TArray<uint8> Raw = {1};
		FMemoryReader ForBytes(Bytes);
		ForBytes << Raw;
		EXPECT_TRUE(ForBytes.IsError()) << Count;
		EXPECT_LE(Raw.GetAllocatedSize(), 64u) << Count;
		TArray<FString> Texts;
		FMemoryReader ForTexts(Bytes);
		ForTexts << Texts;
		EXPECT_TRUE(ForTexts.IsError()) << Count;
		EXPECT_LE(Texts.GetAllocatedSize(), 1024u) << Count;
	}
	FEndless Endless;
	FString Text;
	Endless << Text;
	EXPECT_TRUE(Endless.IsError());
	EXPECT_LE(Text.GetAllocatedSize(), 64u);
}

TEST(Archive, SurvivesEveryDamagedByte)
{
	const TArray<uint8> Bytes = Saved();
	for (int32 Index = 0; Index < Bytes.Num(); ++Index)
	{
		for (const uint8 Damage : {0x01, 0x80, 0xFF})
		{
			TArray<uint8> Damaged = Bytes;
			Damaged[Index] ^= Damage;
			FRecord Got = Blank();
			FMemoryReader Reader(Damaged);
			Reader << Got;
			EXPECT_LE(Reader.Tell(), Damaged.Num());
		}
	}
}

TEST(Archive, SeeksOnlyWithinItsBytes)
{
	TArray<uint8> Bytes;
	FMemoryWriter Writer(Bytes);
	uint32 Value = 1;
	Writer << Value << Value;
	Writer.Seek(4);
	Value = 0xAABBCCDD;
	Writer << Value;
	EXPECT_EQ(Bytes.Num(), 8);
	EXPECT_EQ(Bytes[4], 0xDD) << "little-endian";
	FMemoryWriter Appending(Bytes, false, true);
	Appending << Value;
	EXPECT_EQ(Bytes.Num(), 12);
	FMemoryReader Reader(Bytes);
	Reader.Seek(12);
	EXPECT_TRUE(Reader.AtEnd());
	Reader.Seek(13);
	EXPECT_TRUE(Reader.IsError());
	Writer.Seek(-1);
	EXPECT_TRUE(Writer.IsError());
}

TEST(FileArchive, WritesAndReadsFilesLargerThanItsBuffer)
{
	FTempProject Project;
	const FString Path = Project.Path("Saved/new/data.bin");
	TArray<uint8> Block;
	for (int32 Index = 0; Index < 200000; ++Index)
	{
		Block.Add((uint8)(Index * 7));
	}
	TUniquePtr<FArchive> Writer(IFileManager::Get().CreateFileWriter(*Path));
	ASSERT_TRUE(Writer.IsValid());
	FRecord Record;
	*Writer << Record << Block << Record;
	EXPECT_EQ(Writer->TotalSize(), Writer->Tell());
	EXPECT_TRUE(Writer->Close());
	Writer.Reset();

	Writer.Reset(IFileManager::Get().CreateFileWriter(*Path, FILEWRITE_Append));
	*Writer << Record;
	EXPECT_TRUE(Writer->Close());

	const TUniquePtr<FArchive> Reader(IFileManager::Get().CreateFileReader(*Path));
	ASSERT_TRUE(Reader.IsValid());
	FRecord First = Blank();
	FRecord Second = Blank();
	FRecord Third = Blank();
	TArray<uint8> Got;
	*Reader << First << Got << Second << Third;
	EXPECT_FALSE(Reader->IsError());
	EXPECT_TRUE(Reader->AtEnd());
	EXPECT_EQ(Got, Block);
	ExpectSame(First);
	ExpectSame(Third);
	Reader->Seek(0);
	*Reader << Second;
	ExpectSame(Second);
	Reader->Seek(Reader->TotalSize() - 2);
	int32 Beyond = 5;
	*Reader << Beyond;
	EXPECT_TRUE(Reader->IsError());
	EXPECT_EQ(Beyond, 0);
}

TEST(FileArchive, ReportsEachFailedCall)
{
	FTempProject Project;
	const FString Path = Project.Path("Saved/data.bin");
	FLogCapture Log;
	const int32 Faults = FFaultPlan::ForEach(EHostFault::File, FFaultPlan::EHow::Once,
		[&](int32 Nth)
		{
			const TUniquePtr<FArchive> Writer(IFileManager::Get().CreateFileWriter(*Path));
			FRecord Record;
			bool bDone = Writer.IsValid() && (*Writer << Record).Close();
			const TUniquePtr<FArchive> Reader(bDone ? IFileManager::Get().CreateFileReader(*Path) : nullptr);
			FRecord Got = Blank();
			bDone = Reader.IsValid() && !(*Reader << Got).IsError();
			EXPECT_EQ(bDone, FFaultInjection::GetFailures(EHostFault::File) == 0) << Nth;
		});
	EXPECT_GE(Faults, 4) << "two openings, a write and a read";
	EXPECT_EQ(IFileManager::Get().CreateFileReader(*Project.Path("none"), FILEREAD_Silent), nullptr);
	EXPECT_EQ(IFileManager::Get().CreateFileWriter(*Path, FILEWRITE_NoReplaceExisting | FILEWRITE_Silent), nullptr);
	EXPECT_EQ(Log.Count(TEXT("none"), ELogVerbosity::Warning), 0);
}
