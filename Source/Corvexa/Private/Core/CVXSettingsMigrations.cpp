#include "Core/CVXSettingsMigrations.h"

#include "Core/CVXLog.h"
#include "Core/CVXSettings.h"
#include "Core/CVXVisionSupport.h"

namespace
{
/** One step: what it changes and the version that the settings have behind it. */
struct FMigration
{
	int32 Version;
	void (*Apply)(UCVXSettings& Settings);
};

/** Context windows are known per model by now; a stored figure only gets in the way. */
void ReleaseContextWindows(UCVXSettings& Settings)
{
	for (FCVXProviderProfile& Profile : Settings.ProviderProfiles)
	{
		if (Profile.MaxContextTokens > 0)
		{
			UE_LOG(LogCorvexa, Log, TEXT("CVXSettings: V1 migration — provider '%s' MaxContextTokens %d → 0 (auto)"),
				*Profile.ProfileName, Profile.MaxContextTokens);
			Profile.MaxContextTokens = 0;
		}
	}
}

/** Conversations begin with the agent that plans. */
void StartWithTheOrchestrator(UCVXSettings& Settings)
{
	if (Settings.ActiveAgentProfile == TEXT("Coder"))
	{
		Settings.ActiveAgentProfile = TEXT("Orchestrator");
		UE_LOG(LogCorvexa, Log, TEXT("CVXSettings: V2 migration — ActiveAgentProfile 'Coder' → 'Orchestrator'"));
	}
}

/** The flags of vision came later than the profiles that lack it. */
void SetVisionFlags(UCVXSettings& Settings)
{
	for (FCVXProviderProfile& Profile : Settings.ProviderProfiles)
	{
		if (CVXVisionSupport::LacksVision(Profile))
		{
			Profile.bSupportsVision = false;
			UE_LOG(LogCorvexa, Log,
				TEXT("CVXSettings: V3 migration — provider '%s' (model '%s') bSupportsVision → false"),
				*Profile.ProfileName, *Profile.ModelId);
		}
	}
	for (FCVXAgentProfile& Profile : Settings.AgentProfiles)
	{
		if (Profile.ProfileName == TEXT("LevelDesigner"))
		{
			Profile.bAutoVisualVerification = true;
			UE_LOG(LogCorvexa, Log, TEXT("CVXSettings: V3 migration — LevelDesigner bAutoVisualVerification → true"));
		}
	}
}

/** Budgets up to the former default cut the knowledge short. */
void RaiseKnowledgeBudget(UCVXSettings& Settings)
{
	constexpr int32 FormerDefault = 4000;
	constexpr int32 NewBudget = 12000;
	if (Settings.KnowledgeInjectionTokenBudget <= FormerDefault)
	{
		UE_LOG(LogCorvexa, Log, TEXT("CVXSettings: V4 migration — KnowledgeInjectionTokenBudget %d → 12000"),
			Settings.KnowledgeInjectionTokenBudget);
		Settings.KnowledgeInjectionTokenBudget = NewBudget;
	}
}

/** A Coder that still works call by call goes; the built-in one takes its place in the same start. */
void DropTheUnbatchedCoder(UCVXSettings& Settings)
{
	const int32 Last = Settings.AgentProfiles.FindLastByPredicate(
		[](const FCVXAgentProfile& Profile)
		{
			return Profile.ProfileName == TEXT("Coder") &&
				Profile.SystemPrompt.Contains(TEXT("TEST: Small script (3-5 lines) to test one operation"));
		});
	if (Last != INDEX_NONE)
	{
		Settings.AgentProfiles.RemoveAt(Last);
		UE_LOG(LogCorvexa, Log, TEXT("CVXSettings: V5 migration — Coder profile removed for BATCHED WORKFLOW rebuild"));
	}
}

constexpr FMigration Migrations[] = {
	{1, ReleaseContextWindows},
	{2, StartWithTheOrchestrator},
	{3, SetVisionFlags},
	{4, RaiseKnowledgeBudget},
	{5, DropTheUnbatchedCoder},
};
} // namespace

void CVXSettingsMigrations::Run(UCVXSettings& Settings)
{
	for (const FMigration& Migration : Migrations)
	{
		if (Settings.SettingsVersion < Migration.Version)
		{
			Migration.Apply(Settings);
			Settings.SettingsVersion = Migration.Version;
			Settings.SaveToDefaultConfig();
		}
	}
}
