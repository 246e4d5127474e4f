#include "Core/CVXTypes.h"
#include "Support/HostTypePrinting.h"
#include "UObject/UnrealType.h"

#include <gtest/gtest.h>

TEST(CVXTypes, AMessageMadeFromTextIsCompleteAndItsIdIsFresh)
{
	const FCVXMessage User = FCVXMessage::MakeUserText(TEXT("hello"));
	const FCVXMessage System = FCVXMessage::MakeSystemText(TEXT("hello"));
	EXPECT_EQ(User.Role, ECVXMessageRole::User);
	EXPECT_EQ(System.Role, ECVXMessageRole::System);
	EXPECT_EQ(User.MessageId.Len(), 32);
	for (const TCHAR Digit : User.MessageId)
	{
		EXPECT_TRUE(FChar::IsHexDigit(Digit));
	}
	EXPECT_FALSE(User.MessageId.Equals(System.MessageId));
	EXPECT_EQ(User.GetFirstTextContent(), TEXT("hello"));
	EXPECT_GT(User.Timestamp, FDateTime(2020, 1, 1));
	EXPECT_EQ(FCVXMessage().Role, ECVXMessageRole::User);
}

TEST(CVXTypes, TheFirstTextIsFoundBehindOtherBlocksInAnyCase)
{
	FCVXMessage Message;
	EXPECT_TRUE(Message.GetFirstTextContent().IsEmpty());
	Message.Content.AddDefaulted_GetRef().Type = TEXT("tool_use");
	FCVXContentBlock& Text = Message.Content.AddDefaulted_GetRef();
	Text.Type = TEXT("TEXT");
	Text.Text = TEXT("found");
	EXPECT_EQ(Message.GetFirstTextContent(), TEXT("found"));
}

TEST(CVXTypes, CostsAndCountsAreShownBySize)
{
	const struct
	{
		float Cost;
		const TCHAR* Shown;
	} Costs[] = {{0.0f, TEXT("<$0.0001")}, {0.00009f, TEXT("<$0.0001")}, {0.0001f, TEXT("$0.0001")},
		{0.01f, TEXT("$0.010")}, {0.1234f, TEXT("$0.123")}, {1.0f, TEXT("$1.00")}, {12.345f, TEXT("$12.35")}};
	for (const auto& Case : Costs)
	{
		EXPECT_EQ(FCVXTokenCounter::FormatCostUSD(Case.Cost), Case.Shown);
	}
	const struct
	{
		int32 Count;
		const TCHAR* Shown;
	} Counts[] = {{-5, TEXT("-5")}, {999, TEXT("999")}, {1000, TEXT("1.0k")}, {1550, TEXT("1.6k")},
		{1000000, TEXT("1.0M")}, {2500000, TEXT("2.5M")}};
	for (const auto& Case : Counts)
	{
		EXPECT_EQ(FCVXTokenCounter::FormatTokenCount(Case.Count), Case.Shown);
	}
	EXPECT_EQ(FCVXTokenCounter::EstimateTokens(TEXT("")), 1);
	EXPECT_EQ(FCVXTokenCounter::EstimateTokens(TEXT("abc")), 1);
	EXPECT_EQ(FCVXTokenCounter::EstimateTokens(TEXT("123456789")), 2);

	FCVXTokenUsage Usage;
	Usage.InputTokens = 2000000;
	Usage.OutputTokens = 1000000;
	Usage.CacheRead = 5000000;
	EXPECT_FLOAT_EQ(Usage.EstimateCostUSD(3.0f, 15.0f), 21.0f);
	EXPECT_FLOAT_EQ(FCVXTokenCounter::EstimateCostUSD(2000000, 1000000, 3.0f, 15.0f), 21.0f);
}

TEST(CVXTypes, ReflectionKnowsTheRecordsInTheirOrder)
{
	const TCHAR* const BlockFields[] = {TEXT("Type"), TEXT("Text"), TEXT("ToolUseId"), TEXT("ToolName"),
		TEXT("InputJson"), TEXT("ToolResultContent"), TEXT("bIsError"), TEXT("ImageBase64"), TEXT("ImageMediaType")};
	int32 Index = 0;
	for (TFieldIterator<FProperty> It(FCVXContentBlock::StaticStruct()); It; ++It, ++Index)
	{
		ASSERT_LT(Index, UE_ARRAY_COUNT(BlockFields));
		EXPECT_EQ(It->GetName(), BlockFields[Index]);
	}
	EXPECT_EQ(Index, UE_ARRAY_COUNT(BlockFields));

	const UEnum* States = StaticEnum<ECVXTaskState>();
	EXPECT_EQ(States->GetValueByNameString(TEXT("WaitingClarification")), 4);
	EXPECT_EQ(States->GetDisplayNameTextByValue(3).ToString(), TEXT("Waiting For Sub-Agent"));
	EXPECT_EQ(StaticEnum<ECVXMessageRole>()->GetDisplayNameTextByValue(3).ToString(), TEXT("Tool Result"));
}
