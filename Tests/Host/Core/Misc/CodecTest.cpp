#include "Internationalization/Regex.h"
#include "Misc/Base64.h"
#include "Misc/Compression.h"
#include "Misc/Crc.h"
#include "Support/HostTypePrinting.h"
#include "Support/LogCapture.h"

#include <gtest/gtest.h>

TEST(Base64, AgreesWithTheStandardsExamples)
{
	// RFC 4648, section 10.
	const struct
	{
		const TCHAR* Plain;
		const TCHAR* Encoded;
	} Cases[] = {{TEXT(""), TEXT("")}, {TEXT("f"), TEXT("Zg==")}, {TEXT("fo"), TEXT("Zm8=")},
		{TEXT("foo"), TEXT("Zm9v")}, {TEXT("foob"), TEXT("Zm9vYg==")}, {TEXT("fooba"), TEXT("Zm9vYmE=")},
		{TEXT("foobar"), TEXT("Zm9vYmFy")}};
	for (const auto& Case : Cases)
	{
		FString Decoded;
		EXPECT_TRUE(FBase64::Encode(FString(Case.Plain)).Equals(Case.Encoded));
		EXPECT_TRUE(FBase64::Decode(Case.Encoded, Decoded));
		EXPECT_TRUE(Decoded.Equals(Case.Plain));
	}
	TArray<uint8> All;
	for (int32 Value = 0; Value < 256; ++Value)
	{
		All.Add((uint8)Value);
	}
	TArray<uint8> Back;
	EXPECT_TRUE(FBase64::Decode(FBase64::Encode(All), Back));
	EXPECT_EQ(Back, All);
}

TEST(Base64, RefusesWhatIsNotBase64)
{
	TArray<uint8> Out;
	for (const TCHAR* Bad : {TEXT("Zg="), TEXT("Z"), TEXT("Zg==Zg=="), TEXT("Z*=="), TEXT("===="), TEXT("Zgя="),
			 TEXT("Zm9v\n"), TEXT("=m9v")})
	{
		EXPECT_FALSE(FBase64::Decode(Bad, Out)) << TCHAR_TO_UTF8(Bad);
		EXPECT_TRUE(Out.IsEmpty());
	}
}

TEST(Compression, GoesThereAndBackInBothFormatsAndRefusesDamage)
{
	const FString Text = FString::ChrN(50000, u'a') + TEXT("tail");
	const FTCHARToUTF8 Plain(Text);
	for (const FName Format : {NAME_Zlib, NAME_Gzip})
	{
		int32 Size = FCompression::CompressMemoryBound(Format, Plain.Length());
		TArray<uint8> Packed;
		Packed.SetNumUninitialized(Size);
		ASSERT_TRUE(FCompression::CompressMemory(Format, Packed.GetData(), Size, Plain.Get(), Plain.Length()));
		EXPECT_LT(Size, 1000);
		EXPECT_EQ(Packed[0], Format == NAME_Gzip ? 0x1F : 0x78);
		TArray<uint8> Back;
		Back.SetNumZeroed(Plain.Length());
		EXPECT_TRUE(FCompression::UncompressMemory(Format, Back.GetData(), Back.Num(), Packed.GetData(), Size));
		EXPECT_EQ(FMemory::Memcmp(Back.GetData(), Plain.Get(), (SIZE_T)Back.Num()), 0);
		EXPECT_FALSE(FCompression::UncompressMemory(Format, Back.GetData(), Back.Num() - 1, Packed.GetData(), Size));
		EXPECT_FALSE(FCompression::UncompressMemory(Format, Back.GetData(), Back.Num(), Packed.GetData(), Size - 1));
		Packed[Size / 2] ^= 0x55;
		EXPECT_FALSE(FCompression::UncompressMemory(Format, Back.GetData(), Back.Num(), Packed.GetData(), Size));
		int32 TooSmall = 10;
		EXPECT_FALSE(FCompression::CompressMemory(Format, Packed.GetData(), TooSmall, Plain.Get(), Plain.Length()));
	}
	int32 Size = 100;
	uint8 Room[100];
	EXPECT_FALSE(FCompression::CompressMemory(FName(TEXT("Unknown")), Room, Size, "x", 1));
	EXPECT_EQ(FCrc::MemCrc32("123456789", 9), 0xCBF43926u);
	EXPECT_EQ(FCrc::MemCrc32("6789", 4, FCrc::MemCrc32("12345", 5)), 0xCBF43926u);
}

TEST(Regex, FindsMatchesAndGroupsOneAfterTheOther)
{
	FRegexMatcher Matcher(FRegexPattern(TEXT("(\\w+)=(\\d+)?")), TEXT("größe=12, b= c=3"));
	ASSERT_TRUE(Matcher.FindNext());
	EXPECT_EQ(Matcher.GetCaptureGroup(1), TEXT("e"));
	EXPECT_EQ(Matcher.GetCaptureGroup(2), TEXT("12"));
	ASSERT_TRUE(Matcher.FindNext());
	EXPECT_EQ(Matcher.GetCaptureGroup(1), TEXT("b"));
	EXPECT_EQ(Matcher.GetCaptureGroupBeginning(2), INDEX_NONE);
	EXPECT_EQ(Matcher.GetCaptureGroup(2), TEXT(""));
	ASSERT_TRUE(Matcher.FindNext());
	EXPECT_EQ(Matcher.GetMatchBeginning(), 13);
	EXPECT_EQ(Matcher.GetMatchEnding(), 16);
	EXPECT_FALSE(Matcher.FindNext());
	EXPECT_EQ(Matcher.GetMatchBeginning(), INDEX_NONE);

	int32 Empty = 0;
	FRegexMatcher Empties(FRegexPattern(TEXT("x*")), TEXT("axb"));
	while (Empties.FindNext())
	{
		++Empty;
	}
	EXPECT_EQ(Empty, 4) << "nothing, x, nothing, nothing";
	FRegexMatcher Limited(FRegexPattern(TEXT("ABC"), ERegexPatternFlags::CaseInsensitive), TEXT("abc abc"));
	Limited.SetLimits(1, 7);
	ASSERT_TRUE(Limited.FindNext());
	EXPECT_EQ(Limited.GetMatchBeginning(), 4);
}

TEST(Regex, HostilePatternsAndTextsEnd)
{
	const FLogCapture Log;
	FRegexMatcher Broken(FRegexPattern(TEXT("(unclosed")), TEXT("(unclosed"));
	EXPECT_FALSE(Broken.FindNext());
	EXPECT_TRUE(Log.Contains(TEXT("'(unclosed'")));
	FRegexMatcher Explosive(FRegexPattern(TEXT("^(a+)+$")), FString::ChrN(5000, u'a') + TEXT("!"));
	EXPECT_FALSE(Explosive.FindNext());
	const TCHAR Lone[] = {u'a', 0xD800, u'b', 0};
	FRegexMatcher Surrogate(FRegexPattern(TEXT("b")), Lone);
	EXPECT_TRUE(Surrogate.FindNext());
}
