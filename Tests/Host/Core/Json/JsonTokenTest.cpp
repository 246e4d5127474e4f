#include "Serialization/JsonReader.h"

#include "Support/HostTypePrinting.h"

#include <gtest/gtest.h>

#include <string>

namespace
{
/** The tokens as text, ending in the message of an error if there was one. */
FString Tokens(const TCHAR* Text)
{
	const TSharedRef<TJsonReader<>> Reader = TJsonReaderFactory<>::Create(Text);
	FString Result;
	EJsonNotation Notation = EJsonNotation::Null;
	while (Reader->ReadNext(Notation))
	{
		Result += Reader->GetIdentifier().IsEmpty() ? FString() : Reader->GetIdentifier() + TEXT(":");
		switch (Notation)
		{
		case EJsonNotation::String:
			Result += TEXT("'") + Reader->GetValueAsString() + TEXT("'");
			break;
		case EJsonNotation::Number:
			Result += Reader->GetValueAsNumberString();
			break;
		case EJsonNotation::Boolean:
			Result += Reader->GetValueAsBoolean() ? TEXT("T") : TEXT("F");
			break;
		case EJsonNotation::Null:
			Result += TEXT("N");
			break;
		default:
			Result += FString::Chr(TEXT("{}[]")[(int32)Notation]);
		}
		Result += TEXT(" ");
	}
	return Result + Reader->GetErrorMessage();
}
} // namespace

TEST(JsonTokens, ComeOneByOneWithTheirNames)
{
	EXPECT_EQ(Tokens(TEXT("{\"a\": [1, -2.5e3, \"x\\ny\"], \"b\": {}, \"a\": true, \"\": null, \"c\": false}")),
		TEXT("{ a:[ 1 -2.5e3 'x\ny' ] b:{ } a:T N c:F } "));
	EXPECT_EQ(Tokens(TEXT(" 7 ")), TEXT("7 "));
	EXPECT_EQ(Tokens(TEXT("[]")), TEXT("[ ] "));
}

TEST(JsonTokens, AnErrorEndsTheReadingWithTheSameMessageAsATreesWould)
{
	for (const TCHAR* Text : {TEXT(""), TEXT("{"), TEXT("{\"a\""), TEXT("{\"a\":"), TEXT("{\"a\":1"), TEXT("{\"a\":1,"),
			 TEXT("{\"a\":1,}"), TEXT("{a:1}"), TEXT("[1 2]"), TEXT("[1,]"), TEXT("[1}"), TEXT("1 2"), TEXT("nul"),
			 TEXT("\"open"), TEXT("01"), TEXT("{\"a\":1}}"), TEXT("["), TEXT("[\n\n  x]")})
	{
		const TSharedRef<TJsonReader<>> Tree = TJsonReaderFactory<>::Create(Text);
		TSharedPtr<FJsonValue> Value;
		EXPECT_FALSE(Tree->Read(Value));
		EXPECT_FALSE(Tree->GetErrorMessage().IsEmpty());
		EXPECT_TRUE(Tokens(Text).EndsWith(Tree->GetErrorMessage(), ESearchCase::CaseSensitive))
			<< TCHAR_TO_UTF8(Text) << " gives " << TCHAR_TO_UTF8(*Tokens(Text));
	}
	EXPECT_TRUE(Tokens(*FString::ChrN(JsonMaxDepth + 1, u'[')).Contains(TEXT("too deeply")));
}

TEST(JsonTokens, EveryTruncationIsRefusedAndContainersAreSkipped)
{
	const FString Text(TEXT("{\"skip\":{\"a\":[1,{\"b\":\"]}\"}]},\"keep\":[true,null,1.5]}"));
	for (int32 Length = 0; Length < Text.Len(); ++Length)
	{
		EXPECT_TRUE(Tokens(*Text.Left(Length)).Contains(TEXT("Line: 1"))) << Length;
	}
	const TSharedRef<TJsonReader<>> Reader = TJsonReaderFactory<>::Create(Text);
	EJsonNotation Notation = EJsonNotation::Null;
	EXPECT_TRUE(Reader->ReadNext(Notation));
	EXPECT_TRUE(Reader->ReadNext(Notation));
	EXPECT_EQ(Reader->GetIdentifier(), TEXT("skip"));
	EXPECT_TRUE(Reader->SkipObject());
	EXPECT_TRUE(Reader->ReadNext(Notation));
	EXPECT_EQ(Reader->GetIdentifier(), TEXT("keep"));
	EXPECT_EQ(Notation, EJsonNotation::ArrayStart);
	EXPECT_TRUE(Reader->SkipArray());
	EXPECT_TRUE(Reader->ReadNext(Notation));
	EXPECT_EQ(Notation, EJsonNotation::ObjectEnd);
	EXPECT_FALSE(Reader->ReadNext(Notation));
	EXPECT_NE(Notation, EJsonNotation::Error);
	const TSharedRef<TJsonReader<>> Number = TJsonReaderFactory<>::Create(TEXT("-2.5e1"));
	EXPECT_TRUE(Number->ReadNext(Notation));
	EXPECT_DOUBLE_EQ(Number->GetValueAsNumber(), -25.0);
}
