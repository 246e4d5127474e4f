#include "Core/Profiles/CVXBuiltInProfiles.h"

#include "Core/Profiles/CVXBuiltInPrompts.h"
#include "Core/Profiles/CVXProfileRules.h"
#include "Support/HostTypePrinting.h"

#include <gtest/gtest.h>

namespace
{
TArray<FCVXAgentProfile> Fresh()
{
	TArray<FCVXAgentProfile> Profiles;
	CVXBuiltInProfiles::Ensure(Profiles);
	return Profiles;
}

FCVXAgentProfile& Named(TArray<FCVXAgentProfile>& Profiles, const TCHAR* Name)
{
	return *Profiles.FindByPredicate([Name](const FCVXAgentProfile& Each) { return Each.ProfileName == Name; });
}

/** What becomes of a stored profile at the next start. */
FCVXAgentProfile AtNextStart(const FCVXAgentProfile& Stored)
{
	TArray<FCVXAgentProfile> Profiles = {Stored};
	CVXBuiltInProfiles::Ensure(Profiles);
	return Profiles[0];
}

/** The prompt's headings, in order. */
TArray<FString> HeadingsOf(const FString& Prompt)
{
	TArray<FString> Headings;
	Prompt.ParseIntoArrayLines(Headings);
	Headings.RemoveAll([](const FString& Line) { return !Line.StartsWith(TEXT("## ")); });
	return Headings;
}
} // namespace

TEST(CVXBuiltInProfiles, EachAgentShipsWithItsRightsAndAPromptOfItsOwn)
{
	TArray<FCVXAgentProfile> Profiles = Fresh();
	ASSERT_EQ(Profiles.Num(), 5);
	for (const FCVXAgentProfile& Profile : Profiles)
	{
		const bool bReader = Profile.ProfileName == TEXT("Architect") || Profile.ProfileName == TEXT("Reviewer");
		EXPECT_EQ(Profile.bReadOnly, bReader);
		EXPECT_EQ(
			Profile.ApprovalMode, bReader ? ECVXApprovalMode::FullyAutonomous : ECVXApprovalMode::AutoApproveReads);
		EXPECT_EQ(Profile.bAutoVisualVerification, Profile.ProfileName == TEXT("LevelDesigner"));
		EXPECT_EQ(Profile.ProviderProfileName, TEXT("Default"));
		EXPECT_EQ(Profile.AllowedTools.Num(), Profile.ProfileName == TEXT("Orchestrator") ? 11 : 0);
		const FString Identity = TEXT("You are the ") + Profile.ProfileName + TEXT(" for Corvexa — ");
		EXPECT_TRUE(Profile.SystemPrompt.StartsWith(Identity, ESearchCase::CaseSensitive))
			<< TCHAR_TO_UTF8(*Profile.ProfileName);
		EXPECT_EQ(HeadingsOf(Profile.SystemPrompt)[0], TEXT("## MANDATORY: Use injected knowledge BEFORE tools"));
		EXPECT_TRUE(Profile.SystemPrompt.Contains(TEXT("[Auto-Injected Knowledge]")));
	}
	for (const FString& Tool : Profiles[0].AllowedTools)
	{
		EXPECT_TRUE(Profiles[0].SystemPrompt.Contains(Tool)) << TCHAR_TO_UTF8(*Tool);
	}
}

TEST(CVXBuiltInProfiles, NoBuiltInPromptIsTakenForAnOldOneButByItsRestoringRule)
{
	struct FCase
	{
		const TCHAR* Name;
		TArrayView<const FCVXProfileRule> Rules;
		int32 Restoring;
	};
	const FCase Cases[] = {
		{TEXT("Orchestrator"), CVXProfileRules::Orchestrator(), 12},
		{TEXT("Coder"), CVXProfileRules::Coder(), 0},
		{TEXT("Architect"), CVXProfileRules::Architect(), INDEX_NONE},
		{TEXT("Reviewer"), CVXProfileRules::Reviewer(), 0},
		{TEXT("LevelDesigner"), CVXProfileRules::LevelDesigner(), INDEX_NONE},
	};
	TArray<FCVXAgentProfile> Profiles = Fresh();
	for (const FCase& Case : Cases)
	{
		for (int32 Index = 0; Index < Case.Rules.Num(); ++Index)
		{
			EXPECT_EQ(Case.Rules[Index].IsOutdated(Named(Profiles, Case.Name)), Index == Case.Restoring)
				<< TCHAR_TO_UTF8(Case.Name) << " rule " << Index;
		}
	}
}

