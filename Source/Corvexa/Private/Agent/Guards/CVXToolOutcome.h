#pragma once

#include "Core/CVXTypes.h"

/** Questions about one tool result that several rules ask. Texts are searched without regard to case. */
namespace CVXToolOutcome
{
bool IsPython(const FCVXCompletedToolResult& Result);

/** A call that can leave compile errors open: "compile", "build", "blueprint", "live_coding" or "hot_reload" in its
 * name. */
bool CanFailCompilation(const FString& ToolName);
/** A call whose success closes them: "compile", "live_coding" or "hot_reload" in its name. */
bool IsCompilation(const FString& ToolName);
/** A call that compiles C++. */
bool IsCppCompilation(const FString& ToolName);

/** Whether Python printed an exception, which execute_python itself doesn't take for a failure. */
bool HasPythonError(const FString& Output);
/** The same without "SyntaxError:", by which a turn is judged. */
bool HasPythonRuntimeError(const FString& Output);

bool ContainsAny(const FString& Text, TArrayView<const TCHAR* const> Words);

/** The failures of a turn for a message to the model: the tool and the beginning of its text, a line each.
 * @param bWithPythonErrors also those that Python printed. */
FString GatherErrors(const TArray<FCVXCompletedToolResult>& Results, bool bWithPythonErrors);
} // namespace CVXToolOutcome
