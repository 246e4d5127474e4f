#include "Agent/Context/CVXContextManager.h"

#include "Algo/AnyOf.h"
#include "Support/HostTypePrinting.h"

#include <gtest/gtest.h>

#include <random>

namespace
{
FCVXContentBlock Block(const TCHAR* Type, const FString& Text, const FString& Id, const FString& Tool)
{
	FCVXContentBlock Result;
	Result.Type = Type;
	Result.ToolUseId = Id;
	Result.ToolName = Tool;
	(Result.Type == TEXT("tool_result") ? Result.ToolResultContent : Result.Text) = Text;
	return Result;
}

FCVXMessage Message(ECVXMessageRole Role, TArray<FCVXContentBlock> Blocks)
{
	FCVXMessage Result;
	Result.Role = Role;
	Result.Content = MoveTemp(Blocks);
	return Result;
}

FString Letters(int32 Count)
{
	return FString::ChrN(Count, TEXT('x'));
}

bool ContainsText(const TArray<FCVXMessage>& Messages, const FString& Text)
{
	return Algo::AnyOf(Messages,
		[&](const FCVXMessage& Each)
		{
			return Algo::AnyOf(Each.Content,
				[&](const FCVXContentBlock& Piece)
				{ return Piece.Text.Contains(Text) || Piece.ToolResultContent.Contains(Text); });
		});
}

/** Why the messages can't be sent; empty when they can. */
FString FindFault(const TArray<FCVXMessage>& Messages)
{
	TSet<FString> Uses;
	TSet<FString> Results;
	for (const FCVXMessage& Each : Messages)
	{
		if (Each.Role == ECVXMessageRole::System)
		{
			return TEXT("a system message");
		}
		for (const FCVXContentBlock& Piece : Each.Content)
		{
			if (Piece.Type == TEXT("tool_use"))
			{
				Uses.Add(Piece.ToolUseId);
			}
			else if (Piece.Type == TEXT("tool_result"))
			{
				Results.Add(Piece.ToolUseId);
			}
		}
	}
	if (!Uses.Difference(Results).IsEmpty() || !Results.Difference(Uses).IsEmpty())
	{
		return TEXT("a call without its result or the reverse");
	}
	return Messages.IsEmpty() || Messages[0].Role == ECVXMessageRole::User ? FString() : TEXT("no user at the start");
}
} // namespace

TEST(CVXContextManager, EstimatesByKindOfCharacter)
{
	struct FCase
	{
		FString Text;
		int32 Tokens;
	};
	const FCase Cases[] = {{TEXT(""), 0}, {TEXT("  \n"), 1}, {TEXT("a"), 1}, {TEXT("abcdefg"), 2}, {TEXT("12345"), 2},
		{TEXT("abcdefg 12345"), 4}, {TEXT("{};"), 3}, {TEXT("一二三"), 3}, {TEXT("—…—…"), 2}, {Letters(100000), 28571},
		{Letters(100001), 25000}};
	for (const FCase& Case : Cases)
	{
		EXPECT_EQ(FCVXContextManager::EstimateTokensForString(Case.Text), Case.Tokens)
			<< TCHAR_TO_UTF8(*Case.Text.Left(20));
	}
	FCVXContentBlock Image;
	Image.Type = TEXT("image");
	Image.ImageBase64 = Letters(1000);
	EXPECT_EQ(FCVXContextManager::EstimateTokensForMessage(Message(ECVXMessageRole::User, {Image})), 85);
	Image.ImageBase64 = Letters(100000);
	EXPECT_EQ(FCVXContextManager::EstimateTokensForMessage(Message(ECVXMessageRole::User, {Image})), 1000);
}

TEST(CVXContextManager, WhatDoesntFitIsSummarisedAndACutPairLeavesItsReport)
{
	FCVXContextManager Context(1000);
	EXPECT_TRUE(Context.GetMessagesForRequest(TEXT("prompt")).IsEmpty());
	Context.AddMessage(FCVXMessage::MakeUserText(TEXT("Build a door")));
	Context.AddMessage(Message(ECVXMessageRole::Assistant,
		{Block(TEXT("tool_use"), TEXT(""), TEXT("a"), TEXT("look")),
			Block(TEXT("tool_use"), TEXT(""), TEXT("b"), TEXT("delegate_to_agent"))}));
	Context.AddMessage(Message(ECVXMessageRole::Assistant, {Block(TEXT("text"), Letters(2100), TEXT(""), TEXT(""))}));
	Context.AddMessage(Message(ECVXMessageRole::Tool,
		{Block(TEXT("tool_result"), TEXT("seen ") + Letters(600), TEXT("a"), TEXT("look")),
			Block(TEXT("tool_result"), TEXT("built ") + Letters(900), TEXT("b"), TEXT("delegate_to_agent"))}));
	Context.AddMessage(FCVXMessage::MakeUserText(Letters(3500)));

	const TArray<FCVXMessage> Messages = Context.GetMessagesForRequest(FString());
	ASSERT_EQ(Messages.Num(), 3);
	EXPECT_EQ(Messages[0].MessageId, TEXT("context-summary"));
	EXPECT_EQ(Messages[0].GetFirstTextContent(),
		TEXT("[CONTEXT SUMMARY — Earlier messages were truncated to fit the context window. Key points from the "
			 "truncated "
			 "portion:]\n\nUser requests:\n- Build a door\n\nTools used (2 total calls):\n- look (x1)\n- "
			 "delegate_to_agent "
			 "(x1)\n\nKey assistant actions:\n- ") +
			Letters(150) + TEXT("...\n\n[End of summary — 3 messages were truncated]"));
	EXPECT_EQ(Messages[1].MessageId, TEXT("preserved-tool-result"));
	EXPECT_EQ(Messages[1].GetFirstTextContent(),
		TEXT("[Previously completed work — DO NOT repeat]\n[Result of look]: seen ") + Letters(495) +
			TEXT("...\nbuilt ") + Letters(900) + TEXT("\n"));
	EXPECT_EQ(Context.GetHistory().Num(), 5);

	Context.AddMessage(FCVXMessage::MakeUserText(Letters(90000)));
	const TArray<FCVXMessage> Newest = Context.GetMessagesForRequest(FString());
	EXPECT_EQ(Newest.Last().GetFirstTextContent().Len(), 90000) << "the newest message goes, however long";
	EXPECT_EQ(Context.GetContextUtilization(FString()), 1.0f);
}

