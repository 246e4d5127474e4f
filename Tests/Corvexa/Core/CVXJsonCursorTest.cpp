#include "Core/CVXJsonCursor.h"

#include "Core/CVXJsonFrame.h"
#include "Serialization/JsonReader.h"
#include "Serialization/JsonSerializer.h"
#include "Support/HostTypePrinting.h"

#include <gtest/gtest.h>

#include <random>

namespace
{
bool IsJsonObject(const FString& Text)
{
	FCVXJsonCursor Json(Text);
	return Json.IsAtObject() && Json.SkipValue() && Json.IsAtEnd();
}

bool TreeReads(const FString& Text)
{
	TSharedPtr<FJsonObject> Object;
	return FJsonSerializer::Deserialize(TJsonReaderFactory<>::Create(Text), Object) && Object.IsValid();
}

TSharedPtr<FJsonObject> ReadTree(const FString& Text)
{
	TSharedPtr<FJsonObject> Object;
	FJsonSerializer::Deserialize(TJsonReaderFactory<>::Create(Text), Object);
	return Object;
}
} // namespace

TEST(CVXJsonCursor, TakesAndRefusesWhatTheTreesReaderDoes)
{
	const FString Seed = TEXT("{\"a\":[1,-0.5e+3,\"x\\n\\u00e4\\ud83d\\ude00\",{}],\"b\":{\"c\":null,\"d\":true},"
							  "\"e\" : [ ] , \"f\":\"plain text that is longer\",\"g\":false}");
	ASSERT_TRUE(IsJsonObject(Seed));
	const FString Alphabet = TEXT("{}[]\",:\\u0e-+.1tn \n\x01"
								  u"ä");
	std::mt19937 Random(3);
	int32 Good = 0;
	for (int32 Round = 0; Round < 30000; ++Round)
	{
		FString Text = Seed;
		for (uint32 Change = Random() % 3 + 1; Change > 0; --Change)
		{
			const int32 At = (int32)(Random() % (uint32)Text.Len());
			const TCHAR Char = Alphabet[(int32)(Random() % (uint32)Alphabet.Len())];
			switch (Random() % 3)
			{
			case 0:
				Text[At] = Char;
				break;
			case 1:
				Text.InsertAt(At, Char);
				break;
			default:
				Text.RemoveAt(At);
			}
		}
		const bool bGood = TreeReads(Text);
		Good += bGood ? 1 : 0;
		ASSERT_EQ(IsJsonObject(Text), bGood) << TCHAR_TO_UTF8(*Text);
	}
	EXPECT_GT(Good, 1000);
	const auto Nested = [](int32 Depth)
	{ return TEXT("{\"a\":") + FString::ChrN(Depth - 1, TEXT('[')) + FString::ChrN(Depth - 1, TEXT(']')) + TEXT("}"); };
	EXPECT_TRUE(IsJsonObject(Nested(FCVXJsonCursor::MaxDepth)));
	EXPECT_FALSE(IsJsonObject(Nested(FCVXJsonCursor::MaxDepth + 1)));
	EXPECT_FALSE(TreeReads(Nested(FCVXJsonCursor::MaxDepth + 1)));
}

TEST(CVXJsonCursor, ReadsTheValuesThatTheTreeHas)
{
	const FString Texts[] = {TEXT(""), TEXT("a"), TEXT("abc"), TEXT("abcd"), TEXT("abcdefgh"), TEXT("äöü€"),
		TEXT("\\\"\\\\\\/\\b\\f\\n\\r\\t"), TEXT("abc\\u0041d\\ud83d\\ude00"), TEXT("😀 tail \\u0000 end"), TEXT("＂∢")};
	for (const FString& Text : Texts)
	{
		const FString Data = TEXT("{\"na\\u006de\":\"") + Text + TEXT("\",\"n\":[42, -7, 1e2, 2.9, 99999999999]}");
		FCVXJsonCursor Json(Data);
		FString Name;
		FString Value;
		TArray<int32> Numbers;
		const bool bRead = Json.ReadObject(
			[&](FStringView Member)
			{
				if (Json.IsAtString())
				{
					Name = FString(Member);
					return Json.ReadString(Value);
				}
				return Json.ReadArray([&] { return Json.ReadInteger(Numbers.AddDefaulted_GetRef()); });
			});
		EXPECT_TRUE(bRead && Json.IsAtEnd());
		EXPECT_EQ(Name, TEXT("name"));
		EXPECT_TRUE(Value.Equals(ReadTree(Data)->GetStringField(TEXT("name")))) << TCHAR_TO_UTF8(*Data);
		EXPECT_EQ(Numbers, (TArray<int32>{42, -7, 100, 2, MAX_int32}));
	}
}

TEST(CVXJsonFrame, ReadsOnlyWhatDiffersInItsHolesAlone)
{
	const FString Json = TEXT("{\"a\":\"one\",\"b\":1,\"c\":10,\"d\":[2]}");
	constexpr int32 Role = 7;
	FString Word;
	TArray<FCVXJsonHole> Holes;
	FCVXJsonCursor Cursor(Json);
	Cursor.NoteHoles(Holes);
	ASSERT_TRUE(Cursor.ReadObject(
		[&](FStringView Name)
		{
			if (Name == TEXTVIEW("a"))
			{
				return Cursor.ReadString(Word, Role);
			}
			return Name == TEXTVIEW("b") ? Cursor.SkipValue() : Cursor.IgnoreValue();
		}));
	const auto Read = [&](const FCVXJsonFrame& Frame, const TCHAR* Text) {
		return Frame.Read(
			Text, [&](int32 Told, FCVXJsonCursor& Value) { return Told == Role && Value.ReadString(Word); });
	};
	FCVXJsonFrame Frame;
	EXPECT_FALSE(Read(Frame, *Json));
	Frame.Keep(Json, Holes);
	for (const TCHAR* Alike : {TEXT("{\"a\":\"t\\\"wo\",\"b\":1,\"c\":10,\"d\":[2]}"),
			 TEXT("{\"a\":\"t\\\"wo\",\"b\":1,\"c\":1,\"d\":[2,{}]}"),
			 TEXT("{\"a\":\"t\\\"wo\",\"b\":1,\"c\":100,\"d\":null}")})
	{
		EXPECT_TRUE(Read(Frame, Alike)) << TCHAR_TO_UTF8(Alike);
		EXPECT_EQ(Word, TEXT("t\"wo"));
	}
	for (const TCHAR* Other :
		{TEXT("{\"A\":\"x\",\"b\":1,\"c\":10,\"d\":[2]}"), TEXT("{\"a\":\"x\",\"b\":2,\"c\":10,\"d\":[2]}"),
			TEXT("{\"a\":\"x\",\"b\":1,\"c\":10,\"d\":[2]"), TEXT("{\"a\":\"x\",\"b\":1,\"c\":10,\"d\":[2]}}"),
			TEXT("{\"a\":\"x\",\"b\":1,\"c\":1x,\"d\":[2]}"), TEXT("{\"a\":7,\"b\":1,\"c\":10,\"d\":[2]}"),
			TEXT("{\"a\":\"\\x\",\"b\":1,\"c\":10,\"d\":[2]}"), TEXT("{\"a\":\"x"), TEXT("")})
	{
		EXPECT_FALSE(Read(Frame, Other)) << TCHAR_TO_UTF8(Other);
	}
	Frame.Forget();
	EXPECT_FALSE(Read(Frame, *Json));
}
