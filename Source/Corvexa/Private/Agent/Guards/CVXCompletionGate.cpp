#include "Agent/Guards/CVXCompletionGate.h"

#include "Agent/CVXAgentLog.h"
#include "Agent/Guards/CVXGuardContext.h"
#include "Agent/Guards/CVXToolOutcome.h"
#include "Agent/Tasks/CVXTodoList.h"
#include "Algo/AnyOf.h"
#include "Core/CVXProfiles.h"
#include "Misc/Optional.h"

namespace
{
/** Python calls that must have been made before their failing altogether counts. */
constexpr int32 MinPythonCalls = 3;
/** A shorter plan isn't held against a completion. */
constexpr int32 MinTodoItems = 2;

using FObjection = TOptional<FCVXGateVerdict>;

FCVXGateVerdict Refuse(const FString& Message, const FString& Tag)
{
	return {FCVXGateVerdict::EKind::Refuse, Message, Tag, true};
}

FObjection CheckCompileErrors(FCVXGuardContext& Context)
{
	FCVXGuardState& State = Context.State;
	if (!State.bCompileErrorsOpen || State.SelfHealRetries >= CVXCompletionGate::MaxCompileRejections)
	{
		return {};
	}
	++State.SelfHealRetries;
	State.RecentCallHashes.Empty();
	UE_LOG(LogCVXAgentLoop, Warning, TEXT("attempt_completion rejected: unresolved compile errors (retry %d/%d)"),
		State.SelfHealRetries, CVXCompletionGate::MaxCompileRejections);
	return Refuse(
		FString::Printf(
			TEXT("[Completion rejected %d/%d] Unresolved compilation errors:\n%s\nFix all errors and recompile "
				 "successfully before calling attempt_completion."),
			State.SelfHealRetries, CVXCompletionGate::MaxCompileRejections,
			*CVXToolOutcome::GatherErrors(Context.Results, false)),
		FString::Printf(TEXT("completion-rejected-%d"), State.SelfHealRetries));
}

FObjection CheckValidation(FCVXGuardContext& Context)
{
	if (!Context.State.bValidationProblemsOpen)
	{
		return {};
	}
	Context.State.bValidationProblemsOpen = false;
	UE_LOG(LogCVXAgentLoop, Warning, TEXT("attempt_completion blocked: unresolved validation problems"));
	FCVXGateVerdict Verdict = Refuse(
		TEXT("[Completion blocked] Blueprint logical validation found problems (disconnected pins, orphan nodes, "
			 "empty functions, etc.).\nRun compile_and_check again to see current issues, fix them all, then "
			 "re-validate until 'all graphs OK'. Only then call attempt_completion."),
		TEXT("validation-block"));
	Verdict.bKeepResults = false;
	return Verdict;
}

FObjection CheckCppCompiled(FCVXGuardContext& Context)
{
	FCVXGuardState& State = Context.State;
	if (!State.bCppWritten || State.bCppCompiled)
	{
		return {};
	}
	State.bCppWritten = false;
	UE_LOG(LogCVXAgentLoop, Warning, TEXT("attempt_completion blocked: C++ files written but not compiled"));
	return Refuse(
		TEXT("[Completion blocked] You created or modified C++ files (.h/.cpp) but did NOT compile them. "
			 "Uncompiled C++ code is not usable in the editor — the changes only exist on disk.\nYou MUST call "
			 "live_coding_compile (or hot_reload) and verify the compilation succeeds before calling "
			 "attempt_completion. If there are compile errors, fix them first."),
		TEXT("completion-rejected-no-compile"));
}

FObjection CheckSiblings(FCVXGuardContext& Context)
{
	const bool bFailed = Algo::AnyOf(Context.Results,
		[](const FCVXCompletedToolResult& Result)
		{ return Result.bIsError && Result.ToolName != TEXT("attempt_completion"); });
	return bFailed ? FObjection(FCVXGateVerdict{FCVXGateVerdict::EKind::Drop, {}, {}, true}) : FObjection();
}

FObjection CheckSubAgentWorked(FCVXGuardContext& Context)
{
	if (Context.SubAgentDepth <= 0 || Context.State.bHadSideEffects || Context.Profile.bReadOnly)
	{
		return {};
	}
	UE_LOG(LogCVXAgentLoop, Warning, TEXT("attempt_completion rejected: sub-agent at depth %d had no side effects"),
		Context.SubAgentDepth);
	return Refuse(
		TEXT("[Completion rejected] You called attempt_completion but did NOT perform any actual work — no files "
			 "written, no Python executed, no assets created. You MUST use write_file to create C++ files or "
			 "execute_python to create Blueprint assets. Describing what you WOULD do is not the same as doing "
			 "it. Do the work, then complete."),
		TEXT("completion-rejected-no-work"));
}

FObjection CheckSubAgentPython(FCVXGuardContext& Context)
{
	FCVXGuardState& State = Context.State;
	if (Context.SubAgentDepth <= 0 || State.PythonCallCount < MinPythonCalls ||
		State.PythonCallCount != State.PythonFailCount)
	{
		return {};
	}
	const int32 Calls = State.PythonCallCount;
	State.PythonCallCount = 0;
	State.PythonFailCount = 0;
	UE_LOG(LogCVXAgentLoop, Warning,
		TEXT("attempt_completion rejected: all %d execute_python calls failed (sub-agent depth %d)"), Calls,
		Context.SubAgentDepth);
	return Refuse(
		FString::Printf(
			TEXT("[Completion rejected] All %d execute_python calls in this session failed with errors. None of "
				 "the intended assets were actually created. Review the errors, fix the root cause, and "
				 "successfully create at least one asset before calling attempt_completion. If you cannot fix "
				 "the errors after multiple attempts, call attempt_completion with an HONEST result explaining "
				 "what failed and why."),
			Calls),
		TEXT("completion-rejected-all-python-failed"));
}

FString ListOpenItems(const TArray<FCVXTodoItem>& Items, int32& OutCount)
{
	FString Text;
	for (const FCVXTodoItem& Item : Items)
	{
		if (FCVXTodoList::IsOpen(Item.Status))
		{
			++OutCount;
			Text += FString::Printf(
				TEXT("  - [%s] %s: %s\n"), *FCVXTodoList::StatusToString(Item.Status), *Item.Id, *Item.Content);
		}
	}
	return Text;
}

FObjection CheckTodoList(FCVXGuardContext& Context)
{
	if (Context.State.bTodoGateFired || Context.Profile.bReadOnly || !Context.TodoList)
	{
		return {};
	}
	const TArray<FCVXTodoItem>& Items = Context.TodoList->GetItems();
	int32 OpenCount = 0;
	const FString OpenItems = ListOpenItems(Items, OpenCount);
	if (Items.Num() < MinTodoItems || OpenCount == 0)
	{
		return {};
	}
	Context.State.bTodoGateFired = true;
	UE_LOG(LogCVXAgentLoop, Warning, TEXT("attempt_completion blocked: %d/%d TODO items still pending"), OpenCount,
		Items.Num());
	return Refuse(
		FString::Printf(TEXT("[Completion blocked] Your TODO list has %d/%d items NOT completed:\n%sYou MUST "
							 "complete all TODO items before calling attempt_completion.\nIf an item is no longer "
							 "needed, mark it cancelled in update_todo_list.\nNEVER claim work is done when TODO "
							 "items are still pending — the user will see unfinished work and lose trust."),
			OpenCount, Items.Num(), *OpenItems),
		TEXT("completion-rejected-todo-pending"));
}

/** In the order in which they are asked. */
constexpr FObjection (*Rules[])(FCVXGuardContext&) = {CheckCompileErrors, CheckValidation, CheckCppCompiled,
	CheckSiblings, CheckSubAgentWorked, CheckSubAgentPython, CheckTodoList};
} // namespace

FCVXGateVerdict CVXCompletionGate::Judge(FCVXGuardContext& Context)
{
	for (const auto Rule : Rules)
	{
		if (const FObjection Objection = Rule(Context))
		{
			return *Objection;
		}
	}
	return {};
}
