#include "Agent/Tasks/CVXDelegationHistory.h"
#include "Core/CVXSettings.h"
#include "Corvexa/Scenarios/Scenario.h"
#include "Support/HostTypePrinting.h"

#include <gtest/gtest.h>

namespace
{
using FAnswer = FScriptedAnswer;

FAnswer Complete(const FString& Result)
{
	return FAnswer::Call(TEXT("attempt_completion"), FString::Printf(TEXT("{\"result\":\"%s\"}"), *Result));
}

FAnswer Delegate(const FString& Task, const FString& Id = TEXT("d1"))
{
	return FAnswer::Call(TEXT("delegate_to_agent"),
		FString::Printf(
			TEXT("{\"agent_profile\":\"coder\",\"task\":\"%s\",\"context\":\"Oak wood.\",\"max_turns\":150}"), *Task),
		Id);
}

const FString DoorTask = TEXT("Carve the hinged oak door");
} // namespace

TEST(DelegationScenario, ASubAgentWorksAndReportsAndItsWorkIsNotGivenOutAgain)
{
	FScenario Scenario;
	Scenario.Project.Write("Config/Old.ini", "[A]\n");
	Scenario.Answer(Delegate(DoorTask))
		.Answer(FAnswer::Call(TEXT("write_file"), TEXT("{\"path\":\"Config/Door.ini\",\"content\":\"[Door]\\n\"}")))
		.Answer(Complete(TEXT("Wrote Config/Door.ini with the door.")))
		.Answer(Delegate(TEXT("carve an oak door, hinged"), TEXT("d2")))
		.Answer(Complete(TEXT("The door is in Config/Door.ini.")));
	TArray<FString> Active;
	FCVXTaskManager::Get().OnActiveTaskChanged.AddLambda(
		[&](TSharedPtr<FCVXTask> Task) { Active.Add(Task ? Task->GetTitle() : TEXT("none")); });
	Scenario.Submit(TEXT("Make a door"));
	ASSERT_TRUE(Scenario.Pump.Until([&] { return Scenario.Ends.Num() == 1; }));
	FCVXTaskManager::Get().OnActiveTaskChanged.Clear();

	EXPECT_EQ(Scenario.Project.Read("Config/Door.ini"), "[Door]\n");
	EXPECT_EQ(Scenario.DescribeHistory(), TEXT("user assistant tool assistant tool assistant tool"));
	const TArray<FCVXMessage>& History = Scenario.Loop().GetContextManager().GetHistory();
	EXPECT_EQ(History[2].Content[0].ToolResultContent,
		TEXT("[DELEGATION COMPLETE — Status: SUCCESS]\nWrote Config/Door.ini with the door.\n[END DELEGATION RESULT]"));
	EXPECT_TRUE(History[4].Content[0].ToolResultContent.StartsWith(
		TEXT("DELEGATION BLOCKED — this work was already completed:\nAgent: coder\nOriginal task: Carve")));
	EXPECT_EQ(FString::Join(Active, TEXT("|")), DoorTask + TEXT("|Scenario"));

	const TArray<TSharedPtr<FCVXTask>>& Tasks = FCVXTaskManager::Get().GetAllTasks();
	ASSERT_EQ(Tasks.Num(), 2);
	EXPECT_EQ(Tasks[1]->GetAgentLoop()->MaxTurns, 100);
	EXPECT_EQ(Tasks[1]->GetAgentLoop()->SubAgentDepth, 1);
	EXPECT_EQ(Tasks[1]->ParentTaskId, Scenario.Task->GetTaskId());
	const FString First = Tasks[1]->GetAgentLoop()->GetContextManager().GetHistory()[0].GetFirstTextContent();
	EXPECT_TRUE(First.StartsWith(DoorTask + TEXT("\n\n## Context\nOak wood.\n\n## Recently created/modified files")));
	EXPECT_TRUE(First.Contains(TEXT("\n- Config/Old.ini\n")));
	const std::string Body = Scenario.Server.Requests()[3].Request.Body;
	EXPECT_NE(Body.find("1. [coder -> SUCCESS] Wrote Config/Door.ini"), std::string::npos);
}

TEST(DelegationScenario, ASubAgentThatFailsOrIsCancelledResolvesItsCall)
{
	FScenario Scenario;
	Scenario.Answer(Delegate(DoorTask)).Answer(FLoopbackReply::Sized(400, "bad"));
	Scenario.Answer(Delegate(DoorTask, TEXT("d2"))).Answer(FLoopbackReply::Silence());
	Scenario.Loop().SubmitUserMessage(TEXT("Make a door"));
	ASSERT_TRUE(Scenario.Pump.Until([&] { return Scenario.Server.RequestCount() == 4; }));
	EXPECT_TRUE(Scenario.LastToolResult().StartsWith(TEXT("[DELEGATION COMPLETE — Status: ERROR]\nSub-agent error: ")));

	Scenario.Answer(Complete(TEXT("The door could not be made.")));
	const TSharedPtr<FCVXTask> Child = FCVXTaskManager::Get().GetActiveTask();
	ASSERT_NE(Child, Scenario.Task);
	Child->GetAgentLoop()->Cancel();
	ASSERT_TRUE(Scenario.Pump.Until([&] { return Scenario.Ends.Num() == 1; }));
	EXPECT_EQ(Child->GetCompletionMessage(), TEXT("Sub-agent was cancelled."));
	EXPECT_EQ(FCVXTaskManager::Get().GetActiveTask(), Scenario.Task);
	EXPECT_EQ(FCVXDelegationHistory::Get().GetRecords(Scenario.Loop().GetLoopId()).Num(), 2);
}

TEST(DelegationScenario, ASubAgentThatTakesTooLongIsResolvedWithoutIt)
{
	FScenario Scenario;
	Scenario.Answer(Delegate(DoorTask)).Answer(FLoopbackReply::Silence());
	Scenario.Loop().SubmitUserMessage(TEXT("Make a door"));
	ASSERT_TRUE(Scenario.Pump.Until([&] { return Scenario.Server.RequestCount() == 2; }));
	EXPECT_EQ(Scenario.Loop().GetState(), ECVXTaskState::WaitingForSubAgent);
	Scenario.Answer(Complete(TEXT("The door could not be made.")));
	for (int32 Second = 0; Second < 905 && Scenario.Loop().GetState() == ECVXTaskState::WaitingForSubAgent; ++Second)
	{
		Scenario.Clock.Advance(1.01);
		Scenario.Pump.Tick();
	}
	ASSERT_TRUE(Scenario.Pump.Until([&] { return Scenario.Ends.Num() >= 1; }));
	const TArray<FCVXMessage>& History = Scenario.Loop().GetContextManager().GetHistory();
	EXPECT_TRUE(
		History[2].Content[0].ToolResultContent.Contains(TEXT("Sub-agent timed out before completing the task.")));
	FCVXTaskManager::Get().GetAllTasks()[1]->GetAgentLoop()->Interrupt();
}

TEST(DelegationScenario, OverlapCountsTheNewTasksWords)
{
	using FHistory = FCVXDelegationHistory;
	EXPECT_EQ(FHistory::GetOverlap(TEXT("carve door and window and roof"), TEXT("Carve, door")), 1.0f);
	EXPECT_EQ(FHistory::GetOverlap(TEXT("carve door"), TEXT("paint door")), 0.5f);
	EXPECT_EQ(FHistory::GetOverlap(TEXT("create the game project"), TEXT("create a new game")), 0.0f);
}
