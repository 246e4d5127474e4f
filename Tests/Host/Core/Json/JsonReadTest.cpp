#include "Policies/CondensedJsonPrintPolicy.h"
#include "Serialization/JsonSerializer.h"

#include <gtest/gtest.h>
#include <string>

namespace
{
/** Reads through the UTF-8 door, and through the UTF-16 one for a second opinion when the bytes are valid. */
TSharedPtr<FJsonValue> Read(const std::string& Utf8, FString* OutError = nullptr)
{
	FJsonReader Reader(Utf8.data(), (int64)Utf8.size());
	TSharedPtr<FJsonValue> Value;
	const bool bRead = Reader.Read(Value);
	EXPECT_EQ(bRead, Value.IsValid()) << Utf8;
	EXPECT_EQ(bRead, Reader.GetErrorMessage().IsEmpty()) << Utf8;

	const TSharedRef<TJsonReader<>> WideReader =
		TJsonReaderFactory<>::Create(FString::FromUtf8(Utf8.data(), (int64)Utf8.size()));
	TSharedPtr<FJsonValue> WideValue;
	EXPECT_EQ(bRead, WideReader->Read(WideValue)) << Utf8;
	EXPECT_TRUE(WideReader->GetErrorMessage().Equals(Reader.GetErrorMessage())) << Utf8;
	EXPECT_TRUE(!bRead || FJsonValue::CompareEqual(*Value, *WideValue)) << Utf8;
	if (OutError)
	{
		*OutError = Reader.GetErrorMessage();
	}
	return Value;
}

std::string Written(const TSharedPtr<FJsonValue>& Value)
{
	FString Text;
	TJsonWriter<TCHAR, TCondensedJsonPrintPolicy<TCHAR>> Writer(Text);
	EXPECT_TRUE(FJsonSerializer::Serialize(Value, FString(), Writer));
	return TCHAR_TO_UTF8(*Text);
}

std::string Nested(int32 Depth, const std::string& Open, const std::string& Inside, const std::string& Close)
{
	std::string Text = Inside;
	for (int32 Level = 0; Level < Depth; ++Level)
	{
		Text = Open + Text + Close;
	}
	return Text;
}
}

TEST(JsonRead, WritesBackWhatItReads)
{
	const struct
	{
		std::string Text;
		std::string Again;
	} Cases[] = {
		{"null", "null"},
		{" [ ] ", "[]"},
		{"\xEF\xBB\xBF{}\r\n", "{}"},
		{"[true,false,null]", "[true,false,null]"},
		{R"({"b":1,"a":{"z":[],"y":{}}})", R"({"b":1,"a":{"z":[],"y":{}}})"},
		// Strings
		{R"("\"\\\/\b\f\n\r\t\u0041")", R"("\"\\/\b\f\n\r\tA")"},
		{R"("\u0000\u001f\u007f")", "\"\\u0000\\u001f\x7F\""},
		{R"("\u00e9\u20ac\ud83d\ude00")", "\"\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80\""},
		{"\"naïve 東京 😀 and enough plain text behind it to fill a block\"",
			"\"naïve 東京 😀 and enough plain text behind it to fill a block\""},
		{R"("\ud83d")", R"("\ud83d")"},
		{R"("\ude00\ud83d x")", R"("\ude00\ud83d x")"},
		{R"({"\ud800":1,"\ud801":2})", R"({"\ud800":1,"\ud801":2})"},
		{"\"a\xFFz\"", "\"a\xEF\xBF\xBDz\""},
		{"\"cut \xE2\x82\"", "\"cut \xEF\xBF\xBD\""},
		// Numbers
		{"[0,-1,9223372036854775807,-9223372036854775808,18446744073709551615]",
			"[0,-1,9223372036854775807,-9223372036854775808,18446744073709551615]"},
		{"[18446744073709551616,-9223372036854775809]", "[18446744073709551616,-9223372036854775809]"},
		{"123456789012345678901234567890", "123456789012345678901234567890"},
		{"[1.0,-0.0,0.1,1e2,1E+2,1.5e-3]", "[1,-0,0.1,100,100,0.0015]"},
		{"[1e20,1e21,1e-6,1e-7,5e-324,1.7976931348623157e308]",
			"[100000000000000000000,1e+21,0.000001,1e-07,5e-324,1.7976931348623157e+308]"},
		{"[1e400,-1e400,1e-400]", "[1e400,-1e400,0]"},
		{"0.1000000000000000055511151231257827", "0.1"},
	};
	for (const auto& Case : Cases)
	{
		const TSharedPtr<FJsonValue> Value = Read(Case.Text);
		ASSERT_TRUE(Value.IsValid()) << Case.Text;
		EXPECT_EQ(Case.Again, Written(Value));
		const TSharedPtr<FJsonValue> Again = Read(Written(Value));
		ASSERT_TRUE(Again.IsValid()) << Case.Text;
		EXPECT_TRUE(FJsonValue::CompareEqual(*Value, *Again)) << Case.Text;
	}
}

