#pragma once

#include "Containers/Array.h"
#include "Containers/UnrealString.h"

class FJsonObject;

/** A tool as its server describes it. */
struct FCVXMCPToolInfo
{
	/** The name that the server knows it by. */
	FString OriginalName;
	/** The name that the agent knows it by: "mcp__SERVER__NAME". */
	FString PrefixedName;
	FString Description;
	/** The JSON Schema object of the arguments, as text. */
	FString InputSchemaJson;
};

/** What the results of the two requests about tools mean. Any thread. */
namespace CVXMCPResults
{
/**
 * Appends the tools of a "tools/list" result; those without a name are left out.
 * @return false when the result lists none at all, not even an empty list of them.
 */
bool ReadTools(const FJsonObject& Result, const FString& ServerName, TArray<FCVXMCPToolInfo>& OutTools);

/** The texts of a "tools/call" result, a line each. @param bOutIsError whether the tool says that it failed. */
FString ReadCallOutput(const FJsonObject& Result, bool& bOutIsError);
} // namespace CVXMCPResults
