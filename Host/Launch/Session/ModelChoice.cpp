#include "Launch/Session/ModelChoice.h"

#include "Core/CVXSettings.h"
#include "Launch/Demo/DemoDialect.h"
#include "Launch/Options/LaunchOptions.h"
#include "Launch/Options/NearestName.h"
#include "Providers/CVXProviderFactory.h"

namespace
{
/** A sentence that says what there is in place of an unknown name. */
FString DescribeUnknown(const TCHAR* Kind, const FString& Name, const TArray<FString>& Known)
{
	const FString Nearest = FindNearestName(Name, Known);
	return FString::Printf(TEXT("no %s is named '%s'; "), Kind, *Name) +
		(Nearest.IsEmpty() ? TEXT("there are: ") + FString::Join(Known, TEXT(", "))
						   : FString::Printf(TEXT("did you mean '%s'?"), *Nearest));
}

const FCVXProviderProfile* FindUsualProvider(const FLaunchOptions& Options, const UCVXSettings& Settings)
{
	if (!Options.Provider.IsEmpty())
	{
		return Settings.FindProviderProfile(Options.Provider);
	}
	const FCVXAgentProfile* Agent =
		Settings.FindAgentProfile(Options.Agent.IsEmpty() ? Settings.ActiveAgentProfile : Options.Agent);
	return Settings.FindProviderProfile(Agent ? Agent->ProviderProfileName : Settings.ActiveProviderProfile);
}

FCVXProviderProfile WithModel(const FCVXProviderProfile& Profile, const FString& Model)
{
	FCVXProviderProfile Result = Profile;
	Result.ProfileName = FString::Printf(TEXT("%s (%s)"), *Profile.ProfileName, *Model);
	Result.ModelId = Model;
	return Result;
}
} // namespace

FModelChoice FModelChoice::Make(const FLaunchOptions& Options, const UCVXSettings& Settings)
{
	FModelChoice Choice;
	Choice.Overrides.ApprovalMode = Options.ApprovalMode;
	if (!Options.Agent.IsEmpty())
	{
		if (!Settings.GetAgentProfileNames().Contains(Options.Agent))
		{
			Choice.Error = DescribeUnknown(TEXT("agent profile"), Options.Agent, Settings.GetAgentProfileNames());
			return Choice;
		}
		Choice.Overrides.Agent = Options.Agent;
	}
	TArray<FString> Providers = Settings.GetProviderProfileNames();
	const bool bProviderKnown = Options.Provider.IsEmpty() || Providers.Contains(Options.Provider);
	// A profile of the user's own goes first, whatever its name.
	Choice.Demo = bProviderKnown ? nullptr : FindDemoDialect(Options.Provider);
	if (!bProviderKnown && !Choice.Demo)
	{
		for (const IDemoDialect* Dialect : GetDemoDialects())
		{
			Providers.Add(Dialect->GetName());
		}
		Choice.Error = DescribeUnknown(TEXT("provider profile"), Options.Provider, Providers);
		return Choice;
	}
	const FCVXProviderProfile* Usual = FindUsualProvider(Options, Settings);
	if (!Choice.Demo && Options.Provider.IsEmpty() && (!Usual || !FCVXProviderFactory::HasApiKey(*Usual)))
	{
		Choice.Demo = GetDemoDialects()[0];
		Choice.Notice =
			FString::Printf(TEXT("No API key was found (%s, in the environment or in Saved/CVX/apikeys.cfg).\n"),
				Usual ? *Usual->ApiKeyEnvVar : TEXT("no provider profile"));
	}
	if (Choice.Demo)
	{
		Choice.Notice += TEXT("The built-in demo model answers: its words are scripted, all else is real.");
	}
	else if (Usual && !Options.Model.IsEmpty())
	{
		Choice.Overrides.Provider = WithModel(*Usual, Options.Model);
	}
	else if (Usual && !Options.Provider.IsEmpty())
	{
		Choice.Overrides.Provider = *Usual;
	}
	return Choice;
}
