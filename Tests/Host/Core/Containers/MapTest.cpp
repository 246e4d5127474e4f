#include "Containers/Map.h"
#include "Support/HostTypePrinting.h"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <unordered_map>

namespace
{
TArray<FString> KeysInOrder(const TMap<FString, int32>& Map)
{
	TArray<FString> Keys;
	Map.GenerateKeyArray(Keys);
	return Keys;
}
} // namespace

TEST(Map, TextKeysIgnoreCaseAndKeepTheirFirstPlace)
{
	TMap<FString, int32> Map;
	Map.Add(TEXT("One"), 1);
	Map.Add(TEXT("Two"), 2);
	Map.Add(TEXT("ONE"), 11);
	EXPECT_EQ(Map.Num(), 2);
	EXPECT_EQ(Map[TEXT("one")], 11);
	EXPECT_EQ(Map.FindRef(FStringView(TEXT("tWO"))), 2);
	EXPECT_EQ(Map.Find(TEXT("three")), nullptr);
	EXPECT_EQ(KeysInOrder(Map), (TArray<FString>{TEXT("one"), TEXT("two")}));
	EXPECT_EQ(++Map.FindOrAdd(TEXT("three")), 1);
	EXPECT_EQ(*Map.FindKey(11), TEXT("ONE"));

	TMap<FString, int32, TCaseSensitiveMapKeyFuncs<int32>> Exact;
	Exact.Add(TEXT("One"), 1);
	Exact.Add(TEXT("ONE"), 2);
	EXPECT_EQ(Exact.Num(), 2);
	EXPECT_EQ(Exact.FindRef(TEXT("ONE")), 2);
	EXPECT_FALSE(Exact.Contains(TEXT("one")));
}

TEST(Map, AFreedPlaceIsTheNextToBeUsed)
{
	TMap<FString, int32> Map{{TEXT("a"), 1}, {TEXT("b"), 2}, {TEXT("c"), 3}, {TEXT("d"), 4}};
	EXPECT_EQ(Map.Remove(TEXT("b")), 1);
	EXPECT_EQ(Map.Remove(TEXT("c")), 1);
	EXPECT_EQ(Map.Remove(TEXT("c")), 0);
	EXPECT_EQ(KeysInOrder(Map), (TArray<FString>{TEXT("a"), TEXT("d")}));
	Map.Add(TEXT("e"), 5);
	Map.Add(TEXT("f"), 6);
	Map.Add(TEXT("g"), 7);
	EXPECT_EQ(KeysInOrder(Map), (TArray<FString>{TEXT("a"), TEXT("f"), TEXT("e"), TEXT("d"), TEXT("g")}));
	Map.KeySort([](const FString& A, const FString& B) { return A > B; });
	EXPECT_EQ(KeysInOrder(Map)[0], TEXT("g"));
	EXPECT_EQ(Map[TEXT("d")], 4);
}

TEST(Map, RandomOperationsAgreeWithTheStandardMap)
{
	std::mt19937 Random(23);
	TMap<int32, std::string> Map;
	std::unordered_map<int32, std::string> Model;
	for (int32 Round = 0; Round < 40000; ++Round)
	{
		const int32 Key = (int32)(Random() % 500);
		switch (Random() % 4)
		{
		case 0:
		case 1:
			Map.Add(Key, std::to_string(Round));
			Model[Key] = std::to_string(Round);
			break;
		case 2:
			ASSERT_EQ(Map.Remove(Key), (int32)Model.erase(Key));
			break;
		case 3:
		{
			const std::string* Found = Map.Find(Key);
			const auto Expected = Model.find(Key);
			ASSERT_EQ(Found != nullptr, Expected != Model.end());
			ASSERT_TRUE(!Found || *Found == Expected->second);
		}
		}
		ASSERT_EQ(Map.Num(), (int32)Model.size());
	}
	const TMap<int32, std::string> Copy(Map);
	EXPECT_TRUE(Copy.OrderIndependentCompareEqual(Map));
	for (auto It = Map.CreateIterator(); It; ++It)
	{
		if (It.Key() % 2)
		{
			It.RemoveCurrent();
		}
	}
	EXPECT_EQ(std::erase_if(Model, [](const auto& Pair) { return Pair.first % 2 != 0; }) + (size_t)Map.Num(),
		(size_t)Copy.Num());
	for (const auto& [Key, Value] : Map)
	{
		ASSERT_EQ(Model[Key], Value);
	}
}

TEST(Map, ValuesMoveOutAndMapsMoveWhole)
{
	TMap<FString, TArray<FString>> Map;
	Map.FindOrAdd(TEXT("k")).Add(TEXT("v"));
	TArray<FString> Out;
	EXPECT_TRUE(Map.RemoveAndCopyValue(TEXT("K"), Out));
	EXPECT_EQ(Out, (TArray<FString>{TEXT("v")}));
	EXPECT_FALSE(Map.RemoveAndCopyValue(TEXT("K"), Out));
	Map.Add(TEXT("x"), {});
	TMap<FString, TArray<FString>> Moved(MoveTemp(Map));
	EXPECT_EQ(Moved.Num(), 1);
	EXPECT_TRUE(Map.IsEmpty());
	Map.Add(TEXT("usable"), {});
	EXPECT_TRUE(Map.Contains(TEXT("usable")));
}

TEST(Set, ElementsAreUniqueAndSetsCombine)
{
	const TSet<FString> A{TEXT("x"), TEXT("X"), TEXT("y")};
	const TSet<FString> B{TEXT("Y"), TEXT("z")};
	EXPECT_EQ(A.Num(), 2);
	EXPECT_TRUE(A.Contains(TEXT("Y")));
	EXPECT_EQ(A.Intersect(B).Array(), (TArray<FString>{TEXT("y")}));
	EXPECT_EQ(A.Difference(B).Array(), (TArray<FString>{TEXT("x")}));
	EXPECT_EQ(A.Union(B).Num(), 3);
	EXPECT_TRUE(A.Union(B).Includes(B));
	bool bAlready = false;
	TSet<int32> Numbers;
	Numbers.Add(4, &bAlready);
	EXPECT_FALSE(bAlready);
	Numbers.Add(4, &bAlready);
	EXPECT_TRUE(bAlready);
	for (auto It = Numbers.CreateIterator(); It; ++It)
	{
		It.RemoveCurrent();
	}
	EXPECT_TRUE(Numbers.IsEmpty());
	EXPECT_EQ(Numbers.Remove(4), 0);
}
