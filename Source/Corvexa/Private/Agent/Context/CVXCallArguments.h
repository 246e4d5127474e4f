#pragma once

#include "Core/CVXTypes.h"

/** What the agent itself reads from the arguments of a tool call. */
namespace CVXCallArguments
{
/** The file that the call works on: the string field "file_path", else "path"; empty without either. */
FString GetPath(const FString& ArgumentsJson);

/** Whether the call writes text files. */
bool IsFileWrite(const FString& ToolName);
} // namespace CVXCallArguments
