#include "Containers/UnrealString.h"
#include "Support/HostTypePrinting.h"

#include <gtest/gtest.h>

#include <random>

namespace
{
TArray<FString> Lines(const TCHAR* Text, bool bCullEmpty)
{
	TArray<FString> Result;
	FString(Text).ParseIntoArrayLines(Result, bCullEmpty);
	return Result;
}
} // namespace

TEST(String, ComparisonIgnoresCaseByOperatorAndHeedsItByName)
{
	const FString Mixed(TEXT("Grün ÄΣ Key"));
	EXPECT_TRUE(Mixed == TEXT("GRÜN äσ kEY"));
	EXPECT_FALSE(Mixed.Equals(TEXT("GRÜN äσ kEY")));
	EXPECT_EQ(GetTypeHash(Mixed), GetTypeHash(FString(TEXT("gRÜn Äσ KEY"))));
	EXPECT_LT(FString(TEXT("apple")), FString(TEXT("Banana")));
	EXPECT_GT(FString(TEXT("apple")).Compare(TEXT("Banana")), 0);
	EXPECT_FALSE(FString(TEXT("ab")) == TEXT("abc"));
	EXPECT_EQ(FCString::Stricmp(TEXT("ÄB"), TEXT("äb")), 0);
	EXPECT_LT(FCString::Strnicmp(TEXT("abX"), TEXT("ABz"), 3), 0);
	EXPECT_EQ(FCString::Strncmp(TEXT("abX"), TEXT("abz"), 2), 0);
}

TEST(String, HashAndEqualityAgreeForAnyCaseOfAnyLength)
{
	std::mt19937 Random(3);
	for (int32 Round = 0; Round < 2000; ++Round)
	{
		FString Lower;
		FString Upper;
		for (uint32 Count = Random() % 40; Count > 0; --Count)
		{
			const TCHAR Char = (TCHAR)(Random() % 8 ? 33 + Random() % 94 : 0xA0 + Random() % 0x500);
			Lower.AppendChar(FChar::ToLower(Char));
			Upper.AppendChar(
				FChar::ToLower(FChar::ToUpper(Char)) == FChar::ToLower(Char) ? FChar::ToUpper(Char) : Char);
		}
		ASSERT_TRUE(Lower == Upper);
		ASSERT_EQ(GetTypeHash(Lower), GetTypeHash(Upper)) << TCHAR_TO_UTF8(*Lower);
	}
}

TEST(String, FindAgreesWithANaiveSearchInAllItsForms)
{
	std::mt19937 Random(5);
	const FString Alphabet(TEXT("aAbB kKé\u212A"));
	const auto RandomText = [&](uint32 MaxLen)
	{
		FString Text;
		for (uint32 Count = Random() % (MaxLen + 1); Count > 0; --Count)
		{
			Text.AppendChar(Alphabet[(int32)(Random() % (uint32)Alphabet.Len())]);
		}
		return Text;
	};
	for (int32 Round = 0; Round < 4000; ++Round)
	{
		const FString Text = RandomText(60);
		const FString Needle = RandomText(3);
		const ESearchCase::Type Case = Random() % 2 ? ESearchCase::IgnoreCase : ESearchCase::CaseSensitive;
		int32 First = INDEX_NONE;
		int32 Last = INDEX_NONE;
		for (int32 Place = 0; Needle.Len() > 0 && Place + Needle.Len() <= Text.Len(); ++Place)
		{
			if (Text.Mid(Place, Needle.Len()).Equals(Needle, Case))
			{
				First = First == INDEX_NONE ? Place : First;
				Last = Place;
			}
		}
		ASSERT_EQ(Text.Find(Needle, Case), First) << TCHAR_TO_UTF8(*Text) << " / " << TCHAR_TO_UTF8(*Needle);
		ASSERT_EQ(Text.Find(Needle, Case, ESearchDir::FromEnd), Last);
	}
	EXPECT_EQ(FString(TEXT("abcabc")).Find(TEXT("B"), ESearchCase::IgnoreCase, ESearchDir::FromStart, 2), 4);
	EXPECT_EQ(FString(TEXT("abcabc")).Find(TEXT("b"), ESearchCase::IgnoreCase, ESearchDir::FromEnd, 4), 1);
	EXPECT_EQ(FString(TEXT("abc")).Find(TEXT("")), INDEX_NONE);
	EXPECT_TRUE(FString(TEXT("abc")).StartsWith(TEXT("")));
	EXPECT_TRUE(FString(TEXT("Saved/Log.TXT")).EndsWith(TEXT(".txt")));
	EXPECT_FALSE(FString(TEXT("Saved/Log.TXT")).EndsWith(TEXT(".txt"), ESearchCase::CaseSensitive));
	EXPECT_FALSE(FString(TEXT("ab")).StartsWith(TEXT("abc")));
}

