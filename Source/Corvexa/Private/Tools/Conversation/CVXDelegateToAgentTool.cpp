#include "Tools/Conversation/CVXDelegateToAgentTool.h"

#include "Core/CVXSettings.h"
#include "Tools/CVXToolArguments.h"

namespace
{
constexpr int32 DefaultMaxTurns = 75;
constexpr int32 MinMaxTurns = 5;
constexpr int32 MaxMaxTurns = 150;
/** Seconds. */
constexpr int32 MinTimeout = 60;
constexpr int32 MaxTimeout = 1800;

/** A profile of exactly that name; a lookup that falls back to another one would run the wrong agent. */
bool HasProfile(const UCVXSettings& Settings, const FString& Name)
{
	const FCVXAgentProfile* Profile = Settings.FindAgentProfile(Name);
	return Profile && Profile->ProfileName == Name;
}

FString ListProfiles(const UCVXSettings& Settings)
{
	FString Names;
	for (const FCVXAgentProfile& Profile : Settings.AgentProfiles)
	{
		Names += Profile.ProfileName + TEXT(", ");
	}
	return Names;
}

/** @return why the call can't be; empty when it can. */
FString Refuse(const FString& Profile, const FString& Task)
{
	if (Profile.IsEmpty())
	{
		return TEXT("'agent_profile' is required and must be a non-empty string.");
	}
	if (Task.IsEmpty())
	{
		return TEXT("'task' is required and must be a non-empty string.");
	}
	if (Profile == TEXT("Orchestrator"))
	{
		return TEXT("Cannot delegate to 'Orchestrator'. Choose a specialized profile: Coder, Reviewer, LevelDesigner, "
					"etc.");
	}
	const UCVXSettings* Settings = UCVXSettings::Get();
	if (!Settings || !HasProfile(*Settings, Profile))
	{
		return FString::Printf(TEXT("Agent profile '%s' not found. Available: %s"), *Profile,
			Settings ? *ListProfiles(*Settings) : TEXT(""));
	}
	return FString();
}

/** A field that is a text; empty when it is anything else. */
FString ReadText(const FJsonObject& Arguments, const TCHAR* Name)
{
	const TSharedPtr<FJsonValue> Value = Arguments.TryGetField(Name);
	return Value && Value->Type == EJson::String ? Value->AsString() : FString();
}
} // namespace

FString FCVXDelegateToAgentTool::GetName() const
{
	return TEXT("delegate_to_agent");
}

FString FCVXDelegateToAgentTool::GetDescription() const
{
	return TEXT(
		"Delegate a sub-task to a specialized agent and wait for its result. The agent sees nothing of this "
		"conversation: "
		"give it the goal, the constraints and every path and name that it needs.\n\n"
		"Choose the profile top to bottom, first match wins:\n"
		"1. LevelDesigner — building the physical world: levels, placing actors, landscape, lighting, materials on "
		"meshes, "
		"atmosphere, cameras.\n"
		"2. Coder — code and logic: C++ classes, Blueprints, widgets, AI, input, gameplay systems, data assets.\n"
		"3. Architect — read-only analysis: how existing systems work, which design fits, a plan before large "
		"changes.\n"
		"4. Reviewer — quality review of finished work: correctness, performance, conventions.\n"
		"NEVER delegate to 'Orchestrator' — that causes recursion. Delegation supports up to 3 nesting levels. "
		"Sub-agents "
		"CAN delegate further if needed.\n\n"
		"Pattern for a game prototype:\n"
		"1. delegate_to_agent(Coder): player, weapons, enemies, game mode, HUD — with class and asset paths fixed up "
		"front.\n"
		"2. delegate_to_agent(LevelDesigner): a playable level that uses what step 1 reported, by its paths.\n"
		"3. delegate_to_agent(Reviewer): check the whole; then delegate the fixes that it names to Coder.");
}

FString FCVXDelegateToAgentTool::GetInputSchemaJson() const
{
	return TEXT(
		R"({"type":"object","properties":{)"
		R"__("agent_profile":{"type":"string","description":"Name of the agent profile to delegate to. )__"
		R"__(Must match a profile in settings exactly (e.g. 'Coder', 'Reviewer', 'LevelDesigner')."},)__"
		R"("task":{"type":"string","description":"Full description of what the sub-agent should accomplish. )"
		R"(Be specific and actionable."},)"
		R"("context":{"type":"string","description":"Optional: relevant context such as file paths, class names, )"
		R"(asset paths, results from previous delegations, or constraints."},)"
		R"__("max_turns":{"type":"integer","minimum":5,"maximum":150,"default":75,"description":"Maximum number of )__"
		R"__(tool-call turns for the sub-agent (default 75, min 5, max 150). Use 100-150 for very complex tasks )__"
		R"__((full game systems, multi-Blueprint implementations). Use 30-50 for simple isolated tasks."},)__"
		R"__("timeout_seconds":{"type":"integer","minimum":60,"maximum":1800,"default":900,"description":"Timeout in )__"
		R"__(seconds for the sub-agent (default 900, min 60, max 1800). Use higher values for complex tasks like )__"
		R"(level design or multi-system implementation."}},)"
		R"("required":["agent_profile","task"]})");
}

FCVXToolExecutionResult FCVXDelegateToAgentTool::Execute(const FString& ArgumentsJson, const FCVXAgentProfile&)
{
	TSharedPtr<FJsonObject> Arguments;
	FCVXToolExecutionResult Outcome;
	if (!ParseToolArguments(ArgumentsJson, Arguments, Outcome))
	{
		return Outcome;
	}
	const FString Profile = ReadText(*Arguments, TEXT("agent_profile"));
	const FString Task = ReadText(*Arguments, TEXT("task"));
	const FString Refusal = Refuse(Profile, Task);
	if (!Refusal.IsEmpty())
	{
		return FCVXToolExecutionResult::MakeError(Refusal);
	}
	Outcome = FCVXToolExecutionResult::MakeSuccess(TEXT("(delegation pending — waiting for sub-agent)"));
	Outcome.bIsDelegation = true;
	Outcome.DelegateProfile = Profile;
	Outcome.DelegateTask = Task;
	Outcome.DelegateContext = ReadText(*Arguments, TEXT("context"));
	Outcome.DelegateMaxTurns =
		FMath::Clamp(GetIntArgument(*Arguments, TEXT("max_turns"), DefaultMaxTurns), MinMaxTurns, MaxMaxTurns);
	const int32 Timeout = GetIntArgument(*Arguments, TEXT("timeout_seconds"), 0);
	Outcome.DelegateTimeoutSeconds =
		Timeout > 0 ? static_cast<float>(FMath::Clamp(Timeout, MinTimeout, MaxTimeout)) : 0.0f;
	return Outcome;
}
