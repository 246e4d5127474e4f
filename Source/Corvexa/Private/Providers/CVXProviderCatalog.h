#pragma once

#include "Core/CVXProfiles.h"

/** A vendor that profiles can be made for. */
struct FCVXProviderEntry
{
	/** Lower-case key. */
	FString Id;
	FString DisplayName;
	ECVXProviderType ProviderType = ECVXProviderType::OpenAICompat;
	/** Empty takes the dialect's own root. */
	FString DefaultBaseURL;
	FString ApiKeyEnvVar;
	/** A server on the user's machine, which tells its models itself. */
	bool bIsLocal = false;
};

/** A model of a vendor, with what a new profile for it begins with. */
struct FCVXModelEntry
{
	FString ModelId;
	FString DisplayName;
	/** The vendor's `Id`. */
	FString ProviderId;
	float Temperature = 0.7f;
	/** Output limit in tokens. */
	int32 MaxTokens = 8192;
	/** Context window in tokens. */
	int32 MaxContextTokens = 0;
	bool bSupportsVision = true;
	bool bSupportsToolUse = true;
};

/**
 * The vendors and models that come with the plug-in. It only advises: a profile may name any model and any URL. The
 * tables are made on first use, which is on the game thread, and never change; pointers into them stay good.
 */
class FCVXProviderCatalog
{
public:
	static const TArray<FCVXProviderEntry>& GetProviders();
	static const TArray<FCVXModelEntry>& GetAllModels();

	/** Ids compare without regard to case. @return null when there is none. */
	static const FCVXProviderEntry* FindProvider(const FString& Id);
	/** The vendor is part of the key, since several offer a model of the same id. */
	static const FCVXModelEntry* FindModel(const FString& ProviderId, const FString& ModelId);
	/** @return copies, in the order of the table. */
	static TArray<FCVXModelEntry> GetModelsForProvider(const FString& ProviderId);

	/** The vendor that a stored profile was made for. @return null when its URL and key fit none. */
	static const FCVXProviderEntry* FindProviderForProfile(const FCVXProviderProfile& Profile);
};
