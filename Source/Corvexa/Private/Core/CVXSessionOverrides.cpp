#include "Core/CVXSessionOverrides.h"

#include "Core/CVXSettings.h"

FCVXSessionOverrides& FCVXSessionOverrides::Get()
{
	static FCVXSessionOverrides Overrides;
	return Overrides;
}

void FCVXSessionOverrides::Apply(UCVXSettings& Settings, const FCVXSessionChoice& InChoice)
{
	Revert(Settings);
	Choice = InChoice;
	ActiveAgentBefore = Settings.ActiveAgentProfile;
	Settings.ActiveAgentProfile = Choice.Agent.Get(ActiveAgentBefore);
	AddProvider(Settings);
	for (FCVXAgentProfile& Agent : Settings.AgentProfiles)
	{
		AgentsBefore.Add({Agent.ProfileName, Agent.ProviderProfileName, Agent.ApprovalMode});
		if (Choice.Provider)
		{
			Agent.ProviderProfileName = Choice.Provider->ProfileName;
		}
		Agent.ApprovalMode = Choice.ApprovalMode.Get(Agent.ApprovalMode);
	}
}

void FCVXSessionOverrides::AddProvider(UCVXSettings& Settings)
{
	bProviderAdded = Choice.Provider && !Settings.GetProviderProfileNames().Contains(Choice.Provider->ProfileName);
	if (bProviderAdded)
	{
		Settings.ProviderProfiles.Add(*Choice.Provider);
	}
}

void FCVXSessionOverrides::Revert(UCVXSettings& Settings)
{
	RestoreProviders(Settings.ProviderProfiles);
	RestoreAgents(Settings.AgentProfiles);
	Settings.ActiveAgentProfile = RestoreActiveAgent(Settings.ActiveAgentProfile);
	Choice = FCVXSessionChoice();
	AgentsBefore.Empty();
	ActiveAgentBefore.Empty();
	bProviderAdded = false;
}

void FCVXSessionOverrides::RestoreProviders(TArray<FCVXProviderProfile>& Providers) const
{
	if (bProviderAdded)
	{
		Providers.RemoveAll(
			[this](const FCVXProviderProfile& Each) { return Each.ProfileName == Choice.Provider->ProfileName; });
	}
}

void FCVXSessionOverrides::RestoreAgents(TArray<FCVXAgentProfile>& Agents) const
{
	for (FCVXAgentProfile& Agent : Agents)
	{
		const FAgentBefore* Before =
			AgentsBefore.FindByPredicate([&](const FAgentBefore& Each) { return Each.Name == Agent.ProfileName; });
		if (Before && Choice.Provider && Agent.ProviderProfileName == Choice.Provider->ProfileName)
		{
			Agent.ProviderProfileName = Before->ProviderProfileName;
		}
		if (Before && Choice.ApprovalMode && Agent.ApprovalMode == *Choice.ApprovalMode)
		{
			Agent.ApprovalMode = Before->ApprovalMode;
		}
	}
}

FString FCVXSessionOverrides::RestoreActiveAgent(const FString& Current) const
{
	return Choice.Agent && Current == *Choice.Agent ? ActiveAgentBefore : Current;
}

FCVXSessionOverrides::FLift::FLift(UCVXSettings& InSettings)
	: Settings(InSettings)
	, Providers(InSettings.ProviderProfiles)
	, Agents(InSettings.AgentProfiles)
{
	const FCVXSessionOverrides& Overrides = FCVXSessionOverrides::Get();
	Overrides.RestoreProviders(Providers);
	Overrides.RestoreAgents(Agents);
	ActiveAgent = Overrides.RestoreActiveAgent(Settings.ActiveAgentProfile);
	SwapProfiles();
}

FCVXSessionOverrides::FLift::~FLift()
{
	SwapProfiles();
}

void FCVXSessionOverrides::FLift::SwapProfiles()
{
	Swap(Settings.ProviderProfiles, Providers);
	Swap(Settings.AgentProfiles, Agents);
	Swap(Settings.ActiveAgentProfile, ActiveAgent);
}
