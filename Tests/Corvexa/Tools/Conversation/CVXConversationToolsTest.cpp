#include "Agent/Tasks/CVXTaskManager.h"
#include "Core/CVXSettings.h"
#include "Support/HostTypePrinting.h"
#include "Support/LoopPump.h"
#include "Support/TempProject.h"
#include "Support/TestClock.h"
#include "Tools/Conversation/CVXAskFollowupQuestionTool.h"
#include "Tools/Conversation/CVXAttemptCompletionTool.h"
#include "Tools/Conversation/CVXDelegateToAgentTool.h"
#include "Tools/Conversation/CVXForkConversationTool.h"
#include "Tools/Conversation/CVXUpdateTodoListTool.h"

#include <gtest/gtest.h>

namespace
{
template <typename ToolType>
FCVXToolExecutionResult Call(const FString& Arguments)
{
	return ToolType().Execute(Arguments, FCVXAgentProfile());
}

FCVXToolExecutionResult Finish(const FString& Result)
{
	return Call<FCVXAttemptCompletionTool>(FString::Printf(TEXT("{\"result\":\"%s\"}"), *Result));
}

FString Repeat(const TCHAR* Text, int32 Times)
{
	FString Result;
	for (int32 Index = 0; Index < Times; ++Index)
	{
		Result += Text;
	}
	return Result;
}

/** A project, a running host and one active conversation. */
class CVXConversationTools : public testing::Test
{
protected:
	CVXConversationTools() { Task = FCVXTaskManager::Get().CreateNewTask(TEXT("Test")); }
	~CVXConversationTools() override { FCVXTaskManager::Get().RemoveTask(Task->GetTaskId()); }