TEST(CVXContextManager, NoHistoryAndNoBudgetGiveARequestThatAVendorRefuses)
{
	std::mt19937 Random(7);
	const auto Pick = [&](int32 Count) { return static_cast<int32>(Random() % static_cast<uint32>(Count)); };
	for (int32 Round = 0; Round < 2000; ++Round)
	{
		FCVXContextManager Context(2000 + Pick(8000));
		FString LastReport;
		Context.AddMessage(FCVXMessage::MakeUserText(TEXT("Build a door")));
		for (int32 Count = Pick(30); Count > 0; --Count)
		{
			TArray<FCVXContentBlock> Blocks;
			const ECVXMessageRole Role = static_cast<ECVXMessageRole>(Pick(4));
			for (int32 Each = Pick(4); Each > 0; --Each)
			{
				const TCHAR* Work = Role == ECVXMessageRole::Assistant ? TEXT("tool_use")
					: Role == ECVXMessageRole::Tool                    ? TEXT("tool_result")
																	   : TEXT("text");
				const TCHAR* Type = Pick(3) ? Work : TEXT("text");
				const FString Id = FString::Printf(TEXT("id%d"), Pick(12));
				const bool bDelegation = Pick(4) == 0;
				Blocks.Add(
					Block(Type, Letters(Pick(3000)), Id, bDelegation ? TEXT("delegate_to_agent") : TEXT("look")));
			}
			Context.AddMessage(Message(Role, MoveTemp(Blocks)));
		}
		if (Pick(2))
		{
			LastReport = FString::Printf(TEXT("report %d"), Round);
			Context.AddMessage(Message(ECVXMessageRole::Tool,
				{Block(TEXT("tool_result"), LastReport, FString::Printf(TEXT("id%d"), Pick(12)),
					TEXT("delegate_to_agent"))}));
			Context.AddMessage(FCVXMessage::MakeUserText(TEXT("Go on")));
		}
		const TArray<FCVXMessage> Messages = Context.GetMessagesForRequest(Letters(Pick(2000)));
		ASSERT_EQ(FindFault(Messages), FString()) << "round " << Round;
		if (!LastReport.IsEmpty())
		{
			ASSERT_TRUE(ContainsText(Messages, LastReport)) << "a sub-agent's report was lost in round " << Round;
		}
	}
}

TEST(CVXContextManager, ARequestIsTheSameWhateverWasAskedBefore)
{
	std::mt19937 Random(11);
	const auto Pick = [&](int32 Count) { return static_cast<int32>(Random() % static_cast<uint32>(Count)); };
	FCVXContextManager Grown(4000);
	FString LastSummary;
	for (int32 Count = 0; Count < 400; ++Count)
	{
		const FString Id = FString::Printf(TEXT("id%d"), Count / 2);
		FCVXContentBlock Call = Block(TEXT("tool_use"), TEXT(""), Id, TEXT("write_file"));
		Call.InputJson = FString::Printf(TEXT("{\"content\": \"a \\\" b\", \"path\": \"Source/%d.cpp\"}"), Pick(60));
		Grown.AddMessage(Count % 2 ? Message(ECVXMessageRole::Tool,
										 {Block(TEXT("tool_result"), Letters(Pick(3000)), Id, TEXT("write_file"))})
								   : Message(ECVXMessageRole::Assistant,
										 {Block(TEXT("text"), Letters(Pick(300)), TEXT(""), TEXT("")), Call}));
		if (Pick(10) == 0)
		{
			Grown.AddMessage(FCVXMessage::MakeUserText(FString::Printf(TEXT("request %d"), Count)));
		}
		Grown.SetMaxContextTokens(4000 + 1000 * Pick(8));

		FCVXContextManager Fresh(Grown.GetMaxContextTokens());
		for (const FCVXMessage& Each : Grown.GetHistory())
		{
			Fresh.AddMessage(Each);
		}
		const TArray<FCVXMessage> Expected = Fresh.GetMessagesForRequest(FString());
		const TArray<FCVXMessage> Messages = Grown.GetMessagesForRequest(FString());
		ASSERT_EQ(Messages.Num(), Expected.Num()) << Count;
		for (int32 Index = 0; Index < Messages.Num(); ++Index)
		{
			ASSERT_EQ(Messages[Index].GetFirstTextContent(), Expected[Index].GetFirstTextContent()) << Count;
		}
		ASSERT_EQ(Grown.GetRunningMessageTokens(), Fresh.GetRunningMessageTokens());
		LastSummary = Messages.IsEmpty() ? FString() : Messages[0].GetFirstTextContent();
	}
	EXPECT_TRUE(LastSummary.Contains(TEXT("earlier requests)"))) << TCHAR_TO_UTF8(*LastSummary);
	EXPECT_TRUE(LastSummary.Contains(TEXT("- write_file (x"))) << TCHAR_TO_UTF8(*LastSummary);
	EXPECT_TRUE(LastSummary.Contains(TEXT("earlier operations)"))) << TCHAR_TO_UTF8(*LastSummary);
}
