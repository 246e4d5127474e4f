#pragma once

#include "Containers/UnrealString.h"

/** What a person, or a standing rule, decides about before a tool runs. */
struct FCVXApprovalRequest
{
	FString ToolUseId;
	FString ToolName;
	/** One line for the person who is asked. */
	FString Description;
	/** The path as the model gave it; empty when the call has none. */
	FString FilePath;
	/** A unified diff of what would change; may be empty. */
	FString DiffPreview;
	bool bIsDestructive = false;
	bool bIsReadOnly = false;
};