TEST(JsonRead, SaysWhatIsWrongAndWhere)
{
	const struct
	{
		std::string Text;
		const char* Message;
	} Cases[] = {
		{"", "The text is empty. Line: 1 Ch: 1"},
		{" \n ", "The text is empty. Line: 2 Ch: 2"},
		{"{", "Expected the name of a member in double quotes. Line: 1 Ch: 2"},
		{"{\"a\":1,}", "Expected the name of a member in double quotes. Line: 1 Ch: 8"},
		{"{'a':1}", "Expected the name of a member in double quotes. Line: 1 Ch: 2"},
		{"{\"a\" 1}", "Expected ':' behind the name of a member. Line: 1 Ch: 6"},
		{"{\"a\":}", "Expected a value. Line: 1 Ch: 6"},
		{"{\"a\":", "The text ends where a value is expected. Line: 1 Ch: 6"},
		{"{\"a\":1\n\"b\":2}", "Expected ',' or '}' behind a member. Line: 2 Ch: 1"},
		{"{\"a\":1]", "Expected ',' or '}' behind a member. Line: 1 Ch: 7"},
		{"[1 2]", "Expected ',' or ']' behind an element. Line: 1 Ch: 4"},
		{"[1,]", "Expected a value. Line: 1 Ch: 4"},
		{"[1", "Expected ',' or ']' behind an element. Line: 1 Ch: 3"},
		{"1 2", "Unexpected text behind the end of the value. Line: 1 Ch: 3"},
		{"[]]", "Unexpected text behind the end of the value. Line: 1 Ch: 3"},
		{"\n\"東\\x\"", "This escape isn't one that JSON knows. Line: 2 Ch: 3"},
		{"\"\\u12g4\"", "The escape \\u needs four hexadecimal digits. Line: 1 Ch: 2"},
		{"\"\\u12", "The escape \\u needs four hexadecimal digits. Line: 1 Ch: 2"},
		{"[\"abc", "This string has no closing quote. Line: 1 Ch: 2"},
		{"\"abc\\", "This escape isn't one that JSON knows. Line: 1 Ch: 5"},
		{"\"a\nb\"", "A control character stands in a string without an escape. Line: 1 Ch: 3"},
		{"01", "A number may not begin with a needless 0. Line: 1 Ch: 1"},
		{"-", "Expected a digit behind '-'. Line: 1 Ch: 1"},
		{"+1", "Expected a value. Line: 1 Ch: 1"},
		{"1.", "Expected a digit behind the decimal point. Line: 1 Ch: 3"},
		{".5", "Expected a value. Line: 1 Ch: 1"},
		{"1e+", "Expected a digit in the exponent. Line: 1 Ch: 4"},
		{"[NaN]", "Expected a value. Line: 1 Ch: 2"},
		{"nul", "Expected a value. Line: 1 Ch: 1"},
		{"truex", "Unexpected text behind the end of the value. Line: 1 Ch: 5"},
		{"{} // note", "Unexpected text behind the end of the value. Line: 1 Ch: 4"},
		{"\xFF", "Expected a value. Line: 1 Ch: 1"},
	};
	for (const auto& Case : Cases)
	{
		FString Error;
		EXPECT_FALSE(Read(Case.Text, &Error).IsValid()) << Case.Text;
		EXPECT_STREQ(Case.Message, TCHAR_TO_UTF8(*Error)) << Case.Text;
	}
	EXPECT_FALSE(Read(std::string("\"\0\"", 3)).IsValid());
	EXPECT_FALSE(Read(std::string("1\0", 2)).IsValid());
}

TEST(JsonRead, EveryTruncationOfADocumentFails)
{
	const std::string Text = R"({"name":"\u00e9 x","list":[1,-2.5e3,true,null,{"deep":[[]]}],"last":"end"})";
	for (SIZE_T Length = 0; Length < Text.size(); ++Length)
	{
		EXPECT_FALSE(Read(Text.substr(0, Length)).IsValid()) << Text.substr(0, Length);
	}
	EXPECT_TRUE(Read(Text).IsValid());
}

