#include "Core/CVXSettings.h"

#include "Core/CVXLog.h"
#include "Core/CVXSessionOverrides.h"
#include "Core/CVXSettingsMigrations.h"
#include "Core/Profiles/CVXBuiltInProfiles.h"
#include "Misc/ConfigCacheIni.h"

namespace
{
template <typename ProfileType>
const ProfileType* FindOrFirst(const TArray<ProfileType>& Profiles, const FString& Name)
{
	const ProfileType* Found =
		Profiles.FindByPredicate([&](const ProfileType& Profile) { return Profile.ProfileName == Name; });
	return Found || Profiles.IsEmpty() ? Found : &Profiles[0];
}

template <typename ProfileType>
TArray<FString> NamesOf(const TArray<ProfileType>& Profiles)
{
	TArray<FString> Names;
	for (const ProfileType& Profile : Profiles)
	{
		Names.Add(Profile.ProfileName);
	}
	return Names;
}
} // namespace

UCVXSettings* UCVXSettings::Get()
{
	return GetMutableDefault<UCVXSettings>();
}

const FCVXProviderProfile* UCVXSettings::FindProviderProfile(const FString& Name) const
{
	return FindOrFirst(ProviderProfiles, Name);
}

const FCVXAgentProfile* UCVXSettings::FindAgentProfile(const FString& Name) const
{
	return FindOrFirst(AgentProfiles, Name);
}

TArray<FString> UCVXSettings::GetProviderProfileNames() const
{
	return NamesOf(ProviderProfiles);
}

TArray<FString> UCVXSettings::GetAgentProfileNames() const
{
	return NamesOf(AgentProfiles);
}

void UCVXSettings::SaveToDefaultConfig()
{
	const FCVXSessionOverrides::FLift WithoutOverrides(*this);
	const FString File = GetDefaultConfigFilename();
	SaveConfig(CPF_Config, *File, GConfig);
	UE_LOG(LogCorvexa, Log, TEXT("CVXSettings: saved to %s"), *File);
}

void UCVXSettings::PostInitProperties()
{
	Super::PostInitProperties();
	if (!HasAnyFlags(RF_ClassDefaultObject))
	{
		return;
	}
	UE_LOG(LogCorvexa, Log, TEXT("CVXSettings: PostInitProperties — AgentProfiles=%d ProviderProfiles=%d"),
		AgentProfiles.Num(), ProviderProfiles.Num());
	if (ProviderProfiles.IsEmpty())
	{
		ProviderProfiles.AddDefaulted();
	}
	CVXSettingsMigrations::Run(*this);
	CVXBuiltInProfiles::Ensure(AgentProfiles);
}

void UCVXSettings::PostEditChangeProperty(FPropertyChangedEvent& PropertyChangedEvent)
{
	Super::PostEditChangeProperty(PropertyChangedEvent);
	SaveToDefaultConfig();
}

FName UCVXSettings::GetCategoryName() const
{
	return TEXT("Plugins");
}

FName UCVXSettings::GetSectionName() const
{
	return TEXT("Corvexa");
}
