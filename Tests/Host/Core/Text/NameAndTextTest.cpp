#define LOCTEXT_NAMESPACE "Tests"

#include "Internationalization/Text.h"
#include "Support/HostTypePrinting.h"
#include "UObject/NameTypes.h"

#include <gtest/gtest.h>

#include <thread>
#include <vector>

TEST(Name, NamesIgnoreCaseAndShowTheSpellingTheyWereMadeWith)
{
	const FName Lower(TEXT("spellingtest"));
	const FName Mixed(TEXT("SpellingTest"));
	EXPECT_EQ(Lower, Mixed);
	EXPECT_EQ(GetTypeHash(Lower), GetTypeHash(Mixed));
	EXPECT_TRUE(Mixed.ToString().Equals(TEXT("SpellingTest")));
	EXPECT_TRUE(Lower.ToString().Equals(TEXT("spellingtest")));
	EXPECT_EQ(Mixed, TEXT("SPELLINGTEST"));
	EXPECT_LT(FName(TEXT("alpha")).Compare(FName(TEXT("BETA"))), 0);
	EXPECT_TRUE(FName().IsNone());
	EXPECT_EQ(FName(TEXT("none")), NAME_None);
	EXPECT_EQ(FName().ToString(), TEXT("None"));
}

TEST(Name, ANumberBehindAnUnderscoreIsKeptApart)
{
	const FName Light(TEXT("Light_12"));
	EXPECT_EQ(Light.GetPlainNameString(), TEXT("Light"));
	EXPECT_EQ(Light.GetNumber(), 13);
	EXPECT_EQ(FName(FName(TEXT("light")), 13), Light);
	EXPECT_LT(FName(TEXT("Light_2")).Compare(Light), 0);
	for (const TCHAR* Whole :
		{TEXT("Light_012"), TEXT("Light_99999999999"), TEXT("_12"), TEXT("Light12"), TEXT("Light_")})
	{
		EXPECT_EQ(FName(Whole).GetNumber(), 0) << TCHAR_TO_UTF8(Whole);
		EXPECT_EQ(FName(Whole).ToString(), Whole);
	}
	EXPECT_EQ(FName(TEXT("Light_0")).ToString(), TEXT("Light_0"));
}

TEST(Name, FindingDoesNotAddAndLongTextIsCut)
{
	EXPECT_TRUE(FName(TEXT("NeverSeenBefore_3"), FNAME_Find).IsNone());
	EXPECT_TRUE(FName(TEXT("NeverSeenBefore"), FNAME_Find).IsNone());
	const FName Added(TEXT("SeenNow"));
	EXPECT_EQ(FName(TEXT("SEENNOW"), FNAME_Find), Added);
	EXPECT_EQ(FName(FString::ChrN(5000, u'x')).ToString().Len(), NAME_SIZE);
}

TEST(Name, ThreadsThatMakeTheSameNamesAgree)
{
	std::vector<std::vector<FName>> Made(4);
	std::vector<std::thread> Threads;
	for (std::vector<FName>& Names : Made)
	{
		Threads.emplace_back(
			[&Names]
			{
				for (int32 Index = 0; Index < 500; ++Index)
				{
					Names.push_back(FName(FString::Printf(TEXT("Shared%dName"), Index)));
				}
			});
	}
	for (std::thread& Thread : Threads)
	{
		Thread.join();
	}
	for (int32 Index = 0; Index < 500; ++Index)
	{
		ASSERT_EQ(Made[0][(size_t)Index], Made[3][(size_t)Index]);
		ASSERT_EQ(Made[1][(size_t)Index].ToString(), FString::Printf(TEXT("Shared%dName"), Index));
	}
}

TEST(Text, PlaceholdersAreFilledByPlaceAndByName)
{
	const FText Pattern = LOCTEXT("Ready", "Ready ({0} modules, {1} chunks) {0}");
	EXPECT_EQ(FText::Format(Pattern, 3, 12345).ToString(), TEXT("Ready (3 modules, 12,345 chunks) 3"));
	EXPECT_EQ(Pattern.GetKey(), TEXT("Ready"));
	EXPECT_EQ(Pattern.GetNamespace(), TEXT("Tests"));

	FFormatNamedArguments Arguments;
	Arguments.Add(TEXT("Who"), FText::FromString(TEXT("{0}")));
	EXPECT_EQ(FText::Format(INVTEXT("Hi { who }, {9} `{0}"), Arguments).ToString(), TEXT("Hi {0}, {9} {0}"));
	EXPECT_EQ(FText::Format(INVTEXT("open { brace"), 1).ToString(), TEXT("open { brace"));
	EXPECT_EQ(FText::Format(INVTEXT("{0} {1}"), -1234.5, TEXT("x")).ToString(), TEXT("-1,234.5 x"));
	EXPECT_TRUE(FText().IsEmpty());
	EXPECT_EQ(FText::AsPercent(0.256).ToString(), TEXT("26%"));
	EXPECT_EQ(FText::Join(INVTEXT("; "), {INVTEXT("a"), INVTEXT("b")}).ToString(), TEXT("a; b"));
}
