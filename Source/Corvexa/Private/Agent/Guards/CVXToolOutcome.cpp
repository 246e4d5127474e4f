#include "Agent/Guards/CVXToolOutcome.h"

#include "Algo/AnyOf.h"

namespace
{
/** Characters of one failure that a message quotes. */
constexpr int32 MaxQuotedError = 2000;

/** The last is left out when a turn is judged. */
constexpr const TCHAR* PythonErrorMarkers[] = {TEXT("Traceback (most recent call last)"), TEXT("AttributeError:"),
	TEXT("TypeError:"), TEXT("NameError:"), TEXT("ImportError:"), TEXT("RuntimeError:"), TEXT("ValueError:"),
	TEXT("SyntaxError:")};
constexpr const TCHAR* CompilationMarkers[] = {TEXT("compile"), TEXT("live_coding"), TEXT("hot_reload")};
constexpr const TCHAR* FallibleMarkers[] = {
	TEXT("compile"), TEXT("build"), TEXT("blueprint"), TEXT("live_coding"), TEXT("hot_reload")};
} // namespace

bool CVXToolOutcome::IsPython(const FCVXCompletedToolResult& Result)
{
	return Result.ToolName == TEXT("execute_python");
}

bool CVXToolOutcome::CanFailCompilation(const FString& ToolName)
{
	return ContainsAny(ToolName, FallibleMarkers);
}

bool CVXToolOutcome::IsCompilation(const FString& ToolName)
{
	return ContainsAny(ToolName, CompilationMarkers);
}

bool CVXToolOutcome::IsCppCompilation(const FString& ToolName)
{
	return ToolName == TEXT("live_coding_compile") || ToolName == TEXT("hot_reload");
}

bool CVXToolOutcome::HasPythonError(const FString& Output)
{
	return ContainsAny(Output, PythonErrorMarkers);
}

bool CVXToolOutcome::HasPythonRuntimeError(const FString& Output)
{
	return ContainsAny(
		Output, TArrayView<const TCHAR* const>(PythonErrorMarkers).Left(UE_ARRAY_COUNT(PythonErrorMarkers) - 1));
}

bool CVXToolOutcome::ContainsAny(const FString& Text, TArrayView<const TCHAR* const> Words)
{
	return Algo::AnyOf(Words, [&](const TCHAR* Word) { return Text.Contains(Word); });
}

FString CVXToolOutcome::GatherErrors(const TArray<FCVXCompletedToolResult>& Results, bool bWithPythonErrors)
{
	FString Text;
	for (const FCVXCompletedToolResult& Result : Results)
	{
		const bool bFailed =
			Result.bIsError || (bWithPythonErrors && IsPython(Result) && HasPythonError(Result.Output));
		if (bFailed && !Result.Output.IsEmpty())
		{
			Text += FString::Printf(TEXT("%s: %s\n"), *Result.ToolName, *Result.Output.Left(MaxQuotedError));
		}
	}
	return Text.IsEmpty() ? TEXT("(see tool results above)") : Text;
}
