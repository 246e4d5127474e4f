#include "Agent/Guards/CVXNudges.h"

#include "Agent/CVXAgentLog.h"
#include "Agent/Guards/CVXGuardContext.h"

void CVXNudges::AskForToolCall(FCVXGuardContext& Context)
{
	UE_LOG(LogCVXAgentLoop, Warning,
		TEXT("No tool calls in response — nudging model to use attempt_completion or ask_followup_question."));
	Context.AddHidden(
		TEXT("[SYSTEM] You responded with text but did not call any tool. You MUST use attempt_completion to "
			 "present your final result, or ask_followup_question if you need user input. Do NOT write plain "
			 "text without a tool call."),
		TEXT("no-tool-nudge"));
}

void CVXNudges::WarnOfTruncation(FCVXGuardContext& Context)
{
	Context.AddHidden(
		TEXT("[WARNING] Your previous response was truncated because it exceeded the output token limit. Any "
			 "tool calls or text at the end may be incomplete. Please continue where you left off, keeping "
			 "your response shorter."),
		FString::Printf(TEXT("output-truncated-%d"), Context.TurnCount));
}

void CVXNudges::RemindToCompileCpp(FCVXGuardContext& Context)
{
	FCVXGuardState& State = Context.State;
	if (!State.bCppWritten || State.bCppCompiled || State.bCppNudgeSent)
	{
		return;
	}
	State.bCppNudgeSent = true;
	Context.AddHidden(TEXT("[Reminder] You wrote C++ files (.h/.cpp) that are NOT yet compiled. Call "
						   "live_coding_compile (or hot_reload) "
						   "and verify compilation succeeds BEFORE calling attempt_completion. Uncompiled C++ code "
						   "exists only on disk — "
						   "the editor cannot use it until it is compiled."),
		TEXT("cpp-compile-nudge"));
	UE_LOG(LogCVXAgentLoop, Log, TEXT("C++ compile nudge injected (proactive)"));
}

void CVXNudges::WarnOfTurnBudget(FCVXGuardContext& Context)
{
	const int32 Used = Context.TurnCount;
	const int32 Limit = Context.MaxTurns;
	if (Limit <= 0 || Used < static_cast<int64>(Limit) * 3 / 4 || Context.State.bTurnBudgetWarned)
	{
		return;
	}
	Context.State.bTurnBudgetWarned = true;
	Context.AddHidden(
		FString::Printf(
			TEXT("[Turn budget] %d/%d turns used — only %d turns remaining. Prioritise finishing the core task: "
				 "skip polish, batch tool calls where possible, and call attempt_completion as soon as the "
				 "primary goal is achieved."),
			Used, Limit, Limit - Used),
		TEXT("turn-budget-warning"));
	UE_LOG(LogCVXAgentLoop, Log, TEXT("Turn budget warning injected: %d/%d turns used (%d remaining)"), Used, Limit,
		Limit - Used);
}
