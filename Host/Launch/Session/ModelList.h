#pragma once

#include "Launch/Session/KeySource.h"
#include "Providers/CVXProviderCatalog.h"

class UCVXSettings;

/** A model that can be chosen, and who has chosen it. */
struct FListedModel
{
	/** Of the catalog, or made from a profile with a model of its own. */
	FCVXModelEntry Model;
	/** The stored profiles that use it. */
	TArray<FString> Profiles;
	/** The active agent's profile is among them. */
	bool bActive = false;
};

/** A vendor with what can be had of it. */
struct FListedVendor
{
	FCVXProviderEntry Vendor;
	/** Of its own variable, or of the first profile whose key is found. */
	EKeySource Key = EKeySource::Missing;
	FString KeyVariable;
	TArray<FListedModel> Models;
};

/** The catalog's vendors in its order, with the models that stored profiles add to them. */
TArray<FListedVendor> ListVendors(const UCVXSettings& Settings);
