#include "Agent/Loop/CVXAgentLoop.h"

#include "Core/CVXSettings.h"
#include "Corvexa/Support/LoopRun.h"
#include "Support/HostTypePrinting.h"
#include "Support/LogCapture.h"
#include "Support/TestClock.h"
#include "Tools/CVXToolRegistry.h"

#include <gtest/gtest.h>

namespace
{
using FAnswer = FScriptedAnswer;

const FString Done = TEXT("{\"result\":\"All that was asked for is done.\"}");

FAnswer Complete()
{
	return FAnswer::Call(TEXT("attempt_completion"), Done);
}
} // namespace

TEST(CVXAgentLoop, ARunGoesFromRequestThroughToolsToItsResult)
{
	FLoopRun Run;
	FScriptedTool::Register(TEXT("look"), TEXT("seen"));
	FAnswer First = FAnswer::Say(TEXT("I look."));
	First.Reasoning = TEXT("hm");
	Run.Model->Then(First.And(TEXT("look"), TEXT("{}"), TEXT("a"))).Then(Complete());
	Run.Submit(TEXT("Go"));

	EXPECT_EQ(FString::Join(Run.Told, TEXT(",")),
		TEXT(
			"message 1,state 1,state 0,message 2,state 5,message 3,state 1,state 0,message 2,state 5,message 3,state 6,"
			"complete ") +
			Done);
	EXPECT_EQ(Run.DescribeHistory(), TEXT("user assistant tool assistant tool"));
	EXPECT_EQ(Run.History()[1].ReasoningContent, TEXT("hm"));
	EXPECT_EQ(Run.History()[1].AgentName, TEXT("Tester"));
	EXPECT_EQ(Run.History()[2].Content[0].ToolResultContent, TEXT("seen"));
	ASSERT_EQ(Run.Model->Requests.Num(), 2);
	EXPECT_EQ(Run.Model->Requests[0].SystemPrompt, TEXT("You test."));
	EXPECT_EQ(Run.Model->Requests[0].Tools.Num(), 2);
	EXPECT_EQ(Run.Model->Requests[1].Messages.Num(), 3);
}

TEST(CVXAgentLoop, AnAnswerWithoutToolsIsNudgedOnceThenPausesOnAQuestionOrCompletes)
{
	FLoopRun Run;
	Run.Model->Then(FAnswer::Say(TEXT("Hello"))).Then(FAnswer::Say(TEXT("Shall I?")));
	Run.Submit(TEXT("Hi"));
	EXPECT_EQ(Run.DescribeHistory(), TEXT("user assistant no-tool-nudge assistant"));
	EXPECT_EQ(Run.Loop->GetState(), ECVXTaskState::Idle);

	Run.Model->Then(FAnswer::Say(TEXT("Hello"))).Then(FAnswer::Say(TEXT("Bye.")));
	Run.Submit(TEXT("Yes"));
	EXPECT_EQ(Run.Told.Last(), TEXT("complete Bye."));

	Run.Model->Then(FAnswer());
	Run.Submit(TEXT("Nothing"));
	EXPECT_EQ(Run.Told.Last(), TEXT("complete ")) << "an empty answer ends the task and leaves no message";
	EXPECT_EQ(Run.History().Last().Role, ECVXMessageRole::User);
}

TEST(CVXAgentLoop, TheTurnLimitEndsTheTaskBeforeTheCallsOfItsLastTurnRun)
{
	FLoopRun Run;
	int32 Looks = 0;
	FScriptedTool::Register(TEXT("look"), [&](const FString&) { return MakeToolResult(FString::FromInt(++Looks)); });
	Run.Loop->MaxTurns = 3;
	Run.Model->Otherwise = [](const FCVXProviderRequest& Request)
	{ return FAnswer::Call(TEXT("look"), FString::Printf(TEXT("{\"n\":%d}"), Request.Messages.Num())); };
	Run.Submit(TEXT("Go"));
	EXPECT_EQ(Run.Told.Last(), TEXT("complete Max turns limit (3) reached. Stopping agent."));
	EXPECT_EQ(Looks, 2);
	EXPECT_EQ(Run.DescribeHistory(), TEXT("user assistant tool assistant tool turn-budget-warning"));
}