TEST(String, LinesAndPartsAreCutAtEveryDelimiterAndCulledOnDemand)
{
	EXPECT_EQ(Lines(TEXT("a\r\nb\n\nc\rd\n"), false),
		(TArray<FString>{TEXT("a"), TEXT("b"), TEXT(""), TEXT("c"), TEXT("d"), TEXT("")}));
	EXPECT_EQ(Lines(TEXT("a\r\nb\n\nc\rd\n"), true), (TArray<FString>{TEXT("a"), TEXT("b"), TEXT("c"), TEXT("d")}));
	EXPECT_EQ(Lines(TEXT(""), false).Num(), 0);
	EXPECT_EQ(Lines(TEXT("\n"), false).Num(), 2);

	TArray<FString> Parts;
	EXPECT_EQ(FString(TEXT("a||b|")).ParseIntoArray(Parts, TEXT("|"), false), 4);
	EXPECT_EQ(FString(TEXT(" \tone  two\n")).ParseIntoArrayWS(Parts), 2);
	EXPECT_EQ(Parts, (TArray<FString>{TEXT("one"), TEXT("two")}));
	EXPECT_EQ(Parts[1].ParseIntoArray(Parts, TEXT("w")), 2);
	EXPECT_EQ(FString::Join(Parts, TEXT(", ")), TEXT("t, o"));

	FString Text(TEXT("Key=Value=More"));
	FString Rest;
	EXPECT_TRUE(Text.Split(TEXT("="), nullptr, &Rest, ESearchCase::CaseSensitive, ESearchDir::FromEnd));
	EXPECT_EQ(Rest, TEXT("More"));
	EXPECT_TRUE(Text.Split(TEXT("="), &Text, &Rest));
	EXPECT_EQ(Text, TEXT("Key"));
	EXPECT_EQ(Rest, TEXT("Value=More"));
	EXPECT_FALSE(Text.Split(TEXT("#"), &Text, &Rest));
	EXPECT_EQ(Text, TEXT("Key"));
}

TEST(String, EditsInPlaceKeepTheTerminatorAndSurviveAliasing)
{
	FString Text(TEXT("abcdef"));
	Text += Text;
	Text.Append(*Text + 10, 2);
	EXPECT_EQ(Text, TEXT("abcdefabcdefef"));
	Text = *Text + 12;
	EXPECT_EQ(Text, TEXT("ef"));
	Text.InsertAt(1, Text);
	EXPECT_EQ(Text, TEXT("eeff"));
	Text.RemoveAt(0, 3);
	EXPECT_EQ(FCString::Strlen(*Text), 1);
	Text.MidInline(5);
	EXPECT_TRUE(Text.IsEmpty());
	EXPECT_EQ(**Text, 0);

	FString Padded(TEXT(" \t x y \n"));
	Padded.TrimStartAndEndInline();
	EXPECT_EQ(Padded, TEXT("x y"));
	EXPECT_EQ(FString(TEXT("\"q\"")).TrimQuotes(), TEXT("q"));
	EXPECT_EQ(FString(TEXT("aXbxc")).Replace(TEXT("x"), TEXT("--")), TEXT("a--b--c"));
	EXPECT_EQ(FString(TEXT("aXbxc")).Replace(TEXT("x"), TEXT(""), ESearchCase::CaseSensitive), TEXT("aXbc"));
	EXPECT_EQ(FString(TEXT("aaa")).Replace(TEXT("a"), TEXT("aa")).Len(), 6);
	EXPECT_EQ(FString(TEXT("a/")) / TEXT("/b"), TEXT("a/b"));
	EXPECT_EQ(FString(TEXT("a")) / TEXT("b"), TEXT("a/b"));
	EXPECT_EQ(FString(TEXT("")) / TEXT("b"), TEXT("b"));

	const FString Odd(TEXT("tab\t \"q\" \\ nl\n"));
	EXPECT_EQ(Odd.ReplaceCharWithEscapedChar(), TEXT("tab\\t \\\"q\\\" \\\\ nl\\n"));
	EXPECT_TRUE(Odd.ReplaceCharWithEscapedChar().ReplaceEscapedCharWithChar().Equals(Odd));
}

