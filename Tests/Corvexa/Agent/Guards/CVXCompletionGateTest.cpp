#include "Agent/Guards/CVXCompletionGate.h"

#include "Agent/Tasks/CVXTaskManager.h"
#include "Core/CVXSettings.h"
#include "Corvexa/Support/LoopRun.h"
#include "Support/HostTypePrinting.h"
#include "Tools/CVXToolRegistry.h"
#include "Tools/Conversation/CVXAttemptCompletionTool.h"

#include <gtest/gtest.h>

namespace
{
using FAnswer = FScriptedAnswer;

FAnswer Complete()
{
	return FAnswer::Call(TEXT("attempt_completion"), TEXT("{\"result\":\"All is done.\"}"));
}

/** The ids of what the run added behind the user's message. */
FString HistoryOf(FLoopRun& Run, const FString& Text = TEXT("Go"))
{
	Run.Submit(Text);
	return Run.DescribeHistory();
}
} // namespace

TEST(CVXCompletionGate, CompileErrorsRefuseACompletionFiveTimes)
{
	FLoopRun Run;
	FScriptedTool::Register(TEXT("compile_blueprints"), TEXT("BP_Door: pin A is broken"), true);
	for (int32 Index = 0; Index < 5; ++Index)
	{
		// The completion stands in the turn of the failure, so that no retry comes between.
		FAnswer Answer = FAnswer::Call(TEXT("compile_blueprints"), FString::Printf(TEXT("{\"n\":%d}"), Index));
		Run.Model->Then(Index == 0 ? Answer : Complete());
	}
	Run.Model->Otherwise = [](const FCVXProviderRequest&) { return Complete(); };
	EXPECT_EQ(HistoryOf(Run),
		TEXT("user assistant tool auto-retry-1 assistant tool completion-rejected-2 assistant tool "
			 "completion-rejected-3 "
			 "assistant tool completion-rejected-4 assistant tool completion-rejected-5 assistant tool"));
	EXPECT_EQ(Run.Loop->GetState(), ECVXTaskState::Complete);
	EXPECT_EQ(Run.TextOf(TEXT("auto-retry-1")),
		TEXT("[Auto-retry 1/5] Compilation errors:\ncompile_blueprints: BP_Door: pin A is broken\n\nFix these specific "
			 "errors and recompile. Do NOT delete and recreate — fix in place."));
	EXPECT_EQ(Run.TextOf(TEXT("completion-rejected-2")),
		TEXT("[Completion rejected 2/5] Unresolved compilation errors:\n(see tool results above)\nFix all errors and "
			 "recompile successfully before calling attempt_completion."));
}

TEST(CVXCompletionGate, ValidationProblemsRefuseOnceAndKeepTheTurnsResultsOut)
{
	FLoopRun Run;
	FScriptedTool::Register(TEXT("compile_and_check"), TEXT("ok\n--- Logical Validation ---\npin A hangs"));
	Run.Model->Then(FAnswer::Call(TEXT("compile_and_check"), TEXT("{}"))).Then(Complete()).Then(Complete());
	EXPECT_EQ(HistoryOf(Run), TEXT("user assistant tool assistant validation-block assistant tool"));
	EXPECT_EQ(Run.Model->Requests.Last().Messages.Num(), 4) << "the call that got no result isn't sent";
	EXPECT_EQ(Run.Loop->GetState(), ECVXTaskState::Complete);
}

TEST(CVXCompletionGate, CppThatWasNotCompiledRefusesUntilItIs)
{
	FLoopRun Run;
	FScriptedTool::Register(TEXT("edit_file"), TEXT("edited"), false, false);
	FScriptedTool::Register(TEXT("live_coding_compile"), TEXT("compiled"), false, false);
	Run.Model->Then(FAnswer::Call(TEXT("edit_file"), TEXT("{\"path\":\"Source/A.CPP\"}")))
		.Then(Complete())
		.Then(FAnswer::Call(TEXT("live_coding_compile"), TEXT("{}")))
		.Then(Complete());
	EXPECT_EQ(HistoryOf(Run),
		TEXT("user assistant tool cpp-compile-nudge assistant tool completion-rejected-no-compile assistant tool "
			 "assistant "
			 "tool"));
	EXPECT_EQ(FString::Join(Run.Loop->GetGuardState().CompletedWork, TEXT("|")),
		TEXT("edit_file: Source/A.CPP|live_coding_compile: (completed)"));
}