TEST(JsonRead, BoundsTheNesting)
{
	for (const char* Inside : {"", "1", "1e999"})
	{
		EXPECT_TRUE(Read(Nested(JsonMaxDepth, "[", Inside, "]")).IsValid());
		FString Error;
		EXPECT_FALSE(Read(Nested(JsonMaxDepth + 1, "[", Inside, "]"), &Error).IsValid());
		EXPECT_EQ(TEXT("Objects and arrays are nested too deeply. Line: 1 Ch: 513"), Error);
	}
	EXPECT_TRUE(Read(Nested(JsonMaxDepth, "{\"a\":", "1", "}")).IsValid());
	EXPECT_FALSE(Read(Nested(JsonMaxDepth + 1, "{\"a\":", "1", "}")).IsValid());
	EXPECT_FALSE(Read(std::string(1000000, '[')).IsValid());
}

TEST(JsonRead, TheLastOfEqualNamesCountsInTheFirstPlace)
{
	EXPECT_EQ(R"({"a":3,"b":2})", Written(Read(R"({"a":1,"b":2,"a":3})")));
	EXPECT_EQ(R"({"A":3,"b":2})", Written(Read(R"({"a":1,"b":2,"A":3})"))) << "names that differ in case are one";
	// The same through the careful parser, which the huge number calls for.
	EXPECT_EQ(R"({"A":1e999,"b":2})", Written(Read(R"({"a":1,"b":2,"A":1e999})")));

	std::string Many = "{";
	for (int32 Number = 0; Number < 3000; ++Number)
	{
		Many += "\"Name" + std::to_string(Number % 1000) + "\":" + std::to_string(Number) + ",";
	}
	const TSharedPtr<FJsonValue> Value = Read(Many + "\"last\":0}");
	ASSERT_TRUE(Value.IsValid());
	const FJsonMembers& Members = Value->AsObject()->Values;
	EXPECT_EQ(1001, Members.Num());
	int32 Place = 0;
	for (const FJsonMember& Member : Members)
	{
		const bool bLast = Place == 1000;
		EXPECT_EQ(bLast ? TEXT("last") : FString::Printf(TEXT("Name%d"), Place), Member.Key);
		EXPECT_EQ(bLast ? 0 : Place + 2000, Member.Value->AsNumber());
		++Place;
	}
}

TEST(JsonRead, TellsARootOfTheWrongKind)
{
	TSharedPtr<FJsonObject> Object;
	const TSharedRef<TJsonReader<>> ArrayReader = TJsonReaderFactory<>::Create(TEXT("[1]"));
	EXPECT_FALSE(FJsonSerializer::Deserialize(ArrayReader, Object));
	EXPECT_FALSE(Object.IsValid());
	EXPECT_TRUE(ArrayReader->GetErrorMessage().Contains(TEXT("Expected Object, found Array")));

	TArray<TSharedPtr<FJsonValue>> Array;
	EXPECT_TRUE(FJsonSerializer::Deserialize(ArrayReader, Array));
	EXPECT_EQ(1, Array.Num());
	EXPECT_FALSE(FJsonSerializer::Deserialize(TJsonReaderFactory<>::Create(TEXT("{}")), Array));
	EXPECT_EQ(1, Array.Num()) << "a failure leaves the argument alone";
	EXPECT_TRUE(FJsonSerializer::Deserialize(TJsonReaderFactory<>::Create(TEXT("{}")), Object));
}

TEST(JsonRead, APartOutlivesItsDocument)
{
	TSharedPtr<FJsonValue> Kept;
	TWeakPtr<FJsonValue> Watched;
	{
		std::string Text = "[{\"Name\":\"kept\",\"Long\":\"" + std::string(200000, 'x') + "\"}";
		for (int32 Number = 0; Number < 5000; ++Number)
		{
			Text += ",{\"Name\":\"other " + std::to_string(Number) + "\"}";
		}
		const TSharedPtr<FJsonValue> Document = Read(Text + "]");
		ASSERT_TRUE(Document.IsValid());
		Kept = Document->AsArray()[0];
		Watched = Document->AsArray()[4000];
	}
	EXPECT_FALSE(Watched.Pin().IsValid());
	EXPECT_EQ(TEXT("kept"), Kept->AsObject()->GetStringField(TEXT("name")));
	EXPECT_EQ(200000, Kept->AsObject()->GetStringField(TEXT("Long")).Len());
}
