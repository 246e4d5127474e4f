#include "Serialization/JsonWriter.h"

#include "Dom/JsonObject.h"
#include "Policies/CondensedJsonPrintPolicy.h"
#include "Serialization/JsonSerializer.h"

#include <cmath>
#include <gtest/gtest.h>
#include <random>

using FCondensedWriter = TJsonWriter<TCHAR, TCondensedJsonPrintPolicy<TCHAR>>;

TEST(JsonWriter, WritesPrettyWithTabsAndCondensedWithout)
{
	TSharedPtr<FJsonObject> Object;
	const TCHAR* Text = TEXT("{\"a\":[1,{\"b\":null}],\"c\":{},\"d\":[],\"e\":\"x\"}");
	ASSERT_TRUE(FJsonSerializer::Deserialize(TJsonReaderFactory<>::Create(Text), Object));

	FString Pretty = TEXT("what stood before goes");
	ASSERT_TRUE(FJsonSerializer::Serialize(Object.ToSharedRef(), TJsonWriterFactory<>::Create(&Pretty)));
	EXPECT_STREQ(
		"{\n\t\"a\": [\n\t\t1,\n\t\t{\n\t\t\t\"b\": null\n\t\t}\n\t],\n\t\"c\": {},\n\t\"d\": [],\n\t\"e\": \"x\"\n}",
		TCHAR_TO_UTF8(*Pretty));

	FString Condensed;
	const TSharedRef<FCondensedWriter> Writer =
		TJsonWriterFactory<TCHAR, TCondensedJsonPrintPolicy<TCHAR>>::Create(&Condensed);
	ASSERT_TRUE(FJsonSerializer::Serialize(Object.ToSharedRef(), Writer));
	EXPECT_TRUE(Condensed.Equals(Text));
}

TEST(JsonWriter, WritesPieceByPieceTheSameAsATree)
{
	for (const bool bPretty : {false, true})
	{
		FString Pieces;
		FJsonTextWriter Writer(Pieces, bPretty);
		Writer.WriteObjectStart();
		Writer.WriteValue(TEXT("text"), TEXT("a\"b"));
		Writer.WriteValue(TEXT("copy"), FString(TEXT("c")));
		Writer.WriteValue(TEXT("yes"), true);
		Writer.WriteValue(TEXT("int"), -7);
		Writer.WriteValue(TEXT("big"), MAX_uint64);
		Writer.WriteValue(TEXT("half"), 0.5);
		Writer.WriteValue(TEXT("nan"), std::nan(""));
		Writer.WriteNull(TEXT("nothing"));
		Writer.WriteArrayStart(TEXT("list"));
		Writer.WriteValue(1);
		Writer.WriteObjectStart();
		Writer.WriteObjectEnd();
		Writer.WriteArrayStart();
		Writer.WriteArrayEnd();
		Writer.WriteValue(TEXT("end"));
		Writer.WriteArrayEnd();
		Writer.WriteValue(TEXT("names"), TArray<FString>{TEXT("x"), TEXT("y")});
		Writer.WriteRawJSONValue(TEXT("raw"), TEXT("{}"));
		EXPECT_FALSE(Writer.Close()) << "an object is open";
		Writer.WriteObjectEnd();
		EXPECT_TRUE(Writer.Close());

		TSharedPtr<FJsonValue> Tree;
		ASSERT_TRUE(FJsonSerializer::Deserialize(TJsonReaderFactory<>::Create(Pieces), Tree));
		FString Whole;
		FJsonTextWriter TreeWriter(Whole, bPretty);
		TreeWriter.WriteValue(*Tree);
		EXPECT_TRUE(TreeWriter.Close());
		EXPECT_TRUE(Whole.Equals(Pieces)) << TCHAR_TO_UTF8(*Pieces);
	}
}

