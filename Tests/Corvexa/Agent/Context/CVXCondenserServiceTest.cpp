#include "Agent/Context/CVXCondenserService.h"

#include "Corvexa/Support/LoopRun.h"
#include "Support/HostTypePrinting.h"

#include <gtest/gtest.h>

namespace
{
FCVXMessage Spoken(ECVXMessageRole Role, const TCHAR* Text)
{
	FCVXMessage Message = FCVXMessage::MakeUserText(Text);
	Message.Role = Role;
	return Message;
}

FCVXMessage ToolResult(const TCHAR* Tool, const FString& Text)
{
	FCVXMessage Message;
	Message.Role = ECVXMessageRole::Tool;
	FCVXContentBlock& Block = Message.Content.AddDefaulted_GetRef();
	Block.Type = TEXT("tool_result");
	Block.ToolName = Tool;
	Block.ToolResultContent = Text;
	return Message;
}

/** A loop, a provider of its own for the summary, and what the condenser said of it. */
class CVXCondenserService : public testing::Test
{
protected:
	void Condense(int32 KeepRecent)
	{
		FCVXCondenserService::Condense(*Run.Loop, *Provider, Run.Profile, KeepRecent,
			FCVXCondenserService::FOnDone::CreateLambda([this](bool bSuccess, const FString& Text)
				{ Told.Add((bSuccess ? TEXT("done ") : TEXT("failed ")) + Text); }));
	}
	FString CondenseToEnd(int32 KeepRecent)
	{
		Told.Empty();
		Condense(KeepRecent);
		EXPECT_TRUE(Run.Pump.Until([this] { return !Told.IsEmpty(); }));
		Run.Pump.Tick();
		return FString::Join(Told, TEXT(" | "));
	}
	FCVXContextManager& Context() const { return Run.Loop->GetContextManager(); }

	FLoopRun Run;
	TSharedRef<FScriptedModel> Model = MakeShared<FScriptedModel>();
	TUniquePtr<FScriptedProvider> Provider = MakeUnique<FScriptedProvider>(Model);
	TArray<FString> Told;
};

TEST_F(CVXCondenserService, TheOlderPartGivesWayToItsSummaryAndSubAgentsAreTold)
{
	Context().AddMessage(Spoken(ECVXMessageRole::User, TEXT("Build a door")));
	Context().AddMessage(Spoken(ECVXMessageRole::Assistant, TEXT("I look around.")));
	Context().AddMessage(ToolResult(TEXT("read_file"), TEXT("secret of the oak")));
	Context().AddMessage(ToolResult(TEXT("delegate_to_agent"), FString::ChrN(600, TEXT('x'))));
	Context().AddMessage(Spoken(ECVXMessageRole::User, TEXT("Now a window")));
	Model->Then(FScriptedAnswer::Say(TEXT("A door was built.")));

	EXPECT_EQ(CondenseToEnd(1), TEXT("done A door was built."));
	const FCVXProviderRequest& Request = Model->Requests[0];
	EXPECT_TRUE(Request.SystemPrompt.StartsWith(TEXT("You are a conversation summarizer.")));
	EXPECT_EQ(Request.Messages[0].GetFirstTextContent(),
		TEXT("Please summarize the following conversation history:\n\n[User]: Build a door\n\n[Assistant]: I look "
			 "around.\n\n=== Completed Sub-Agent Delegations (IMPORTANT — preserve these) ===\n[Delegation Result — "
			 "delegate_to_agent]: ") +
			FString::ChrN(500, TEXT('x')) + TEXT("... (truncated)\n\n"));
	EXPECT_TRUE(Request.Tools.IsEmpty());
	EXPECT_EQ(Request.MaxTokens, 2048);
	EXPECT_EQ(Run.DescribeHistory(), TEXT("condensed-context user"));
	EXPECT_EQ(Run.TextOf(TEXT("condensed-context")),
		TEXT("[Condensed context — this is an AI-generated summary of earlier conversation]\n\nA door was built."));
	EXPECT_TRUE(Run.Told.IsEmpty()) << "the loop's listeners have nothing to do with it";
}

TEST_F(CVXCondenserService, WhatCanNotBeCondensedStaysAsItIs)
{
	Context().AddMessage(ToolResult(TEXT("read_file"), TEXT("text")));
	Context().AddMessage(ToolResult(TEXT("read_file"), TEXT("more")));
	EXPECT_EQ(CondenseToEnd(2), TEXT("failed Conversation is already short — nothing to condense."));
	EXPECT_EQ(CondenseToEnd(1), TEXT("failed No summarizable content found."));
	EXPECT_EQ(Model->StartedCount, 0);

	Context().AddMessage(Spoken(ECVXMessageRole::User, TEXT("Build a door")));
	Model->Then(FScriptedAnswer::Fail(TEXT("HTTP 500"))).Then(FScriptedAnswer::Say(TEXT("")));
	EXPECT_EQ(CondenseToEnd(0), TEXT("failed Condenser error: HTTP 500"));
	EXPECT_EQ(CondenseToEnd(0), TEXT("failed Condenser produced an empty summary."));
	EXPECT_EQ(Context().GetHistory().Num(), 3);
}

TEST_F(CVXCondenserService, ALoopThatGoesMeanwhileIsToldOnceWhoeverOwnsTheProvider)
{
	Context().AddMessage(Spoken(ECVXMessageRole::User, TEXT("Build a door")));
	Model->Then(FScriptedAnswer::Say(TEXT("A door."))).Then(FScriptedAnswer::Stall());
	Condense(0);
	Run.Loop.Reset();
	ASSERT_TRUE(Run.Pump.Until([this] { return !Told.IsEmpty(); }));

	Run.MakeLoop();
	Context().AddMessage(Spoken(ECVXMessageRole::User, TEXT("Build a door")));
	Condense(0);
	Provider.Reset();
	Run.Loop.Reset();
	EXPECT_TRUE(Run.Pump.Until([this] { return Told.Num() == 2; }));
	EXPECT_EQ(FString::Join(Told, TEXT("|")),
		TEXT("failed Agent loop destroyed during condensing.|failed Agent loop destroyed during condensing."));
}
} // namespace
