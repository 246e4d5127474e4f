#include "Core/Profiles/CVXProfileRules.h"

#include "Core/CVXProfiles.h"

namespace
{
using FProfile = FCVXAgentProfile;

bool Has(const FProfile& Profile, std::initializer_list<const TCHAR*> Texts)
{
	for (const TCHAR* Text : Texts)
	{
		if (Profile.SystemPrompt.Contains(Text))
		{
			return true;
		}
	}
	return false;
}

bool Lacks(const FProfile& Profile, const TCHAR* Text)
{
	return !Profile.SystemPrompt.Contains(Text);
}

bool Allows(const FProfile& Profile, std::initializer_list<const TCHAR*> Tools)
{
	for (const TCHAR* Tool : Tools)
	{
		if (Profile.AllowedTools.Contains(FString(Tool)))
		{
			return true;
		}
	}
	return false;
}

/** A rule that assigns the prompt when it lacks this text. */
#define CVX_LACKS(Text)                                                    \
	{                                                                      \
		[](const FProfile& Profile) { return Lacks(Profile, TEXT(Text)); } \
	}
/** A rule that assigns the prompt when it has one of these texts. */
#define CVX_HAS(...)                                                        \
	{                                                                       \
		[](const FProfile& Profile) { return Has(Profile, {__VA_ARGS__}); } \
	}
/** A rule that assigns the tools. */
#define CVX_TOOLS(Test)                                           \
	{                                                             \
		[](const FProfile& Profile) { return Test; }, false, true \
	}
/** A rule that assigns prompt and tools. */
#define CVX_BOTH(Test)                                           \
	{                                                            \
		[](const FProfile& Profile) { return Test; }, true, true \
	}

const FCVXProfileRule OrchestratorRules[] = {
	CVX_TOOLS(Profile.AllowedTools.IsEmpty()),
	CVX_HAS(TEXT("## Delegation example (game prototype)")),
	{[](const FProfile& Profile) {
		return Has(Profile, {TEXT("Minimal delegation principle")}) && Lacks(Profile, TEXT("Read sub-agent results"));
	}},
	CVX_TOOLS(Allows(Profile, {TEXT("query_engine_api"), TEXT("get_project_info"), TEXT("get_compiler_errors")})),
	CVX_LACKS("answer DIRECTLY"),
	CVX_LACKS("[DELEGATION COMPLETE]"),
	CVX_BOTH(Has(Profile, {TEXT("get_blueprint_info"), TEXT("list_assets")}) ||
		Allows(Profile, {TEXT("get_blueprint_info"), TEXT("list_assets"), TEXT("list_level_actors")})),
	CVX_LACKS("Delegation decision matrix"),
	CVX_TOOLS(!Allows(Profile, {TEXT("list_project_knowledge")})),
	CVX_TOOLS(Allows(Profile, {TEXT("save_project_knowledge")})),
	CVX_HAS(TEXT("Project knowledge")),
	CVX_LACKS("MANDATORY: Use injected knowledge BEFORE tools"),
	// No release has this text: the built-in prompt is put back at each start.
	CVX_LACKS("Sub-agent timeout handling"),
	CVX_LACKS("INCREMENTALLY"),
	CVX_LACKS("first match wins"),
	CVX_BOTH(Allows(Profile, {TEXT("execute_python")})),
	CVX_LACKS("NEVER fabricate completion"),
};

const FCVXProfileRule CoderRules[] = {
	// No release has this text, as above.
	CVX_LACKS("auto-injected below based on conversation context"),
	CVX_LACKS("Completion report"),
	CVX_LACKS("C++ new class workflow"),
	CVX_HAS(TEXT("build_blueprint_graph"), TEXT("get_blueprint_info"), TEXT("list_graph_nodes")),
	CVX_LACKS("MUST fix all compilation errors"),
	CVX_LACKS("C++ safety (always apply"),
	CVX_LACKS("C++ vs Blueprint decision"),
	CVX_HAS(TEXT("query_engine_api"), TEXT("get_project_info")),
	CVX_LACKS("save_project_knowledge"),
	CVX_LACKS("MANDATORY: Use injected knowledge BEFORE tools"),
	CVX_LACKS("INCREMENTAL WORKFLOW"),
	CVX_LACKS("query_ue_api"),
	CVX_LACKS("ValidateBlueprintGraphs"),
	CVX_LACKS("describe_graph_logic"),
	CVX_LACKS("remove_orphaned_nodes"),
	CVX_HAS(TEXT("TEST: Small script (3-5 lines) to test one operation")),
	CVX_LACKS("build_graph_from_spec"),
	CVX_LACKS("ANTI-PATTERNS"),
	CVX_LACKS("C++ multiple new classes"),
	CVX_LACKS("DO NOT create child Blueprints"),
};

const FCVXProfileRule ArchitectRules[] = {
	CVX_LACKS("## Delegation"),
};

const FCVXProfileRule ReviewerRules[] = {
	// No release has this text, as above.
	CVX_LACKS("auto-injected below based on conversation context"),
	CVX_LACKS("MANDATORY: Use injected knowledge BEFORE tools"),
};

const FCVXProfileRule LevelDesignerRules[] = {
	CVX_LACKS("Blockout methodology"),
	CVX_LACKS("INCREMENTAL WORKFLOW"),
};

#undef CVX_LACKS
#undef CVX_HAS
#undef CVX_TOOLS
#undef CVX_BOTH
} // namespace

TArrayView<const FCVXProfileRule> CVXProfileRules::Orchestrator()
{
	return OrchestratorRules;
}

TArrayView<const FCVXProfileRule> CVXProfileRules::Coder()
{
	return CoderRules;
}

TArrayView<const FCVXProfileRule> CVXProfileRules::Architect()
{
	return ArchitectRules;
}

TArrayView<const FCVXProfileRule> CVXProfileRules::Reviewer()
{
	return ReviewerRules;
}

TArrayView<const FCVXProfileRule> CVXProfileRules::LevelDesigner()
{
	return LevelDesignerRules;
}
