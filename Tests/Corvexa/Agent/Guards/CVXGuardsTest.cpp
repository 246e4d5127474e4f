#include "Agent/Guards/CVXSelfHealing.h"
#include "Corvexa/Support/LoopRun.h"
#include "Support/HostTypePrinting.h"
#include "Tools/CVXToolRegistry.h"
#include "Tools/CVXViewportCapture.h"

#include <gtest/gtest.h>

namespace
{
using FAnswer = FScriptedAnswer;

/** Makes the model call one tool with different arguments in each of so many turns, and then stop. */
void CallInTurns(FLoopRun& Run, const FString& Tool, int32 Turns)
{
	for (int32 Index = 0; Index < Turns; ++Index)
	{
		Run.Model->Then(FAnswer::Call(Tool, FString::Printf(TEXT("{\"n\":%d}"), Index)));
	}
	Run.Model->Then(FAnswer::Stall());
}

/** Submits and waits until the model is asked for the n-th time. */
void RunTo(FLoopRun& Run, int32 Requests)
{
	Run.Loop->SubmitUserMessage(TEXT("Go"));
	ASSERT_TRUE(Run.Pump.Until([&] { return Run.Model->StartedCount == Requests; }));
}
} // namespace

TEST(CVXGuards, TheSameCallsThreeTurnsInARowEndTheTaskBeforeTheyRunAgain)
{
	FLoopRun Run;
	int32 Looks = 0;
	FScriptedTool::Register(TEXT("look"), [&](const FString&) { return MakeToolResult(FString::FromInt(++Looks)); });
	FScriptedTool::Register(TEXT("list"), TEXT("listed"));
	for (const bool bSwap : {false, true, false})
	{
		FAnswer Answer = FAnswer::Say(bSwap ? TEXT("") : TEXT("Again."));
		Answer.And(bSwap ? TEXT("LIST") : TEXT("look"), TEXT("{}"))
			.And(bSwap ? TEXT("look") : TEXT("list"), TEXT("{}"));
		Run.Model->Then(Answer);
	}
	Run.Submit(TEXT("Go"));
	EXPECT_EQ(Run.Told.Last(), TEXT("complete Again."));
	EXPECT_EQ(Run.DescribeHistory(), TEXT("user assistant tool assistant tool assistant"));
	EXPECT_EQ(Looks, 1) << "the second time the kept result answered";
}

TEST(CVXGuards, OneToolForMostOfTenCallsIsWarnedOfOnce)
{
	FLoopRun Run;
	FScriptedTool::Register(TEXT("look"), TEXT("seen"));
	CallInTurns(Run, TEXT("look"), 12);
	RunTo(Run, 13);
	EXPECT_EQ(Run.TextOf(TEXT("diversity-warning")),
		TEXT("[Diversity warning] Tool 'look' was called 10 out of the last 10 turns (100%). You may be stuck in a "
			 "loop. "
			 "Consider a different approach or call attempt_completion."));
	EXPECT_EQ(Run.DescribeHistory().Replace(TEXT("assistant tool"), TEXT("x")),
		TEXT("user x x x x x x x x x x diversity-warning x x"));
}

TEST(CVXGuards, PythonErrorsAreSentBackWithWhatTheApiKnowsUntilTheUserShouldBeAsked)
{
	FLoopRun Run;
	FScriptedTool::Register(
		TEXT("execute_python"),
		[](const FString&)
		{
			return MakeToolResult(TEXT(
				"AttributeError: 'Actor' object has no attribute 'fly_high'\nNameError: name 'wings' is not defined"));
		},
		false);
	TArray<FString> Queries;
	FScriptedTool::Register(TEXT("query_ue_api"),
		[&](const FString& Arguments)
		{
			Queries.Add(Arguments);
			return MakeToolResult(TEXT("set_actor_location(...)"), Queries.Num() % 2 == 0);
		});
	CallInTurns(Run, TEXT("execute_python"), 6);
	RunTo(Run, 7);
	EXPECT_EQ(Run.DescribeHistory(),
		TEXT("user assistant tool auto-retry-1 assistant tool auto-retry-2 assistant tool auto-retry-3 assistant tool "
			 "auto-retry-4 assistant tool diversity-warning auto-retry-5 assistant tool max-retries-ask-user"));
	EXPECT_EQ(Queries[0], TEXT("{\"query\":\"fly_high\"}"));
	EXPECT_EQ(Queries[1], TEXT("{\"query\":\"wings\"}"));
	EXPECT_TRUE(
		Run.TextOf(TEXT("auto-retry-1"))
			.EndsWith(
				TEXT("Do NOT create _v2 copies.\n\n[Auto-discovered API for 'fly_high']:\nset_actor_location(...)")));
	EXPECT_TRUE(Run.TextOf(TEXT("diversity-warning")).Contains(TEXT("has produced errors 5 turns in a row")));
	EXPECT_EQ(Run.Loop->GetGuardState().SelfHealRetries, 0);
}