	FTempProject Project;
	FLoopPump Pump;
	TSharedPtr<FCVXTask> Task;
};

TEST_F(CVXConversationTools, ACompletionTellsWhatWasDoneAndAsksNothing)
{
	EXPECT_TRUE(Finish(Repeat(TEXT("x"), 19)).bIsError);
	const FCVXToolExecutionResult Accepted = Finish(Repeat(TEXT("x"), 20) + TEXT(" "));
	EXPECT_TRUE(Accepted.bIsCompletion);
	EXPECT_EQ(Accepted.Output, Repeat(TEXT("x"), 20) + TEXT(" "));

	const FString Long = Repeat(TEXT("x"), 300);
	EXPECT_TRUE(Finish(TEXT("Why? How? ") + Long).bIsCompletion) << "questions far from the end are part of the report";
	EXPECT_TRUE(Finish(Long + TEXT("why? Because.")).bIsCompletion);
	EXPECT_TRUE(Finish(Long + TEXT("why? how? Because.")).bIsError);
	const FCVXToolExecutionResult Asked = Finish(Long + TEXT("shall I?  "));
	EXPECT_TRUE(Asked.bIsError);
	EXPECT_FALSE(Asked.bIsCompletion);
	EXPECT_TRUE(Asked.Output.StartsWith(TEXT("Your completion result contains questions")));
	EXPECT_EQ(Call<FCVXAttemptCompletionTool>(TEXT("[]")).Output, TEXT("Invalid JSON input."));
	EXPECT_EQ(Call<FCVXAttemptCompletionTool>(TEXT("")).Output, TEXT("Empty JSON input."));
}

TEST_F(CVXConversationTools, QuestionsAreReadFromEitherFormAndOptionsFromTextsAndObjects)
{
	FCVXToolExecutionResult Result = Call<FCVXAskFollowupQuestionTool>(TEXT(
		"{\"question\":\"unused\",\"questions\":[7,{\"question\":\"\"},{\"question\":\"Colour?\",\"options\":[\"Red\",{"
		"\"title\":\"Blue\",\"description\":\"as the sky\"},{\"description\":\"no title\"},5,\"\"]},{\"question\":"
		"\"Name?\"}]}"));
	EXPECT_TRUE(Result.bHasQuestions);
	EXPECT_EQ(Result.Output, TEXT("Waiting for user selection..."));
	ASSERT_EQ(Result.Questions.Num(), 2);
	ASSERT_EQ(Result.Questions[0].Options.Num(), 2);
	EXPECT_EQ(Result.Questions[0].Options[0].Title, TEXT("Red"));
	EXPECT_EQ(Result.Questions[0].Options[1].Description, TEXT("as the sky"));

	Result = Call<FCVXAskFollowupQuestionTool>(TEXT("{\"question\":\"Name?\",\"questions\":[]}"));
	EXPECT_FALSE(Result.bHasQuestions);
	EXPECT_EQ(Result.Output, TEXT("Question asked: Name?"));
	EXPECT_EQ(Call<FCVXAskFollowupQuestionTool>(TEXT("{}")).Output,
		TEXT("No question provided. Specify 'question' or 'questions'."));
}

TEST_F(CVXConversationTools, APlanIsReplacedWholeAndHastyCallsAreWarnedOf)
{
	FTestClock Clock;
	Clock.Advance(1000.0);
	const FString Plan = TEXT("{\"todos\":[{\"id\":\"1\",\"content\":\"Door\",\"status\":\"COMPLETED\"},{\"id\":\"2\","
							  "\"content\":\"Key\",\"status\":\"done\"},3]}");
	EXPECT_EQ(Call<FCVXUpdateTodoListTool>(Plan).Output,
		TEXT("TODO list updated: 1 pending, 0 in-progress, 1 completed, 0 cancelled."));
	Clock.Advance(30.0);
	EXPECT_TRUE(Call<FCVXUpdateTodoListTool>(TEXT("{\"todos\":[]}"))
					.Output.StartsWith(TEXT("WARNING: You called update_todo_list again after only 30 seconds.")));
	EXPECT_TRUE(Task->GetTodoList().GetItems().IsEmpty()) << "the list was replaced all the same";
	Clock.Advance(90.0);
	EXPECT_TRUE(Call<FCVXUpdateTodoListTool>(Plan).Output.StartsWith(TEXT("TODO list updated")));
	EXPECT_EQ(Call<FCVXUpdateTodoListTool>(TEXT("{\"todos\":\"x\"}")).Output, TEXT("Missing required field: todos"));

	int32 Changes = 0;
	FCVXTodoList& List = Task->GetTodoList();
	List.OnChanged.AddLambda([&] { ++Changes; });
	FCVXTodoList Copy;
	Copy.UpdateFromJson(List.ToJson());
	EXPECT_EQ(Copy.ToJson(), List.ToJson());
	List.UpdateFromJson(TEXT("not json"));
	EXPECT_EQ(Changes, 0);
	List.MarkInProgressAsCompleted();
	List.MarkInProgressAsCompleted();
	EXPECT_EQ(Changes, 1);
	EXPECT_FALSE(List.HasActiveItems());
}

TEST_F(CVXConversationTools, ADelegationNamesAnAgentThatExistsAndKeepsItsBounds)
{
	EXPECT_EQ(Call<FCVXDelegateToAgentTool>(TEXT("{\"agent_profile\":3,\"task\":\"x\"}")).Output,
		TEXT("'agent_profile' is required and must be a non-empty string."));
	EXPECT_EQ(Call<FCVXDelegateToAgentTool>(TEXT("{\"agent_profile\":\"Coder\"}")).Output,
		TEXT("'task' is required and must be a non-empty string."));
	EXPECT_TRUE(Call<FCVXDelegateToAgentTool>(TEXT("{\"agent_profile\":\"orchestrator\",\"task\":\"x\"}"))
					.Output.StartsWith(TEXT("Cannot delegate to 'Orchestrator'.")));
	EXPECT_EQ(Call<FCVXDelegateToAgentTool>(TEXT("{\"agent_profile\":\"Ghost\",\"task\":\"x\"}")).Output,
		TEXT("Agent profile 'Ghost' not found. Available: ") +
			FString::Join(UCVXSettings::Get()->GetAgentProfileNames(), TEXT(", ")) + TEXT(", "));

	FCVXToolExecutionResult Result = Call<FCVXDelegateToAgentTool>(
		TEXT("{\"agent_profile\":\"coder\",\"task\":\"x\",\"max_turns\":1000,\"timeout_seconds\":10}"));
	EXPECT_TRUE(Result.bIsDelegation);
	EXPECT_EQ(Result.DelegateMaxTurns, 150);
	EXPECT_EQ(Result.DelegateTimeoutSeconds, 60.0f);
	Result = Call<FCVXDelegateToAgentTool>(TEXT("{\"agent_profile\":\"Coder\",\"task\":\"x\"}"));
	EXPECT_EQ(Result.DelegateMaxTurns, 75);
	EXPECT_EQ(Result.DelegateTimeoutSeconds, 0.0f);
}

TEST_F(CVXConversationTools, AForkTakesTheFirstMessagesAndStaysInactive)
{
	for (const TCHAR* Text : {TEXT("a"), TEXT("b"), TEXT("c")})
	{
		Task->GetAgentLoop()->GetContextManager().AddMessage(FCVXMessage::MakeUserText(Text));
	}
	EXPECT_EQ(Call<FCVXForkConversationTool>(TEXT("{}")).Output, TEXT("'task_id' is required."));
	EXPECT_TRUE(Call<FCVXForkConversationTool>(TEXT("{\"task_id\":\"ghost\"}")).bIsError);
	const FString Begin = FString::Printf(TEXT("{\"task_id\":\"%s\",\"message_count\":"), *Task->GetTaskId());
	EXPECT_TRUE(
		Call<FCVXForkConversationTool>(Begin + TEXT("2}")).Output.Contains(TEXT("('Fork of Test') with 2 messages")));
	EXPECT_TRUE(Call<FCVXForkConversationTool>(Begin + TEXT("0}")).Output.Contains(TEXT("with 3 messages")));
	EXPECT_EQ(FCVXTaskManager::Get().GetActiveTask(), Task);
	const TArray<TSharedPtr<FCVXTask>> Tasks = FCVXTaskManager::Get().GetAllTasks();
	ASSERT_EQ(Tasks.Num(), 3);
	FCVXTaskManager::Get().RemoveTask(Tasks[1]->GetTaskId());
	FCVXTaskManager::Get().RemoveTask(Tasks[2]->GetTaskId());
}
} // namespace
