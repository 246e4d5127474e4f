#include "Agent/Guards/CVXTurnScan.h"

#include "Agent/CVXAgentLog.h"
#include "Agent/Guards/CVXToolOutcome.h"

namespace
{
void NoteValidation(FCVXGuardState& State, const FCVXCompletedToolResult& Result)
{
	if (Result.ToolName != TEXT("compile_and_check"))
	{
		return;
	}
	if (Result.Output.Contains(TEXT("--- Logical Validation ---")))
	{
		State.bValidationProblemsOpen = true;
		UE_LOG(LogCVXAgentLoop, Log,
			TEXT("Validation problems detected in compile_and_check output — completion will be blocked"));
	}
	else if (Result.Output.Contains(TEXT("all graphs OK")))
	{
		State.bValidationProblemsOpen = false;
	}
}
} // namespace

FCVXTurnFindings CVXTurnScan::Scan(FCVXGuardContext& Context)
{
	FCVXTurnFindings Findings;
	for (const FCVXCompletedToolResult& Result : Context.Results)
	{
		if (!Result.ImageBase64.IsEmpty())
		{
			Findings.Images.Add({Result.ImageBase64, Result.ImageMediaType});
		}
		if (Result.bIsError)
		{
			if (CVXToolOutcome::CanFailCompilation(Result.ToolName))
			{
				Findings.bCompileError = true;
				Context.State.bCompileErrorsOpen = true;
			}
			continue;
		}
		if (CVXToolOutcome::IsCompilation(Result.ToolName))
		{
			Context.State.bCompileErrorsOpen = false;
			NoteValidation(Context.State, Result);
		}
		if (CVXToolOutcome::IsPython(Result) && CVXToolOutcome::HasPythonRuntimeError(Result.Output))
		{
			Findings.bPythonError = true;
		}
	}
	return Findings;
}