TEST(String, WildcardsMatchTheWholeTextInLinearSteps)
{
	const struct
	{
		const TCHAR* Text;
		const TCHAR* Pattern;
		bool bMatches;
	} Cases[] = {
		{TEXT("Source/Game/A.cpp"), TEXT("source/*.CPP"), true},
		{TEXT("Source/Game/A.cpp"), TEXT("*.h"), false},
		{TEXT("abc"), TEXT("a?c"), true},
		{TEXT("abc"), TEXT("a?"), false},
		{TEXT(""), TEXT("*"), true},
		{TEXT(""), TEXT(""), true},
		{TEXT("a"), TEXT(""), false},
		{TEXT("ab"), TEXT("*a*b*"), true},
		{TEXT("mississippi"), TEXT("m*iss*ip?i"), true},
		{TEXT("mississippi"), TEXT("m*iss*x*"), false},
	};
	for (const auto& Case : Cases)
	{
		EXPECT_EQ(FString(Case.Text).MatchesWildcard(Case.Pattern), Case.bMatches)
			<< TCHAR_TO_UTF8(Case.Text) << " ~ " << TCHAR_TO_UTF8(Case.Pattern);
	}
	EXPECT_FALSE(FString(TEXT("ABC")).MatchesWildcard(TEXT("abc"), ESearchCase::CaseSensitive));
	// A pattern of many stars that just fails ends as well.
	EXPECT_FALSE(FString::ChrN(20000, u'a').MatchesWildcard(TEXT("*a*a*a*a*a*a*a*a*a*b")));
}

TEST(String, NumbersGoThereAndBackAndHostileOnesSaturate)
{
	EXPECT_EQ(FCString::Atoi(TEXT("  -42abc")), -42);
	EXPECT_EQ(FCString::Atoi(TEXT("99999999999999999999")), MAX_int32);
	EXPECT_EQ(FCString::Atoi64(TEXT("-99999999999999999999")), MIN_int64);
	EXPECT_EQ(FCString::Atoi(TEXT("ж7")), 0);
	EXPECT_DOUBLE_EQ(FCString::Atod(TEXT(" +1.25e3x")), 1250.0);
	EXPECT_TRUE(std::isinf(FCString::Atod(TEXT("1e999"))));
	TCHAR* End = nullptr;
	EXPECT_EQ(FCString::Strtoi64(TEXT(" 0xFFz"), &End, 16), 255);
	EXPECT_EQ(*End, u'z');
	EXPECT_TRUE(FString(TEXT("-1.5")).IsNumeric());
	for (const TCHAR* NotNumeric : {TEXT("1.5.2"), TEXT("-"), TEXT(""), TEXT("1e5"), TEXT("0x1")})
	{
		EXPECT_FALSE(FString(NotNumeric).IsNumeric()) << TCHAR_TO_UTF8(NotNumeric);
	}
	EXPECT_TRUE(FString(TEXT(" Yes")).ToBool());
	EXPECT_FALSE(FString(TEXT("nope")).ToBool());
	EXPECT_EQ(FString::SanitizeFloat(1e22), TEXT("10000000000000000000000.0"));
	EXPECT_EQ(FString::SanitizeFloat(-0.0), TEXT("0.0"));
	EXPECT_EQ(FString::SanitizeFloat(0.1), TEXT("0.1"));
	EXPECT_EQ(FString::FormatAsNumber(-1234567), TEXT("-1,234,567"));
	EXPECT_EQ(FString::FormatAsNumber(-123), TEXT("-123"));
	EXPECT_EQ(LexToString(0.1), TEXT("0.1"));
	EXPECT_EQ(LexToString(MIN_int64), TEXT("-9223372036854775808"));
	EXPECT_EQ(LexToString(MAX_uint64), TEXT("18446744073709551615"));

	uint8 Bytes[3] = {};
	EXPECT_EQ(HexToBytes(TEXT("0fA0C"), Bytes), 3);
	EXPECT_EQ(BytesToHex(Bytes, 3), TEXT("00FA0C"));
}

