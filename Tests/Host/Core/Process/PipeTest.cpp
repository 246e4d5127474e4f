#include "Support/FaultPlan.h"
#include "Support/HostTypePrinting.h"
#include "Support/ProcessProbe.h"

#include <gtest/gtest.h>

namespace
{
bool WriteBytes(void* Pipe, const std::string& Bytes)
{
	return FPlatformProcess::WritePipe(Pipe, (const uint8*)Bytes.data(), (int32)Bytes.size());
}
} // namespace

TEST(Pipe, NeverCutsACharacterInTwoWhereverTheBytesAreCut)
{
	const std::string Text = "aü€😀é";
	const FString Whole = FString::FromUtf8(Text.data(), (int64)Text.size());
	for (SIZE_T Cut = 0; Cut <= Text.size(); ++Cut)
	{
		FTestPipe Pipe(true);
		EXPECT_TRUE(WriteBytes(Pipe.Write, Text.substr(0, Cut)));
		const FString First = FPlatformProcess::ReadPipe(Pipe.Read);
		EXPECT_TRUE(Whole.StartsWith(First, ESearchCase::CaseSensitive)) << Cut;
		EXPECT_TRUE(WriteBytes(Pipe.Write, Text.substr(Cut)));
		EXPECT_TRUE((First + FPlatformProcess::ReadPipe(Pipe.Read)).Equals(Whole)) << Cut;
	}
}

TEST(Pipe, GivesMalformedBytesOutAtOnceAndACutCharacterAtTheEnd)
{
	const struct
	{
		std::string Bytes;
		const TCHAR* AtOnce;
		const TCHAR* AtEnd;
	} Cases[] = {
		{"a\xFF", TEXT("a\uFFFD"), TEXT("")},
		{"a\x80\x80\x80\x80", TEXT("a\uFFFD\uFFFD\uFFFD\uFFFD"), TEXT("")},
		{"a\xC3", TEXT("a"), TEXT("\uFFFD")},
		{"a\xF0\x9F\x98", TEXT("a"), TEXT("\uFFFD")},
		{std::string("a\0b", 3), TEXT("a\0b"), TEXT("")},
	};
	for (const auto& Case : Cases)
	{
		FTestPipe Pipe(true);
		EXPECT_TRUE(WriteBytes(Pipe.Write, Case.Bytes));
		EXPECT_EQ(FString(*FPlatformProcess::ReadPipe(Pipe.Read)), FString(Case.AtOnce));
		EXPECT_EQ(FPlatformProcess::ReadPipe(Pipe.Read), FString());
		Pipe.CloseWrite();
		EXPECT_EQ(FPlatformProcess::ReadPipe(Pipe.Read), FString(Case.AtEnd));
		EXPECT_EQ(FPlatformProcess::ReadPipe(Pipe.Read), FString());
	}
}

TEST(Pipe, CarriesLinesToAChildAndBack)
{
	FTestPipe Input(true);
	FTestPipe Output;
	FChildGuard Child(StartShell(TEXT("while read -r L; do echo \"<$L>\"; done; echo end"), Output.Write, Input.Read));
	Input.CloseRead();
	Output.CloseWrite();
	FString Written;
	EXPECT_TRUE(FPlatformProcess::WritePipe(Input.Write, FString(TEXT("{\"é\":1}")), &Written));
	EXPECT_EQ(Written, FString(TEXT("{\"é\":1}")));
	EXPECT_EQ(ReadUntil(Output.Read, TEXT("\n")), FString(TEXT("<{\"é\":1}>\n")));
	EXPECT_TRUE(FPlatformProcess::WritePipe(Input.Write, FString()));
	EXPECT_EQ(ReadUntil(Output.Read, TEXT("\n")), FString(TEXT("<>\n")));
	Input.CloseWrite();
	EXPECT_EQ(ReadUntil(Output.Read, TEXT("\n")), FString(TEXT("end\n")));
	FPlatformProcess::WaitForProc(Child.Handle);
}