TEST(CVXAgentLoop, CallsThatWaitForADecisionHoldTheTurnAndGoOnOnce)
{
	FLoopRun Run;
	Run.Profile.ApprovalMode = ECVXApprovalMode::AutoApproveReads;
	Run.MakeLoop();
	FScriptedTool::Register(TEXT("look"), TEXT("seen"));
	FScriptedTool::Register(TEXT("write"), TEXT("written"), false, false);
	FAnswer Answer = FAnswer::Call(TEXT("write"), TEXT("{}"), TEXT("w1"));
	Run.Model->Then(Answer.And(TEXT("look"), TEXT("{}"), TEXT("r")).And(TEXT("write"), TEXT("{\"n\":2}"), TEXT("w2")))
		.Then(Complete());
	Run.Submit(TEXT("Go"));
	ASSERT_EQ(Run.Approvals.Num(), 2);
	EXPECT_EQ(Run.Loop->GetState(), ECVXTaskState::WaitingApproval);

	Run.Loop->ResolveApproval(TEXT("w1"), ECVXApprovalState::Approved, false);
	EXPECT_EQ(Run.Loop->GetState(), ECVXTaskState::WaitingApproval) << "the other call still waits";
	Run.Loop->ResolveApproval(TEXT("w2"), ECVXApprovalState::Denied, false);
	Run.Settle();
	EXPECT_EQ(Run.Model->StartedCount, 2);
	const TArray<FCVXContentBlock>& Results = Run.History()[2].Content;
	ASSERT_EQ(Results.Num(), 3);
	EXPECT_EQ(Results[1].ToolResultContent, TEXT("written"));
	EXPECT_EQ(Results[2].ToolResultContent, TEXT("Tool execution was denied by user."));
	EXPECT_TRUE(Results[2].bIsError);
}

TEST(CVXAgentLoop, CallsOfOneIdAreToldApart)
{
	FLoopRun Run;
	Run.Profile.ApprovalMode = ECVXApprovalMode::AlwaysAsk;
	Run.MakeLoop();
	FScriptedTool::Register(TEXT("write"), TEXT("written"), false, false);
	FAnswer Answer = FAnswer::Call(TEXT("write"), TEXT("{\"n\":1}"), TEXT("same"));
	Run.Model->Then(Answer.And(TEXT("write"), TEXT("{\"n\":2}"), TEXT("same")))
		.Then(FAnswer::Call(TEXT("write"), TEXT("{\"n\":3}"), TEXT("same")))
		.Then(FAnswer::Stall());
	Run.Submit(TEXT("Go"));
	ASSERT_EQ(Run.Approvals.Num(), 2);
	EXPECT_EQ(Run.Approvals[0].ToolUseId, TEXT("same"));
	for (int32 Index = 0; Index < 3; ++Index)
	{
		ASSERT_TRUE(Run.Pump.Until([&] { return Run.Approvals.IsValidIndex(Index); }));
		Run.Loop->ResolveApproval(Run.Approvals[Index].ToolUseId, ECVXApprovalState::Approved, false);
	}
	ASSERT_EQ(Run.Model->StartedCount, 3);
	EXPECT_EQ(Run.Model->Requests[1].Messages.Last().Content.Num(), 2);
	TSet<FString> Ids;
	for (const FCVXMessage& Message : Run.Model->Requests[2].Messages)
	{
		for (const FCVXContentBlock& Block : Message.Content)
		{
			if (Block.Type == TEXT("tool_use"))
			{
				EXPECT_FALSE(Ids.Contains(Block.ToolUseId)) << "an earlier turn's id";
				Ids.Add(Block.ToolUseId);
			}
		}
	}
	EXPECT_EQ(Ids.Num(), 3);
}

