#include "Agent/Guards/CVXResultBookkeeping.h"

#include "Agent/Context/CVXCallArguments.h"
#include "Agent/Guards/CVXGuardContext.h"
#include "Agent/Guards/CVXToolOutcome.h"
#include "Algo/AnyOf.h"

namespace
{
constexpr int32 MaxCompletedWork = 30;
/** Of a Python output's first characters, the first line that says something is noted. */
constexpr int32 MaxPythonOutput = 500;
constexpr int32 MaxPythonLine = 120;

/** Tools that change the project. */
constexpr const TCHAR* SideEffectTools[] = {TEXT("write_file"), TEXT("edit_file"), TEXT("apply_patch"),
	TEXT("execute_python"), TEXT("compile_and_check"), TEXT("compile_blueprints"), TEXT("live_coding_compile"),
	TEXT("git_commit"), TEXT("save_project_knowledge"), TEXT("delete_project_knowledge")};

bool IsCppFile(const FString& Path)
{
	return Path.EndsWith(TEXT(".h")) || Path.EndsWith(TEXT(".cpp"));
}

FString FindTellingLine(const FString& Output)
{
	TArray<FString> Lines;
	Output.Left(MaxPythonOutput).ParseIntoArrayLines(Lines);
	for (const FString& Line : Lines)
	{
		const FString Trimmed = Line.TrimStartAndEnd();
		if (!Trimmed.IsEmpty())
		{
			return Trimmed.Left(MaxPythonLine);
		}
	}
	return TEXT("(completed)");
}

FString DescribeWork(const FCVXCompletedToolResult& Result, const FString& Path)
{
	FString Subject = Path;
	if (Path.IsEmpty())
	{
		const bool bTelling = CVXToolOutcome::IsPython(Result) && !Result.Output.IsEmpty();
		Subject = bTelling ? FindTellingLine(Result.Output) : TEXT("(completed)");
	}
	return FString::Printf(TEXT("%s: %s"), *Result.ToolName, *Subject);
}

void NotePython(FCVXGuardState& State, const FCVXCompletedToolResult& Result)
{
	++State.PythonCallCount;
	if (Result.bIsError || CVXToolOutcome::HasPythonError(Result.Output))
	{
		++State.PythonFailCount;
	}
}

void NoteSideEffect(FCVXGuardContext& Context, const FCVXCompletedToolResult& Result)
{
	FCVXGuardState& State = Context.State;
	State.bHadSideEffects = true;
	const FCVXToolCall* Call = Context.FindCall(Result.ToolUseId);
	const FString Path = Call ? CVXCallArguments::GetPath(Call->Arguments) : FString();
	if (CVXCallArguments::IsFileWrite(Result.ToolName) && IsCppFile(Path))
	{
		State.bCppWritten = true;
	}
	while (State.CompletedWork.Num() >= MaxCompletedWork)
	{
		State.CompletedWork.RemoveAt(0);
	}
	State.CompletedWork.Add(DescribeWork(Result, Path));
}
} // namespace

void CVXResultBookkeeping::Note(FCVXGuardContext& Context, const FCVXCompletedToolResult& Result)
{
	if (CVXToolOutcome::IsPython(Result))
	{
		NotePython(Context.State, Result);
	}
	if (Result.bIsError)
	{
		return;
	}
	if (CVXToolOutcome::IsCppCompilation(Result.ToolName))
	{
		Context.State.bCppCompiled = true;
	}
	if (Algo::AnyOf(SideEffectTools, [&](const TCHAR* Name) { return Result.ToolName == Name; }))
	{
		NoteSideEffect(Context, Result);
	}
}
