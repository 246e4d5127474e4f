#pragma once

#include "Core/CVXProfiles.h"
#include "Tools/CVXApprovalRequest.h"

/** Decides whether a tool call may go ahead, by the rules in the settings; it keeps nothing itself. Game thread. */
class FCVXApprovalManager
{
public:
	static FCVXApprovalManager& Get();

	/** @return `Approved`, `Denied`, or `Pending` when a person must decide. Protected paths beat every mode. */
	ECVXApprovalState CheckAutoRules(const FCVXApprovalRequest& Request, const FCVXAgentProfile& Profile) const;

	/**
	 * Keeps an "always" decision as a rule in the settings and in their file; other decisions are not kept.
	 * @param PathGlob the paths that the rule covers; empty covers all.
	 */
	void RecordUserDecision(
		const FString& ToolName, const FString& PathGlob, ECVXApprovalState Decision, bool bRemember);

private:
	FCVXApprovalManager() = default;

	bool MatchesGlob(const FString& Path, const FString& Glob) const;
};