TEST(String, PrintfFollowsTheCLibraryForEveryConversion)
{
	EXPECT_EQ(FString::Printf(TEXT("%d|%5d|%-5d|%05d|%+d|%i"), 7, 7, 7, 7, 7, -7), TEXT("7|    7|7    |00007|+7|-7"));
	EXPECT_EQ(FString::Printf(TEXT("%u %x %X %#x %o"), MAX_uint32, 255, 255, 255, 8), TEXT("4294967295 ff FF 0xff 10"));
	EXPECT_EQ(FString::Printf(TEXT("%lld %llu %lu"), MIN_int64, MAX_uint64, (size_t)5),
		TEXT("-9223372036854775808 18446744073709551615 5"));
	EXPECT_EQ(FString::Printf(TEXT("%.2f|%8.3f|%-8.1f|%.0f|%g|%e"), 1.005, 3.14159, 2.5, 2.5, 1e-7, 12345.678),
		TEXT("1.00|   3.142|2.5     |2|1e-07|1.234568e+04"));
	EXPECT_EQ(FString::Printf(TEXT("%s|%-6s|%6s|%.2s|%.*s|%*s"), TEXT("abc"), TEXT("abc"), TEXT("abc"), TEXT("abc"), 1,
				  TEXT("abc"), 5, TEXT("abc")),
		TEXT("abc|abc   |   abc|ab|a|  abc"));
	EXPECT_EQ(FString::Printf(TEXT("%hs %c%c 100%%"), "n\xC3\xA4rrow", u'Ω', 'x'), TEXT("närrow Ωx 100%"));
	EXPECT_EQ(FString::Printf(TEXT("%s"), (const TCHAR*)nullptr), TEXT("(null)"));
	EXPECT_EQ(FString::Printf(TEXT("%-24s|"), TEXT("tool")).Len(), 25);
	EXPECT_EQ(FString::Printf(TEXT("%.300f"), 0.5).Len(), 302);
	EXPECT_EQ(FString::Printf(TEXT("%d %d"), true, ESearchCase::IgnoreCase), TEXT("1 1"));
	EXPECT_EQ(FString::Printf(TEXT("%x"), -1), TEXT("ffffffff"));
}

TEST(String, ViewsCutWhatLiesOutside)
{
	const FStringView View(TEXT("abcdef"));
	EXPECT_EQ(View.Mid(2, 100), TEXT("cdef"));
	EXPECT_EQ(View.Mid(-3, 2), TEXT("ab"));
	EXPECT_EQ(View.Mid(9), TEXT(""));
	EXPECT_EQ(View.LeftChop(9), TEXT(""));
	EXPECT_EQ(View.Right(2), TEXT("ef"));
	EXPECT_EQ(View.Left(-1), TEXT(""));
	EXPECT_EQ(FString(TEXT("abc")).Right(-1), TEXT(""));
}