TEST(CVXAgentLoop, ADecisionThatNobodyTakesIsADenialAfterTenMinutes)
{
	FLoopRun Run;
	FTestClock Clock;
	Run.Profile.ApprovalMode = ECVXApprovalMode::AlwaysAsk;
	Run.MakeLoop();
	FScriptedTool::Register(TEXT("write"), TEXT("written"), false, false);
	Run.Model->Then(FAnswer::Call(TEXT("write"), TEXT("{}"), TEXT("w"))).Then(FAnswer::Say(TEXT("May I?")));
	Run.Submit(TEXT("Go"));
	Clock.Advance(599.0);
	Run.Pump.Tick();
	EXPECT_EQ(Run.Loop->GetState(), ECVXTaskState::WaitingApproval);
	Clock.Advance(3.0);
	Run.Pump.Tick();
	EXPECT_EQ(Run.History().Last().Content[0].ToolResultContent, TEXT("Tool execution was denied by user."));
}

TEST(CVXAgentLoop, AnApprovedCallOnThePoolIsWaitedFor)
{
	FLoopRun Run;
	Run.Profile.ApprovalMode = ECVXApprovalMode::AlwaysAsk;
	Run.MakeLoop();
	FScriptedTool::Register(
		TEXT("run"), [](const FString&) { return MakeToolResult(TEXT("ran")); }, false, true);
	Run.Model->Then(FAnswer::Call(TEXT("run"), TEXT("{}"), TEXT("r"))).Then(FAnswer::Stall());
	Run.Submit(TEXT("Go"));
	Run.Loop->ResolveApproval(TEXT("r"), ECVXApprovalState::Approved, false);
	EXPECT_TRUE(Run.Pump.Until([&] { return Run.Model->StartedCount == 2; }));
	EXPECT_EQ(Run.History().Last().Content[0].ToolResultContent, TEXT("ran"));
}

TEST(CVXAgentLoop, QuestionsOfOneTurnArePutOneAfterTheOther)
{
	FLoopRun Run;
	FScriptedTool::Register(TEXT("ask"),
		[](const FString& Arguments)
		{
			FCVXToolExecutionResult Result = MakeToolResult(TEXT("Waiting"));
			Result.bHasQuestions = true;
			Result.Questions.Add({Arguments, {{TEXT("Red"), FString()}, {TEXT("Blue"), FString()}}});
			return Result;
		});
	FAnswer Answer = FAnswer::Call(TEXT("ask"), TEXT("{\"q\":1}"), TEXT("q1"));
	Run.Model->Then(Answer.And(TEXT("ask"), TEXT("{\"q\":2}"), TEXT("q2"))).Then(Complete());
	Run.Submit(TEXT("Go"));
	ASSERT_EQ(Run.Clarifications.Num(), 1);
	Run.Loop->ResolveClarification(TEXT("q2"), {TEXT("Blue")});
	EXPECT_EQ(Run.Clarifications.Num(), 1) << "another question is open";
	Run.Loop->ResolveClarification(TEXT("q1"), {TEXT("Red"), TEXT("and more")});
	ASSERT_EQ(Run.Clarifications.Num(), 2);
	EXPECT_EQ(Run.Loop->GetState(), ECVXTaskState::WaitingClarification);
	Run.Loop->ResolveClarification(TEXT("q2"), {TEXT("Blue")});
	Run.Settle();
	EXPECT_EQ(Run.History()[2].Content[0].ToolResultContent, TEXT("Selection 1: Red\nSelection 2: and more\n"));

	UCVXSettings::Get()->bAutoSelectClarifications = true;
	Run.Model->Then(FAnswer::Call(TEXT("ask"), TEXT("{\"q\":3}"), TEXT("q3"))).Then(Complete());
	Run.Submit(TEXT("Again"));
	UCVXSettings::Get()->bAutoSelectClarifications = false;
	EXPECT_EQ(Run.Clarifications.Num(), 2);
	EXPECT_EQ(Run.History().Last(2).Content[0].ToolResultContent, TEXT("Q: {\"q\":3}\nA: Red\n\n"));
}

