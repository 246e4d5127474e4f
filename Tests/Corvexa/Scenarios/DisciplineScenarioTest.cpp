#include "Core/CVXSettings.h"
#include "Corvexa/Scenarios/Scenario.h"
#include "Support/HostTypePrinting.h"
#include "Support/LogCapture.h"

#include <gtest/gtest.h>

namespace
{
using FAnswer = FScriptedAnswer;

const FString Report = TEXT("Changed Source/Door.cpp as was asked for.");

FAnswer Complete(const FString& Result = Report)
{
	return FAnswer::Call(TEXT("attempt_completion"), FString::Printf(TEXT("{\"result\":\"%s\"}"), *Result));
}
} // namespace

TEST(DisciplineScenario, AModelThatStopsEarlyIsSentOn)
{
	FScenario Scenario;
	Scenario.Answer(FAnswer::Say(TEXT("I would write a door."))).Answer(Complete());
	Scenario.Submit(TEXT("Write a door"));
	EXPECT_EQ(Scenario.DescribeHistory(), TEXT("user assistant no-tool-nudge assistant tool"));
	EXPECT_EQ(FString::Join(Scenario.Ends, TEXT("|")), TEXT("complete ") + Report);
}

TEST(DisciplineScenario, QuestionsInAResultAreSentBackAndThenPutProperly)
{
	FScenario Scenario;
	Scenario.Answer(Complete(TEXT("The door is there. Shall it be red? Or blue?")))
		.Answer(FAnswer::Call(TEXT("ask_followup_question"),
			TEXT("{\"question\":\"Colour?\",\"options\":[{\"title\":\"Red\"},{\"title\":\"Blue\"}]}"), TEXT("q")));
	Scenario.Submit(TEXT("Write a door"));
	EXPECT_EQ(Scenario.Loop().GetState(), ECVXTaskState::WaitingClarification);
	EXPECT_TRUE(Scenario.LastToolResult().StartsWith(TEXT("Your completion result contains questions")));
	Scenario.Answer(Complete());
	Scenario.Loop().ResolveClarification(TEXT("q"), {TEXT("Blue")});
	ASSERT_TRUE(Scenario.Pump.Until([&] { return Scenario.Ends.Num() == 1; }));
	EXPECT_EQ(Scenario.DescribeHistory(), TEXT("user assistant tool assistant tool assistant tool"));
}

TEST(DisciplineScenario, CppThatNobodyCompiledIsRemindedOfAndThenRefused)
{
	FScenario Scenario;
	Scenario
		.Answer(FAnswer::Call(TEXT("write_file"), TEXT("{\"path\":\"Source/Door.cpp\",\"content\":\"int Door;\\n\"}")))
		.Answer(Complete())
		.Answer(Complete());
	Scenario.Submit(TEXT("Write a door"));
	EXPECT_EQ(Scenario.DescribeHistory(),
		TEXT("user assistant tool cpp-compile-nudge assistant tool completion-rejected-no-compile assistant tool"));
	EXPECT_EQ(Scenario.Project.Read("Source/Door.cpp"), "int Door;\n");
	EXPECT_EQ(Scenario.Ends.Num(), 1);
}

TEST(DisciplineScenario, AModelThatRepeatsItselfIsStopped)
{
	FScenario Scenario;
	Scenario.Project.Write("Source/Door.cpp", "int Door;\n");
	for (int32 Index = 0; Index < 3; ++Index)
	{
		Scenario.Answer(FAnswer::Call(TEXT("read_file"), TEXT("{\"path\":\"Source/Door.cpp\"}")));
	}
	Scenario.Submit(TEXT("Read the door"));
	EXPECT_EQ(
		FString::Join(Scenario.Ends, TEXT("|")), TEXT("complete Agent stopped: detected repeated tool-call cycle."));
	EXPECT_EQ(Scenario.DescribeHistory(), TEXT("user assistant tool assistant tool assistant"));
}

TEST(DisciplineScenario, AnAnswerThatTheLimitCutIsToldOf)
{
	FScenario Scenario;
	FAnswer Cut = FAnswer::Call(TEXT("list_files"), TEXT("{\"path\":\"Source\"}"));
	Cut.Usage.bTruncated = true;
	Scenario.Answer(Cut).Answer(Complete());
	Scenario.Submit(TEXT("List"));
	EXPECT_EQ(Scenario.DescribeHistory(), TEXT("user output-truncated-0 assistant tool assistant tool"));
}