TEST(CVXBuiltInProfiles, PromptsHaveTheirSectionsInOrder)
{
	EXPECT_EQ(HeadingsOf(CVXBuiltInPrompts::Orchestrator()),
		(TArray<FString>{TEXT("## MANDATORY: Use injected knowledge BEFORE tools"),
			TEXT("## CRITICAL RULE: You are a MANAGER, not an implementer."), TEXT("## Workflow"),
			TEXT("## CRITICAL: ask_followup_question vs attempt_completion"),
			TEXT("## CRITICAL: Questions and informational requests — answer DIRECTLY"),
			TEXT("## Delegation decision matrix (apply rules IN ORDER — first match wins)"),
			TEXT("## Delegation context (ALWAYS include)"), TEXT("## Delegation scope"),
			TEXT("## CRITICAL: Read sub-agent results — NEVER fabricate completion"),
			TEXT("## Available agents for delegation"),
			TEXT("## Examples — matching delegation depth to request complexity"), TEXT("## Delegation rules"),
			TEXT("## CRITICAL: Sub-agent timeout / incomplete handling"),
			TEXT("## Agent selection guide (check top-to-bottom, first match wins)")}));
	EXPECT_EQ(HeadingsOf(CVXBuiltInPrompts::Coder()),
		(TArray<FString>{TEXT("## MANDATORY: Use injected knowledge BEFORE tools"),
			TEXT("## Task Planning (MANDATORY for complex tasks)"), TEXT("## INCREMENTAL WORKFLOW"),
			TEXT("## API Discovery (only for unfamiliar APIs)"), TEXT("## Blueprint workflow (via execute_python)"),
			TEXT("## CRITICAL rules"),
			TEXT("## C++ vs Blueprint decision (CRITICAL — decide BEFORE creating anything)"),
			TEXT("## C++ new class workflow (CRITICAL — read before creating ANY C++ file)"),
			TEXT("## C++ safety (always apply — do NOT rely on knowledge injection for these)"),
			TEXT("## Blueprint safety (always apply)"),
			TEXT("## MANDATORY: Blueprint graph validation (run BEFORE attempt_completion)"),
			TEXT("## MANDATORY: Blueprint logic introspection (run AFTER validation passes)"),
			TEXT("## Project knowledge"), TEXT("## Pre-completion checks"), TEXT("## Completion report (CRITICAL)")}));
	EXPECT_EQ(HeadingsOf(CVXBuiltInPrompts::LevelDesigner()),
		(TArray<FString>{TEXT("## MANDATORY: Use injected knowledge BEFORE tools"),
			TEXT("## Blockout methodology (follow this ORDER)"),
			TEXT("## UE5 scale reference (CRITICAL — memorize these)"), TEXT("## Spatial composition principles"),
			TEXT("## Lighting design"), TEXT("## INCREMENTAL WORKFLOW (CRITICAL for quality)"),
			TEXT("## API Discovery — NEVER guess"), TEXT("## CRITICAL implementation rules"),
			TEXT("## Common patterns to use"), TEXT("## Pre-completion audit (MANDATORY)"),
			TEXT("## Completion report")}));
	EXPECT_EQ(HeadingsOf(CVXBuiltInPrompts::Architect()).Last(), TEXT("## Delegation"));
}

TEST(CVXBuiltInProfiles, StoredPromptsStayWhileTheyHoldTheirMarkers)
{
	TArray<FCVXAgentProfile> Profiles = Fresh();
	FCVXAgentProfile Architect = Named(Profiles, TEXT("Architect"));
	Architect.SystemPrompt = TEXT("My own way.\n## delegation\nNone.");
	EXPECT_EQ(AtNextStart(Architect).SystemPrompt, Architect.SystemPrompt);
	Architect.SystemPrompt = TEXT("My own way.");
	EXPECT_EQ(AtNextStart(Architect).SystemPrompt, CVXBuiltInPrompts::Architect());

	FCVXAgentProfile Designer = Named(Profiles, TEXT("LevelDesigner"));
	Designer.SystemPrompt = TEXT("blockout methodology; incremental workflow");
	EXPECT_EQ(AtNextStart(Designer).SystemPrompt, Designer.SystemPrompt);

	FCVXAgentProfile Coder = Named(Profiles, TEXT("Coder"));
	Coder.ProfileName = TEXT("coder");
	Coder.SystemPrompt += TEXT("And be quick.");
	Coder.bReadOnly = true;
	Coder.ApprovalMode = ECVXApprovalMode::AlwaysAsk;
	Coder.AllowedTools = {TEXT("read_file")};
	TArray<FCVXAgentProfile> Stored = {Coder};
	CVXBuiltInProfiles::Ensure(Stored);
	EXPECT_EQ(Stored.Num(), 5) << "names compare without regard to case";
	EXPECT_EQ(Stored[0].SystemPrompt, CVXBuiltInPrompts::Coder());
	EXPECT_TRUE(Stored[0].bReadOnly);
	EXPECT_EQ(Stored[0].ApprovalMode, ECVXApprovalMode::AlwaysAsk);
	EXPECT_EQ(Stored[0].AllowedTools.Num(), 1);
	EXPECT_EQ(Stored.Last().ProfileName, TEXT("LevelDesigner")) << "what was removed comes back at the end";
}

TEST(CVXBuiltInProfiles, TheOrchestratorGetsItsToolsBack)
{
	TArray<FCVXAgentProfile> Profiles = Fresh();
	const FCVXAgentProfile Orchestrator = Named(Profiles, TEXT("Orchestrator"));
	const auto WithTool = [&Orchestrator](const TCHAR* Tool)
	{
		FCVXAgentProfile Stored = Orchestrator;
		Stored.AllowedTools.Add(Tool);
		return AtNextStart(Stored).AllowedTools;
	};
	for (const TCHAR* Retired : {TEXT("Execute_Python"), TEXT("query_engine_api"), TEXT("get_compiler_errors"),
			 TEXT("list_level_actors"), TEXT("save_project_knowledge")})
	{
		EXPECT_EQ(WithTool(Retired), Orchestrator.AllowedTools) << TCHAR_TO_UTF8(Retired);
	}
	EXPECT_EQ(WithTool(TEXT("fetch_url")).Num(), 12) << "a tool that somebody has added stays";
	FCVXAgentProfile Stored = Orchestrator;
	Stored.AllowedTools.Empty();
	EXPECT_EQ(AtNextStart(Stored).AllowedTools, Orchestrator.AllowedTools);
	Stored.AllowedTools = {TEXT("read_file")};
	EXPECT_EQ(AtNextStart(Stored).AllowedTools, Orchestrator.AllowedTools) << "it lacks list_project_knowledge";
}
