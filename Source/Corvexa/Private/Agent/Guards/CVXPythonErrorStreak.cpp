#include "Agent/Guards/CVXPythonErrorStreak.h"

#include "Agent/CVXAgentLog.h"
#include "Agent/Guards/CVXGuardContext.h"
#include "Agent/Guards/CVXToolOutcome.h"
#include "Algo/AnyOf.h"

namespace
{
/** Failing turns in a row that bring the warning. */
constexpr int32 MaxStreak = 5;
} // namespace

void CVXPythonErrorStreak::Update(FCVXGuardContext& Context, const FCVXTurnFindings& Findings)
{
	FCVXGuardState& State = Context.State;
	if (!Findings.bPythonError)
	{
		if (Algo::AnyOf(Context.Results, CVXToolOutcome::IsPython))
		{
			State.PythonErrorStreak = 0;
		}
		return;
	}
	++State.PythonErrorStreak;
	if (State.PythonErrorStreak < MaxStreak || State.bDiversityWarned)
	{
		return;
	}
	State.bDiversityWarned = true;
	Context.AddHidden(
		FString::Printf(
			TEXT(
				"[Error-loop warning] execute_python has produced errors %d turns in a row. You are likely stuck on an "
				"approach that does not work. STOP retrying the same pattern. You MUST do one of:\n1) Use "
				"ask_followup_question to ask the user for help — propose specific alternative approaches as options "
				"so "
				"the user can choose (e.g. 'Option A: use C++ instead', 'Option B: skip this feature', 'Option C: try "
				"different API')\n2) Use a completely different API or approach on your own\n3) Skip this task and "
				"move "
				"on to the next TODO item\n4) Call attempt_completion with what you have so far\nOption 1 "
				"(ask_followup_question) is PREFERRED — the user can guide you."),
			State.PythonErrorStreak),
		TEXT("diversity-warning"));
	UE_LOG(LogCVXAgentLoop, Warning,
		TEXT("Error-loop: execute_python errors %d consecutive turns — injected stop hint"), State.PythonErrorStreak);
}