TEST(DisciplineScenario, APlanIsHeldUpOnceAndRestatedInEveryPrompt)
{
	FScenario Scenario;
	Scenario
		.Answer(FAnswer::Call(TEXT("update_todo_list"),
			TEXT("{\"todos\":[{\"id\":\"1\",\"content\":\"Frame\",\"status\":\"completed\"},{\"id\":\"2\",\"content\":"
				 "\"Hinge\",\"status\":\"pending\"}]}")))
		.Answer(Complete())
		.Answer(Complete());
	Scenario.Submit(TEXT("Write a door"));
	EXPECT_EQ(Scenario.DescribeHistory(),
		TEXT("user assistant tool assistant tool completion-rejected-todo-pending assistant tool"));
	const std::string Body = Scenario.Server.Requests()[1].Request.Body;
	EXPECT_NE(Body.find("## Current TODO list state (authoritative"), std::string::npos);
	EXPECT_NE(Body.find("- [pending] 2: Hinge"), std::string::npos);
	EXPECT_FALSE(Scenario.Task->GetTodoList().HasActiveItems()) << "the end of a task closes its plan";
}

TEST(DisciplineScenario, TwoRefusalsOfAnOverloadedVendorAreWaitedOut)
{
	FScenario Scenario;
	for (int32 Index = 0; Index < 2; ++Index)
	{
		Scenario.Answer(FLoopbackReply::Sized(429, "{\"error\":{\"type\":\"rate_limit_error\"}}"));
	}
	Scenario.Answer(Complete());
	Scenario.Submit(TEXT("Go"));
	EXPECT_EQ(Scenario.Server.RequestCount(), 3u);
	EXPECT_EQ(FString::Join(Scenario.Ends, TEXT("|")), TEXT("complete ") + Report);
	EXPECT_EQ(Scenario.DescribeHistory(), TEXT("user assistant tool"));
}

TEST(DisciplineScenario, ALostConnectionIsTriedFiveTimesMore)
{
	for (const int32 Losses : {5, 6})
	{
		FScenario Scenario;
		for (int32 Index = 0; Index < Losses; ++Index)
		{
			Scenario.Answer(
				FLoopbackReply::Events({FScenario::ToEvents(Complete())}).CutAt(0, FLoopbackReply::EEnd::Reset));
		}
		Scenario.Answer(Complete());
		Scenario.Submit(TEXT("Go"));
		EXPECT_EQ(Scenario.Loop().GetState(), Losses == 5 ? ECVXTaskState::Complete : ECVXTaskState::Cancelled);
		EXPECT_EQ(Scenario.Ends.Num(), Losses == 5 ? 1 : 0) << "the state alone tells that the line is dead";
	}
}

TEST(DisciplineScenario, AKeyThatTheVendorRefusesShowsNowhere)
{
	FScenario Scenario;
	FLogCapture Log;
	for (const int32 Status : {401, 400})
	{
		Scenario.Answer(FLoopbackReply::Sized(Status, "{\"error\":{\"message\":\"bad key sk-test-s3cret\"}}"));
		Scenario.Submit(TEXT("Go"));
	}
	ASSERT_EQ(Scenario.Ends.Num(), 2);
	EXPECT_TRUE(Scenario.Ends[0].StartsWith(TEXT("error **Authentication failed**")));
	EXPECT_FALSE(Scenario.Ends[1].Contains(TEXT("s3cret"))) << TCHAR_TO_UTF8(*Scenario.Ends[1]);
	EXPECT_FALSE(Log.Contains(TEXT("s3cret")));
}

TEST(DisciplineScenario, ASettingThatChangesTakesEffectAtTheNextRequest)
{
	FScenario Scenario;
	Scenario.Answer(FAnswer::Call(TEXT("list_files"), TEXT("{\"path\":\"Source\"}"))).Answer(Complete());
	Scenario.Loop().OnMessageComplete.AddLambda(
		[](const FCVXMessage& Message)
		{
			if (Message.Role == ECVXMessageRole::Tool)
			{
				UCVXSettings::Get()->ProviderProfiles[0].ModelId = TEXT("another-model");
				UCVXSettings::Get()->ProviderProfiles[0].bSupportsToolUse = false;
			}
		});
	Scenario.Submit(TEXT("Go"));
	const auto Requests = Scenario.Server.Requests();
	ASSERT_GE(Requests.size(), 2u);
	EXPECT_NE(Requests[1].Request.Body.find("another-model"), std::string::npos);
	EXPECT_EQ(Requests[1].Request.Body.find("\"tools\""), std::string::npos);
	EXPECT_EQ(Requests[1].Request.Body.find("tool_result"), std::string::npos);
	EXPECT_TRUE(Scenario.DescribeHistory().StartsWith(TEXT("user assistant tool"))) << "the history keeps them";
}
