#include "Launch/Session/ModelList.h"

#include "Core/CVXSettings.h"

namespace
{
/** Where profiles stand whose vendor isn't known. */
constexpr const TCHAR* OtherVendor = TEXT("custom");

FListedVendor MakeVendor(const FCVXProviderEntry& Vendor)
{
	FListedVendor Listed{Vendor, EKeySource::Missing, Vendor.ApiKeyEnvVar, {}};
	FCVXProviderProfile Profile;
	Profile.ApiKeyEnvVar = Vendor.ApiKeyEnvVar;
	Listed.Key = FindKeySource(Profile, Vendor.bIsLocal);
	for (FCVXModelEntry& Model : FCVXProviderCatalog::GetModelsForProvider(Vendor.Id))
	{
		Listed.Models.Add({MoveTemp(Model), {}, false});
	}
	return Listed;
}

FListedModel& FindOrAddModel(FListedVendor& Vendor, const FCVXProviderProfile& Profile)
{
	FListedModel* Known =
		Vendor.Models.FindByPredicate([&](const FListedModel& Each) { return Each.Model.ModelId == Profile.ModelId; });
	if (Known)
	{
		return *Known;
	}
	FCVXModelEntry Model;
	Model.ModelId = Profile.ModelId;
	Model.DisplayName = Profile.ModelId;
	Model.ProviderId = Vendor.Vendor.Id;
	Model.MaxTokens = Profile.MaxTokens;
	Model.MaxContextTokens = Profile.MaxContextTokens;
	Model.bSupportsVision = Profile.bSupportsVision;
	return Vendor.Models.Add_GetRef({Model, {}, false});
}

void AddProfile(FListedVendor& Vendor, const FCVXProviderProfile& Profile, bool bActive)
{
	const EKeySource Key = FindKeySource(Profile, Vendor.Vendor.bIsLocal);
	if (Vendor.Key == EKeySource::Missing)
	{
		Vendor.Key = Key;
		// What stands in the place of a variable's name may be the key itself, which nobody is shown.
		const bool bVariable = Key == EKeySource::Environment || Key == EKeySource::KeyFile;
		Vendor.KeyVariable = bVariable ? Profile.ApiKeyEnvVar : Vendor.Vendor.ApiKeyEnvVar;
	}
	FListedModel& Model = FindOrAddModel(Vendor, Profile);
	Model.Profiles.Add(Profile.ProfileName);
	Model.bActive |= bActive;
}

FString FindActiveProfile(const UCVXSettings& Settings)
{
	const FCVXAgentProfile* Agent = Settings.FindAgentProfile(Settings.ActiveAgentProfile);
	const FCVXProviderProfile* Active =
		Settings.FindProviderProfile(Agent ? Agent->ProviderProfileName : Settings.ActiveProviderProfile);
	return Active ? Active->ProfileName : FString();
}
} // namespace

TArray<FListedVendor> ListVendors(const UCVXSettings& Settings)
{
	TArray<FListedVendor> Vendors;
	for (const FCVXProviderEntry& Vendor : FCVXProviderCatalog::GetProviders())
	{
		Vendors.Add(MakeVendor(Vendor));
	}
	const FString Active = FindActiveProfile(Settings);
	for (const FCVXProviderProfile& Profile : Settings.ProviderProfiles)
	{
		const FCVXProviderEntry* Known = FCVXProviderCatalog::FindProviderForProfile(Profile);
		const FString Id = Known ? Known->Id : FString(OtherVendor);
		FListedVendor* Vendor =
			Vendors.FindByPredicate([&](const FListedVendor& Each) { return Each.Vendor.Id == Id; });
		check(Vendor);
		AddProfile(*Vendor, Profile, Profile.ProfileName == Active);
	}
	return Vendors;
}