TEST(CVXAgentLoop, AMessageMayOvertakeAnOpenQuestion)
{
	FLoopRun Run;
	FScriptedTool::Register(TEXT("ask"),
		[](const FString&)
		{
			FCVXToolExecutionResult Result;
			Result.bHasQuestions = true;
			Result.Questions.Add({TEXT("Which?"), {{TEXT("Red"), FString()}}});
			return Result;
		});
	Run.Model->Then(FAnswer::Call(TEXT("ask"), TEXT("{}"), TEXT("q"))).Then(Complete());
	Run.Submit(TEXT("Go"));
	Run.Submit(TEXT("Never mind"));
	EXPECT_EQ(Run.Loop->GetState(), ECVXTaskState::Complete);
	Run.Loop->ResolveClarification(TEXT("q"), {TEXT("Red")});
	EXPECT_EQ(Run.DescribeHistory(), TEXT("user assistant user assistant tool"));
	ASSERT_EQ(Run.Model->Requests.Num(), 2);
	EXPECT_EQ(Run.Model->Requests[1].Messages.Num(), 2) << "the call without a result isn't sent";
}

TEST(CVXAgentLoop, InterruptKeepsTheConversationAndDropsWhatComesLate)
{
	FLoopRun Run;
	Run.Model->Then(FAnswer::Stall());
	Run.Loop->SubmitUserMessage(TEXT("Go"));
	Run.Loop->SubmitUserMessage(TEXT("dropped"));
	Run.Loop->Interrupt();
	EXPECT_EQ(Run.Model->CancelledCount, 1);
	EXPECT_EQ(Run.Loop->GetState(), ECVXTaskState::Idle);
	EXPECT_TRUE(Run.Loop->IsInterrupted());
	Run.Model->Then(Complete());
	Run.Submit(TEXT("continue"));
	EXPECT_EQ(Run.DescribeHistory(), TEXT("user user assistant tool"));
	EXPECT_EQ(Run.Loop->GetState(), ECVXTaskState::Complete);
}

TEST(CVXAgentLoop, TransientErrorsAreRetriedWithGrowingWaitsAndLostConnectionsEveryTwoSeconds)
{
	FLoopRun Run;
	FTestClock Clock;
	for (int32 Index = 0; Index < 3; ++Index)
	{
		Run.Model->Then(FAnswer::Fail(TEXT("HTTP 529: overloaded")));
	}
	Run.Model->Then(FAnswer::Fail(TEXT("HTTP 429: slow down [Retry-After: 120]")));
	Run.Loop->SubmitUserMessage(TEXT("Go"));
	for (const double Wait : {1.0, 2.0, 4.0})
	{
		ASSERT_TRUE(Run.Pump.Until([&] { return Run.Loop->GetRetryTime() > Clock.GetSeconds(); }));
		EXPECT_NEAR(Run.Loop->GetRetryTime() - Clock.GetSeconds(), Wait, 0.001);
		Clock.Advance(Wait + 0.01);
	}
	Run.Settle();
	EXPECT_EQ(Run.Told.Last(),
		TEXT("error **Rate limit exceeded** — too many requests to the API (retried 3 times).\n\nWait a moment and try "
			 "again. If this persists, check your API plan's rate limits."));

	Run.Model->Otherwise = [](const FCVXProviderRequest&) { return FAnswer::Fail(TEXT("Connection failed")); };
	Run.Model->StartedCount = 0;
	Run.Told.Empty();
	Run.Loop->SubmitUserMessage(TEXT("Again"));
	EXPECT_TRUE(Run.Pump.Until(
		[&]
		{
			Clock.Advance(Run.Loop->GetRetryTime() > 0.0 ? 2.01 : 0.0);
			return Run.Loop->GetState() == ECVXTaskState::Cancelled;
		}));
	EXPECT_EQ(Run.Model->StartedCount, 6);
	EXPECT_FALSE(FString::Join(Run.Told, TEXT(",")).Contains(TEXT("error")));
}

