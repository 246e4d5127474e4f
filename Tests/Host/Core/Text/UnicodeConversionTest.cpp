#include "Containers/StringConv.h"
#include "Containers/UnrealString.h"

#include <gtest/gtest.h>

#include <random>
#include <string>

namespace
{
std::string ToUtf8(const FString& Text)
{
	return std::string(FTCHARToUTF8(Text).Get(), (size_t)FTCHARToUTF8(Text).Length());
}

FString FromUtf8(const std::string& Bytes)
{
	return FString::FromUtf8(Bytes.data(), (int64)Bytes.size());
}

/** Encodes one code point by the definition of UTF-8, without the code under test. */
void AppendCodePoint(std::string& Out, uint32 Code)
{
	if (Code < 0x80)
	{
		Out += (char)Code;
		return;
	}
	const int32 Trailing = Code < 0x800 ? 1 : (Code < 0x10000 ? 2 : 3);
	const uint32 Mark = Trailing == 1 ? 0xC0 : (Trailing == 2 ? 0xE0 : 0xF0);
	Out += (char)(Mark | (Code >> (6 * Trailing)));
	for (int32 Index = Trailing - 1; Index >= 0; --Index)
	{
		Out += (char)(0x80 | ((Code >> (6 * Index)) & 0x3F));
	}
}

const std::string Bad = "\xEF\xBF\xBD";
} // namespace

TEST(UnicodeConversion, EveryCodePointGoesThereAndBack)
{
	for (uint32 Code = 1; Code < 0x110000; Code += Code < 0x3000 ? 1 : 37)
	{
		if ((Code & 0x1FF800) == 0xD800)
		{
			continue;
		}
		std::string Bytes;
		AppendCodePoint(Bytes, Code);
		const FString Text = FromUtf8(Bytes);
		ASSERT_EQ(Text.Len(), Code < 0x10000 ? 1 : 2) << std::hex << Code;
		ASSERT_EQ(ToUtf8(Text), Bytes) << std::hex << Code;
	}
}

TEST(UnicodeConversion, RandomMixturesGoThereAndBackAtEveryAlignment)
{
	std::mt19937 Random(7);
	const uint32 Ceilings[] = {0x7F, 0x7FF, 0xD7FF, 0x10FFFF};
	for (int32 Round = 0; Round < 400; ++Round)
	{
		std::string Bytes;
		const uint32 Ceiling = Ceilings[Round % 4];
		for (uint32 Count = Random() % 200; Count > 0; --Count)
		{
			const uint32 Code = 1 + Random() % (Random() % 3 ? 0x7F : Ceiling);
			AppendCodePoint(Bytes, (Code & 0x1FF800) == 0xD800 ? 0x20AC : Code);
		}
		ASSERT_EQ(ToUtf8(FromUtf8(Bytes)), Bytes);
	}
}

TEST(UnicodeConversion, MalformedBytesBecomeReplacementsAndKeepTheirNeighbours)
{
	const struct
	{
		std::string Bytes;
		std::string Expected;
	} Cases[] = {
		{"a\xFFz", "a" + Bad + "z"},
		{"a\x80\xBFz", "a" + Bad + Bad + "z"},
		{"a\xC0\xAFz", "a" + Bad + Bad + "z"},
		{"a\xE2\x82z", "a" + Bad + "z"},
		{"a\xE2\x82", "a" + Bad},
		{"a\xED\xA0\x80z", "a" + Bad + Bad + Bad + "z"},
		{"a\xF4\x90\x80\x80z", "a" + Bad + Bad + Bad + Bad + "z"},
		{"a\xF0\x9F\x98z", "a" + Bad + "z"},
		{"a\xE0\x80\x80z", "a" + Bad + Bad + Bad + "z"},
		{"\xF0\x9F\x98\x80\xC3", "\xF0\x9F\x98\x80" + Bad},
		{"\xD0\xB0\xD0\xB1\xD0z", "\xD0\xB0\xD0\xB1" + Bad + "z"},
	};
	for (const auto& Case : Cases)
	{
		EXPECT_EQ(ToUtf8(FromUtf8(Case.Bytes)), Case.Expected) << Case.Bytes;
		// Deep inside a long text, where the block paths run, the outcome is the same.
		const std::string Long(37, 'x');
		EXPECT_EQ(ToUtf8(FromUtf8(Long + Case.Bytes + Long)), Long + Case.Expected + Long);
	}
}

TEST(UnicodeConversion, LoneSurrogatesBecomeReplacements)
{
	const TCHAR High[] = {u'a', 0xD83D, u'z', 0};
	const TCHAR Low[] = {0xDE00, u'z', 0};
	const TCHAR AtEnd[] = {u'a', 0xD83D, 0};
	const TCHAR TwoHighsAndALow[] = {0xD83D, 0xD83D, 0xDE00, 0};
	EXPECT_EQ(ToUtf8(High), "a" + Bad + "z");
	EXPECT_EQ(ToUtf8(Low), Bad + "z");
	EXPECT_EQ(ToUtf8(AtEnd), "a" + Bad);
	EXPECT_EQ(ToUtf8(TwoHighsAndALow), Bad + "\xF0\x9F\x98\x80");
}

TEST(UnicodeConversion, AnyBytesDecodeToWellFormedTextWithoutTouchingWhatLiesBehind)
{
	std::mt19937 Random(11);
	for (int32 Round = 0; Round < 2000; ++Round)
	{
		std::vector<char> Bytes(Random() % 64);
		for (char& Byte : Bytes)
		{
			Byte = (char)(Random() % 2 ? Random() : 0xC0 + Random() % 0x40);
		}
		const FString Text = FString::FromUtf8(Bytes.data(), (int64)Bytes.size());
		ASSERT_LE(Text.Len(), (int32)Bytes.size());
		ASSERT_TRUE(FromUtf8(ToUtf8(Text)).Equals(Text));
	}
}