TEST(CVXGuards, OnlyRealSuccessEndsTheCountOfRetries)
{
	FLoopRun Run;
	TArray<FString> Outputs = {TEXT("TypeError: no"), TEXT("['a', 'b']"), TEXT("Help on class Actor"),
		TEXT("(no output)"), TEXT("SyntaxError: x"), TEXT("Placed 3 walls")};
	TArray<int32> Retries;
	FScriptedTool::Register(
		TEXT("execute_python"),
		[&](const FString&)
		{
			Retries.Add(Run.Loop->GetGuardState().SelfHealRetries);
			return MakeToolResult(Outputs[Retries.Num() - 1]);
		},
		false);
	CallInTurns(Run, TEXT("execute_python"), Outputs.Num());
	RunTo(Run, Outputs.Num() + 1);
	EXPECT_EQ(Retries, TArray<int32>({0, 1, 1, 1, 1, 1}));
	EXPECT_EQ(Run.Loop->GetGuardState().SelfHealRetries, 0);
}

TEST(CVXGuards, PythonThatProvesNothingIsRemindedToPrint)
{
	FLoopRun Run;
	FScriptedTool::Register(TEXT("execute_python"), TEXT("done"), false, false);
	CallInTurns(Run, TEXT("execute_python"), 3);
	RunTo(Run, 4);
	EXPECT_TRUE(Run.DescribeHistory().EndsWith(TEXT("tool verify-hint")));
	EXPECT_TRUE(Run.TextOf(TEXT("verify-hint"))
					.StartsWith(TEXT("[Hint] 3 execute_python calls without print() verification.")));
	EXPECT_EQ(Run.Loop->GetGuardState().CompletedWork[0], TEXT("execute_python: done"));
}

TEST(CVXGuards, ATruncatedAnswerIsToldBeforeTheAnswerItself)
{
	FLoopRun Run;
	FScriptedTool::Register(TEXT("look"), TEXT("seen"));
	FAnswer Answer = FAnswer::Call(TEXT("look"), TEXT("{}"));
	Answer.Usage.bTruncated = true;
	Answer.Usage.OutputTokens = 8192;
	Run.Model->Then(Answer).Then(FAnswer::Stall());
	RunTo(Run, 2);
	EXPECT_EQ(Run.DescribeHistory(), TEXT("user output-truncated-0 assistant tool"));
}

TEST(CVXGuards, CompletedWorkKeepsItsNewestThirtyLines)
{
	FLoopRun Run;
	FScriptedTool::Register(TEXT("git_commit"), TEXT("committed"), false, false);
	FScriptedTool::Register(TEXT("write_file"), TEXT("written"), false, false);
	FAnswer Answer = FAnswer::Call(TEXT("write_file"), TEXT("{\"file_path\":\"Config/First.ini\"}"));
	for (int32 Index = 0; Index < 30; ++Index)
	{
		Answer.And(TEXT("git_commit"), FString::FromInt(Index));
	}
	Run.Model->Then(Answer).Then(FAnswer::Stall());
	RunTo(Run, 2);
	const TArray<FString>& Work = Run.Loop->GetGuardState().CompletedWork;
	EXPECT_EQ(Work.Num(), 30);
	EXPECT_FALSE(Work.Contains(TEXT("write_file: Config/First.ini")));
	EXPECT_TRUE(Run.Model->Requests.Last().SystemPrompt.Contains(
		TEXT("\n\n## Completed work this session (DO NOT repeat these operations)\n- git_commit: (completed)\n")));
}

TEST(CVXGuards, AModelWithEyesIsShownWhatItsPythonDid)
{
	FLoopRun Run;
	FScriptedTool::Register(TEXT("capture_viewport"),
		[](const FString&)
		{
			FCVXToolExecutionResult Result = MakeToolResult(TEXT("captured"));
			Result.ImageBase64 = TEXT("aGk=");
			Result.ImageMediaType = TEXT("image/png");
			return Result;
		});
	Run.Model->Then(FAnswer::Call(TEXT("capture_viewport"), TEXT("{}"))).Then(FAnswer::Stall());
	RunTo(Run, 2);
	EXPECT_EQ(Run.DescribeHistory(), TEXT("user assistant tool user"));
	const FCVXMessage& Shown = Run.History().Last();
	ASSERT_EQ(Shown.Content.Num(), 2);
	EXPECT_TRUE(Shown.Content[0].Text.StartsWith(TEXT("[1 viewport screenshot(s) captured")));
	EXPECT_EQ(Shown.Content[1].ImageBase64, TEXT("aGk="));
	EXPECT_EQ(Run.Told.Last(2), TEXT("message 3"));
	EXPECT_EQ(Run.Told.Last(1), TEXT("message 1")) << "the user sees this one";
}
