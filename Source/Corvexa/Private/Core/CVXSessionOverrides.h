#pragma once

#include "Core/CVXProfiles.h"
#include "Misc/Optional.h"

class UCVXSettings;

/** What one run of the program uses in place of its settings. What isn't set stays as the settings have it. */
struct FCVXSessionChoice
{
	/** Serves every agent. One that the settings don't hold under this name is added for the run. */
	TOptional<FCVXProviderProfile> Provider;
	/** The active agent's name. */
	TOptional<FString> Agent;
	/** Of every agent. */
	TOptional<ECVXApprovalMode> ApprovalMode;
};

/**
 * Puts the choices of one run into the settings in memory, where all that reads settings finds them, and keeps them out
 * of the file: a save writes what they replaced. What the user changes during the run counts as any other change and is
 * saved. One for the process, as there is one settings object. Game thread.
 */
class FCVXSessionOverrides
{
public:
	static FCVXSessionOverrides& Get();

	/** Applies a choice in place of the one before. The agents are those of the settings now. */
	void Apply(UCVXSettings& Settings, const FCVXSessionChoice& InChoice);
	/** Gives the settings back what was replaced and not changed since. */
	void Revert(UCVXSettings& Settings);

	/** While it lives, the settings are those to save. Pointers into their profiles stay valid, but show the run's. */
	class FLift
	{
	public:
		explicit FLift(UCVXSettings& InSettings);
		~FLift();
		FLift(const FLift&) = delete;
		FLift& operator=(const FLift&) = delete;

	private:
		void SwapProfiles();

		UCVXSettings& Settings;
		TArray<FCVXProviderProfile> Providers;
		TArray<FCVXAgentProfile> Agents;
		FString ActiveAgent;
	};

private:
	/** What an agent had before. */
	struct FAgentBefore
	{
		FString Name;
		FString ProviderProfileName;
		ECVXApprovalMode ApprovalMode;
	};

	FCVXSessionOverrides() = default;

	void AddProvider(UCVXSettings& Settings);
	void RestoreProviders(TArray<FCVXProviderProfile>& Providers) const;
	void RestoreAgents(TArray<FCVXAgentProfile>& Agents) const;
	FString RestoreActiveAgent(const FString& Current) const;

	FCVXSessionChoice Choice;
	TArray<FAgentBefore> AgentsBefore;
	FString ActiveAgentBefore;
	/** Whether the provider profile is in the settings for the run alone. */
	bool bProviderAdded = false;
};