TEST(CVXCompletionGate, AFailedSiblingDropsTheCompletionWithoutAWord)
{
	FLoopRun Run;
	FScriptedTool::Register(TEXT("write_file"), TEXT("disk full"), true, false);
	FAnswer Both = FAnswer::Call(TEXT("write_file"), TEXT("{}"));
	Run.Model->Then(Both.And(TEXT("attempt_completion"), TEXT("{\"result\":\"All is done.\"}"))).Then(Complete());
	EXPECT_EQ(HistoryOf(Run), TEXT("user assistant tool assistant tool"));
}

TEST(CVXCompletionGate, ASubAgentMustHaveWorked)
{
	FLoopRun Run;
	Run.Loop->SubAgentDepth = 1;
	Run.Model->Then(Complete()).Then(FAnswer::Call(TEXT("git_commit"), TEXT("{}"))).Then(Complete());
	FScriptedTool::Register(TEXT("git_commit"), TEXT("committed"), false, false);
	EXPECT_EQ(HistoryOf(Run), TEXT("user assistant tool completion-rejected-no-work assistant tool assistant tool"));
}

TEST(CVXCompletionGate, ASubAgentThatOnlyReadsNeedNotHaveWorked)
{
	FLoopRun Reader;
	Reader.Profile.bReadOnly = true;
	Reader.MakeLoop();
	Reader.Loop->SubAgentDepth = 1;
	Reader.Model->Then(Complete());
	EXPECT_EQ(HistoryOf(Reader), TEXT("user assistant tool"));
}

TEST(CVXCompletionGate, ASubAgentWhosePythonAllFailedMayCompleteOnlyTheSecondTime)
{
	FLoopRun Run;
	Run.Loop->SubAgentDepth = 1;
	int32 Calls = 0;
	FScriptedTool::Register(
		TEXT("execute_python"),
		[&](const FString&) { return MakeToolResult(FString::Printf(TEXT("line %d\nSyntaxError: bad"), ++Calls)); },
		false);
	for (int32 Index = 0; Index < 3; ++Index)
	{
		Run.Model->Then(FAnswer::Call(TEXT("execute_python"), FString::Printf(TEXT("{\"n\":%d}"), Index)));
	}
	Run.Model->Then(Complete()).Then(Complete());
	EXPECT_EQ(HistoryOf(Run),
		TEXT("user assistant tool assistant tool assistant tool verify-hint assistant tool "
			 "completion-rejected-all-python-failed assistant tool"))
		<< "a syntax error alone starts no retry, and counts as a failed call";
}

TEST(CVXCompletionGate, OpenTodoItemsRefuseOnceInALoopsLife)
{
	FLoopRun Run;
	// A task that the manager knows has a plan; its loop takes its model from the run.
	UCVXSettings::Get()->ProviderProfiles.Add(FCVXProviderProfile());
	const TSharedPtr<FCVXTask> Task = FCVXTaskManager::Get().CreateNewTask(TEXT("Test"));
	ASSERT_TRUE(Task);
	FCVXGuardState State;
	FCVXContextManager Context(200000);
	const TArray<FCVXToolCall> Calls;
	const TArray<FCVXCompletedToolResult> Results;
	FCVXGuardContext Guard{State, Context, Run.Profile, Calls, Results};
	Guard.TodoList = &Task->GetTodoList();
	Task->GetTodoList().UpdateFromJson(TEXT("[{\"id\":\"1\",\"content\":\"Only one\",\"status\":\"pending\"}]"));
	EXPECT_EQ(CVXCompletionGate::Judge(Guard).Kind, FCVXGateVerdict::EKind::Accept);
	Task->GetTodoList().UpdateFromJson(
		TEXT("[{\"id\":\"1\",\"content\":\"Door\",\"status\":\"completed\"},{\"id\":\"2\","
			 "\"content\":\"Key\",\"status\":\"in_progress\"}]"));
	const FCVXGateVerdict Verdict = CVXCompletionGate::Judge(Guard);
	EXPECT_EQ(Verdict.Tag, TEXT("completion-rejected-todo-pending"));
	EXPECT_TRUE(Verdict.Message.StartsWith(
		TEXT("[Completion blocked] Your TODO list has 1/2 items NOT completed:\n  - [in_progress] 2: Key\nYou MUST")));
	EXPECT_EQ(CVXCompletionGate::Judge(Guard).Kind, FCVXGateVerdict::EKind::Accept);
	State.bTodoGateFired = false;
	Run.Profile.bReadOnly = true;
	EXPECT_EQ(CVXCompletionGate::Judge(Guard).Kind, FCVXGateVerdict::EKind::Accept);
	FCVXTaskManager::Get().RemoveTask(Task->GetTaskId());
}
