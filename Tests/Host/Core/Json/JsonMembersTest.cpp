#include "Dom/JsonObject.h"

#include "Serialization/JsonSerializer.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <random>
#include <string>
#include <vector>

namespace
{
TSharedPtr<FJsonObject> Parsed(const TCHAR* Text)
{
	TSharedPtr<FJsonObject> Object;
	EXPECT_TRUE(FJsonSerializer::Deserialize(TJsonReaderFactory<>::Create(Text), Object));
	return Object;
}

FString Names(const FJsonMembers& Members)
{
	TArray<FString> Keys;
	EXPECT_EQ(Members.Num(), Members.GetKeys(Keys));
	return FString::Join(Keys, TEXT(" "));
}
}

TEST(JsonMembers, KeepTheOrderInWhichNamesWereFirstSet)
{
	FJsonObject Object;
	Object.SetNumberField(TEXT("z"), 1);
	Object.SetStringField(TEXT("a"), TEXT("text"));
	Object.SetBoolField(TEXT("m"), true);
	Object.SetNumberField(TEXT("Z"), 2);
	EXPECT_TRUE(Names(Object.Values).Equals(TEXT("Z a m")));
	EXPECT_EQ(2, Object.GetIntegerField(TEXT("z")));
	Object.RemoveField(TEXT("A"));
	EXPECT_TRUE(Names(Object.Values).Equals(TEXT("Z m")));
	Object.SetBoolField(TEXT("a"), false);
	EXPECT_TRUE(Names(Object.Values).Equals(TEXT("Z m a")));
}

TEST(JsonMembers, ReadAsAMapOfPairs)
{
	const TSharedPtr<FJsonObject> Object = Parsed(TEXT("{\"One\":1,\"Two\":2}"));
	FString Seen;
	for (const TPair<FString, TSharedPtr<FJsonValue>> Pair : Object->Values)
	{
		Seen += Pair.Key + TEXT("=") + Pair.Value->AsString() + TEXT(" ");
	}
	for (auto& Pair : Object->Values)
	{
		Seen += *Pair.Key;
	}
	for (const auto& [Key, Value] : Object->Values)
	{
		Seen += Key + Value->AsString();
	}
	for (auto It = Object->Values.CreateConstIterator(); It; ++It)
	{
		Seen += It.Key() + It.Value()->AsString();
	}
	EXPECT_TRUE(Seen.Equals(TEXT("One=1 Two=2 OneTwoOne1Two2One1Two2")));
	ASSERT_NE(nullptr, Object->Values.Find(TEXT("one")));
	EXPECT_EQ(nullptr, Object->Values.Find(TEXT("on")));
	EXPECT_EQ(2, Object->Values[TEXT("TWO")]->AsNumber());
	EXPECT_FALSE(Object->Values.FindRef(TEXT("three")).IsValid());
}

/** A long random life, beside a plain list that does the same: small, indexed, with gaps, made by a parse and by hand.
 */
TEST(JsonMembers, AgreeWithAPlainListThroughAnyLife)
{
	std::mt19937 Random(20);
	for (const int32 NameCount : {6, 40, 400})
	{
		const TSharedPtr<FJsonObject> Object = Parsed(TEXT("{\"n0\":0,\"N1\":1,\"n2\":2}"));
		std::vector<std::pair<std::string, int32>> Model = {{"n0", 0}, {"N1", 1}, {"n2", 2}};
		const auto FindInModel = [&Model](int32 Number)
		{
			return std::find_if(Model.begin(), Model.end(),
				[Number](const auto& Entry) { return Entry.first.substr(1) == std::to_string(Number); });
		};
		for (int32 Step = 0; Step < 6000; ++Step)
		{
			const int32 Number = (int32)(Random() % (uint32)NameCount);
			const std::string Name = (Random() % 2 ? "n" : "N") + std::to_string(Number);
			const auto Found = FindInModel(Number);
			const FString HostName(Name.c_str());
			// The balance tips to and fro, so that objects grow large and shrink again.
			if (Random() % 100 < (Step / 1000 % 2 ? 30U : 70U))
			{
				Object->SetNumberField(HostName, Step);
				Found == Model.end() ? (void)Model.emplace_back(Name, Step) : (void)(*Found = {Name, Step});
				continue;
			}
			EXPECT_EQ(Found != Model.end() ? 1 : 0, Object->Values.Remove(HostName));
			if (Found != Model.end())
			{
				Model.erase(Found);
			}
		}
		ASSERT_EQ((int32)Model.size(), Object->Values.Num());
		SIZE_T Place = 0;
		for (const FJsonMember& Member : FJsonMembers(Object->Values))
		{
			EXPECT_TRUE(Member.Key.Equals(FString(Model[Place].first.c_str())));
			EXPECT_EQ(Model[Place].second, Member.Value->AsNumber());
			EXPECT_EQ(&Object->Values[Member.Key], Object->Values.Find(Member.Key));
			++Place;
		}
	}
}

TEST(JsonMembers, MoveAndCopyApartFromWhatWasParsed)
{
	FJsonMembers Copy;
	FJsonMembers Moved;
	{
		const TSharedPtr<FJsonObject> Object = Parsed(TEXT("{\"a\":\"x\",\"b\":[1,2]}"));
		Copy = Object->Values;
		Moved = MoveTemp(Object->Values);
		EXPECT_TRUE(Object->Values.IsEmpty());
		Object->SetBoolField(TEXT("again"), true);
	}
	Moved.Add(TEXT("c"), nullptr);
	EXPECT_TRUE(Names(Copy).Equals(TEXT("a b")));
	EXPECT_TRUE(Names(Moved).Equals(TEXT("a b c")));
	EXPECT_EQ(TEXT("x"), Moved[TEXT("a")]->AsString());
	Moved.Append(Copy);
	EXPECT_EQ(3, Moved.Num());
	Moved.Empty();
	EXPECT_EQ(nullptr, Moved.Find(TEXT("a")));
}