TEST(JsonWriter, PutsATreeInsideWhatIsOpen)
{
	FString Text;
	FJsonTextWriter Writer(Text, true);
	Writer.WriteObjectStart();
	const TArray<TSharedPtr<FJsonValue>> Array = {MakeShared<FJsonValueNumber>(1), nullptr};
	Writer.WriteIdentifierPrefix(TEXT("a"));
	EXPECT_TRUE(FJsonSerializer::Serialize(Array, Writer, false));
	EXPECT_TRUE(FJsonSerializer::Serialize(MakeShared<FJsonValueBoolean>(true), TEXT("b"), Writer, false));
	Writer.WriteObjectEnd();
	EXPECT_TRUE(Writer.Close());
	EXPECT_STREQ("{\n\t\"a\": [\n\t\t1,\n\t\tnull\n\t],\n\t\"b\": true\n}", TCHAR_TO_UTF8(*Text));
}

TEST(JsonWriter, RefusesWhatTheReaderWouldRefuse)
{
	const auto Deep = [](int32 Depth)
	{
		TSharedPtr<FJsonValue> Value = MakeShared<FJsonValueNull>();
		for (int32 Level = 0; Level < Depth; ++Level)
		{
			Value = MakeShared<FJsonValueArray>(TArray<TSharedPtr<FJsonValue>>{Value});
		}
		return Value;
	};
	FString Text;
	FCondensedWriter Deepest(Text);
	EXPECT_TRUE(FJsonSerializer::Serialize(Deep(JsonMaxDepth), FString(), Deepest));
	FCondensedWriter TooDeep(Text);
	EXPECT_FALSE(FJsonSerializer::Serialize(Deep(JsonMaxDepth + 1), FString(), TooDeep));
	FCondensedWriter Nothing(Text);
	EXPECT_FALSE(Nothing.Close());
}

/** Strings of every length and mixture around the blocks that are copied whole, from both stores of text. */
TEST(JsonWriter, EveryStringComesBack)
{
	std::mt19937 Random(3);
	const TCHAR Odd[] = {
		u'"', u'\\', u'\n', 0, 0x1F, 0x7F, 0x80, 0x7FF, 0x800, 0xD7FF, 0xD800, 0xDBFF, 0xDC00, 0xDFFF, 0xE000, 0xFFFF};
	for (int32 Round = 0; Round < 4000; ++Round)
	{
		FString Original;
		const uint32 OddPercent = Random() % 40;
		for (int32 Left = (int32)(Random() % 50); Left > 0; --Left)
		{
			const bool bOdd = Random() % 100 < OddPercent;
			Original.AppendChar(bOdd ? Odd[Random() % UE_ARRAY_COUNT(Odd)] : (TCHAR)(u' ' + 2 + Random() % 50));
		}
		FString Text;
		FCondensedWriter Writer(Text);
		Writer.WriteValue(Original);
		TSharedPtr<FJsonValue> Value;
		ASSERT_TRUE(FJsonSerializer::Deserialize(TJsonReaderFactory<>::Create(Text), Value)) << TCHAR_TO_UTF8(*Text);
		EXPECT_TRUE(Value->AsString().Equals(Original));
		FString Again;
		FCondensedWriter AgainWriter(Again);
		AgainWriter.WriteValue(*Value);
		EXPECT_TRUE(Again.Equals(Text)) << TCHAR_TO_UTF8(*Again);
	}
}

TEST(JsonWriter, EveryDoubleComesBackBitForBit)
{
	std::mt19937_64 Random(5);
	for (int32 Round = 0; Round < 20000; ++Round)
	{
		const uint64 Bits = Random();
		double Number = 0;
		FMemory::Memcpy(&Number, &Bits, sizeof(Number));
		if (!std::isfinite(Number))
		{
			continue;
		}
		FString Text;
		FCondensedWriter Writer(Text);
		Writer.WriteValue(Number);
		TSharedPtr<FJsonValue> Value;
		ASSERT_TRUE(FJsonSerializer::Deserialize(TJsonReaderFactory<>::Create(Text), Value)) << TCHAR_TO_UTF8(*Text);
		EXPECT_EQ(Number, Value->AsNumber()) << TCHAR_TO_UTF8(*Text);
	}
}
