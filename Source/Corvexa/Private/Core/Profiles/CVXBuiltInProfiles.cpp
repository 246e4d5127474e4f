#include "Core/Profiles/CVXBuiltInProfiles.h"

#include "Core/Profiles/CVXBuiltInPrompts.h"
#include "Core/Profiles/CVXProfileRules.h"

namespace
{
/** One agent as it ships. */
struct FBuiltInProfile
{
	const TCHAR* Name;
	FString (*Prompt)();
	TArrayView<const FCVXProfileRule> (*Rules)();
	/** Empty allows all. */
	TArrayView<const TCHAR* const> Tools;
	ECVXApprovalMode ApprovalMode = ECVXApprovalMode::AutoApproveReads;
	bool bReadOnly = false;
	bool bAutoVisualVerification = false;

	TArray<FString> MakeTools() const;
	FCVXAgentProfile Make() const;
	void Update(FCVXAgentProfile& Profile) const;
};

/** Nothing that writes, and no Python: this is what makes the Orchestrator a manager. */
const TCHAR* const OrchestratorTools[] = {
	TEXT("delegate_to_agent"),
	TEXT("update_todo_list"),
	TEXT("ask_followup_question"),
	TEXT("attempt_completion"),
	TEXT("read_file"),
	TEXT("list_files"),
	TEXT("search_files"),
	TEXT("search_in_files"),
	TEXT("semantic_search"),
	TEXT("query_ue_api"),
	TEXT("list_project_knowledge"),
};

const FBuiltInProfile BuiltInProfiles[] = {
	{TEXT("Orchestrator"), CVXBuiltInPrompts::Orchestrator, CVXProfileRules::Orchestrator, OrchestratorTools},
	{TEXT("Coder"), CVXBuiltInPrompts::Coder, CVXProfileRules::Coder, {}},
	{TEXT("Architect"), CVXBuiltInPrompts::Architect, CVXProfileRules::Architect, {}, ECVXApprovalMode::FullyAutonomous,
		true},
	{TEXT("Reviewer"), CVXBuiltInPrompts::Reviewer, CVXProfileRules::Reviewer, {}, ECVXApprovalMode::FullyAutonomous,
		true},
	{TEXT("LevelDesigner"), CVXBuiltInPrompts::LevelDesigner, CVXProfileRules::LevelDesigner, {},
		ECVXApprovalMode::AutoApproveReads, false, true},
};

TArray<FString> FBuiltInProfile::MakeTools() const
{
	TArray<FString> Result;
	for (const TCHAR* Tool : Tools)
	{
		Result.Add(Tool);
	}
	return Result;
}

FCVXAgentProfile FBuiltInProfile::Make() const
{
	FCVXAgentProfile Profile;
	Profile.ProfileName = Name;
	Profile.SystemPrompt = Prompt();
	Profile.AllowedTools = MakeTools();
	Profile.bReadOnly = bReadOnly;
	Profile.ApprovalMode = ApprovalMode;
	Profile.bAutoVisualVerification = bAutoVisualVerification;
	return Profile;
}

void FBuiltInProfile::Update(FCVXAgentProfile& Profile) const
{
	for (const FCVXProfileRule& Rule : Rules())
	{
		if (!Rule.IsOutdated(Profile))
		{
			continue;
		}
		if (Rule.bPrompt)
		{
			Profile.SystemPrompt = Prompt();
		}
		if (Rule.bTools)
		{
			Profile.AllowedTools = MakeTools();
		}
	}
}
} // namespace

void CVXBuiltInProfiles::Ensure(TArray<FCVXAgentProfile>& Profiles)
{
	for (const FBuiltInProfile& BuiltIn : BuiltInProfiles)
	{
		const auto bSameName = [&BuiltIn](const FCVXAgentProfile& Profile)
		{ return Profile.ProfileName == BuiltIn.Name; };
		if (!Profiles.ContainsByPredicate(bSameName))
		{
			Profiles.Add(BuiltIn.Make());
		}
		for (FCVXAgentProfile& Profile : Profiles)
		{
			if (bSameName(Profile))
			{
				BuiltIn.Update(Profile);
			}
		}
	}
}
