#pragma once

#include "Containers/UnrealString.h"
#include "Core/CVXTypes.h"

/** What somebody typed when asked whether a tool may run. */
struct FApprovalAnswer
{
	enum class EKind : uint8
	{
		Decision,
		/** The rest of the change is to be shown first. */
		More,
		Unclear,
	};

	EKind Kind = EKind::Unclear;
	ECVXApprovalState Decision = ECVXApprovalState::Pending;
	/** Whether the decision is kept as a rule. */
	bool bRemember = false;

	/** Takes whole words and their letters, ignoring case. */
	static FApprovalAnswer Parse(const FString& Line);
};