TEST(CVXAgentLoop, ARetryThatTheUserOvertakesNeverComes)
{
	FLoopRun Run;
	FTestClock Clock;
	Run.Model->Then(FAnswer::Fail(TEXT("HTTP 429 [Retry-After: 30]"))).Then(Complete());
	Run.Loop->SubmitUserMessage(TEXT("Go"));
	ASSERT_TRUE(Run.Pump.Until([&] { return Run.Loop->GetRetryTime() > 0.0; }));
	Run.Submit(TEXT("Now"));
	Clock.Advance(60.0);
	Run.Pump.Tick();
	EXPECT_EQ(Run.Model->StartedCount, 2);
}

TEST(CVXAgentLoop, ItMayBeLetGoOfByAnyOfItsListeners)
{
	for (int32 Stop = 0;; ++Stop)
	{
		FLoopRun Run;
		FScriptedTool::Register(TEXT("look"), TEXT("seen"));
		FAnswer Answer = FAnswer::Say(TEXT("I look."));
		Run.Model->Then(Answer.And(TEXT("look"), TEXT("{}"))).Then(Complete());
		int32 Calls = 0;
		int32 CallsAfter = 0;
		TWeakPtr<FCVXAgentLoop> Weak;
		TSharedPtr<FCVXAgentLoop> Loop =
			MakeShared<FCVXAgentLoop>(MakeUnique<FScriptedProvider>(Run.Model), Run.Profile);
		const auto Listen = [&]
		{
			CallsAfter += Weak.IsValid() ? 0 : 1;
			if (Calls++ == Stop)
			{
				Loop.Reset();
			}
		};
		Loop->OnTextDelta.AddLambda([&](const FString&) { Listen(); });
		Loop->OnStateChanged.AddLambda([&](ECVXTaskState) { Listen(); });
		Loop->OnMessageComplete.AddLambda([&](const FCVXMessage&) { Listen(); });
		Loop->OnComplete.AddLambda([&](const FString&) { Listen(); });
		Weak = Loop;
		Loop->SubmitUserMessage(TEXT("Go"));
		for (int32 Tick = 0; Tick < 50; ++Tick)
		{
			Run.Pump.Tick();
		}
		if (Loop)
		{
			EXPECT_GT(Stop, 10) << "every listener was tried";
			break;
		}
		EXPECT_FALSE(Weak.IsValid());
		EXPECT_EQ(CallsAfter, 0);
	}
}

TEST(CVXAgentLoop, AnyListenerMayInterruptOrCancel)
{
	for (const bool bCancel : {false, true})
	{
		for (int32 Stop = 0;; ++Stop)
		{
			FLoopRun Run;
			FScriptedTool::Register(TEXT("look"), TEXT("seen"));
			FAnswer Answer = FAnswer::Say(TEXT("I look."));
			Run.Model->Then(Answer.And(TEXT("look"), TEXT("{}"))).Then(Complete());
			int32 Calls = 0;
			const auto Listen = [&]
			{
				if (Calls++ == Stop)
				{
					bCancel ? Run.Loop->Cancel() : Run.Loop->Interrupt();
				}
			};
			Run.Loop->OnTextDelta.AddLambda([&](const FString&) { Listen(); });
			Run.Loop->OnStateChanged.AddLambda([&](ECVXTaskState) { Listen(); });
			Run.Loop->OnMessageComplete.AddLambda([&](const FCVXMessage&) { Listen(); });
			Run.Submit(TEXT("Go"));
			if (Calls <= Stop)
			{
				EXPECT_GT(Stop, 8);
				break;
			}
			EXPECT_EQ(Run.Loop->GetState(), bCancel ? ECVXTaskState::Cancelled : ECVXTaskState::Idle) << Stop;
			Run.Model->Answers.Empty();
			Run.Model->Then(Complete());
			Run.Submit(TEXT("Go on"));
			EXPECT_EQ(Run.Loop->GetState(), ECVXTaskState::Complete) << Stop;
		}
	}
}