TEST(Pipe, KeepsErrorsApartWhenTheyHaveAPipeOfTheirOwn)
{
	FTestPipe Output;
	FTestPipe Errors;
	const TCHAR* Params = TEXT("-c \"echo out; echo err >&2\"");
	FChildGuard Apart(FPlatformProcess::CreateProc(
		TEXT("sh"), Params, false, true, true, nullptr, 0, nullptr, Output.Write, nullptr, Errors.Write));
	FPlatformProcess::WaitForProc(Apart.Handle);
	EXPECT_EQ(FPlatformProcess::ReadPipe(Output.Read), FString(TEXT("out\n")));
	EXPECT_EQ(FPlatformProcess::ReadPipe(Errors.Read), FString(TEXT("err\n")));

	FChildGuard Joined(
		FPlatformProcess::CreateProc(TEXT("sh"), Params, false, true, true, nullptr, 0, nullptr, Output.Write));
	FPlatformProcess::WaitForProc(Joined.Handle);
	EXPECT_EQ(FPlatformProcess::ReadPipe(Output.Read), FString(TEXT("out\nerr\n")));
}

TEST(Pipe, GivesAFloodOutInBoundedParts)
{
	constexpr int32 Total = 5000000;
	FTestPipe Output;
	FChildGuard Child(StartShell(FString::Printf(TEXT("head -c %d /dev/zero | tr '\\0' x"), Total), Output.Write));
	Output.CloseWrite();
	int32 Got = 0;
	WaitUntil(
		[&]
		{
			const FString Part = FPlatformProcess::ReadPipe(Output.Read);
			EXPECT_LE(Part.Len(), 1024 * 1024);
			Got += Part.Len();
			return Got == Total;
		});
	TArray<uint8> Bytes;
	WaitUntil([&] { return !FPlatformProcess::IsProcRunning(Child.Handle); });
	EXPECT_FALSE(FPlatformProcess::ReadPipeToArray(Output.Read, Bytes));
	EXPECT_TRUE(Bytes.IsEmpty());
}

TEST(Pipe, GivesUpOnAChildThatNeverReads)
{
	FTestPipe Input(true);
	FTestPipe Output;
	FChildGuard Child(StartShell(TEXT("echo up; exec sleep 300"), Output.Write, Input.Read));
	ReadUntil(Output.Read, TEXT("up"));
	TArray<uint8> Data;
	Data.SetNumZeroed(4 * 1024 * 1024);
	int32 Written = -1;
	EXPECT_FALSE(FPlatformProcess::WritePipe(Input.Write, Data.GetData(), Data.Num(), &Written, 0.1));
	EXPECT_GT(Written, 0);
	EXPECT_LT(Written, Data.Num());
	EXPECT_TRUE(FPlatformProcess::IsProcRunning(Child.Handle));
}

TEST(Pipe, FailsToWriteToAReaderThatHasGone)
{
	FTestPipe Pipe(true);
	Pipe.CloseRead();
	FString Written(TEXT("old"));
	EXPECT_FALSE(FPlatformProcess::WritePipe(Pipe.Write, FString(TEXT("lost")), &Written));
	EXPECT_TRUE(Written.IsEmpty());
	EXPECT_FALSE(FPlatformProcess::WritePipe(nullptr, FString(TEXT("lost"))));
	EXPECT_TRUE(FPlatformProcess::ReadPipe(nullptr).IsEmpty());
}

TEST(Pipe, ReportsWhatTheSystemRefuses)
{
	{
		const FFaultPlan Plan(EHostFault::Process, 1);
		void* Read = &Read;
		void* Write = &Write;
		EXPECT_FALSE(FPlatformProcess::CreatePipe(Read, Write));
		EXPECT_EQ(Read, nullptr);
		EXPECT_EQ(Write, nullptr);
	}
	FTestPipe Pipe(true);
	const FFaultPlan Plan(EHostFault::Process, 1);
	EXPECT_FALSE(FPlatformProcess::WritePipe(Pipe.Write, FString(TEXT("lost"))));
	EXPECT_TRUE(FPlatformProcess::WritePipe(Pipe.Write, FString(TEXT("kept"))));
	EXPECT_EQ(FPlatformProcess::ReadPipe(Pipe.Read), FString(TEXT("kept\n")));
}
