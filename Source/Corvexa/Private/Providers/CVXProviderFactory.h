#pragma once

#include "Providers/CVXProvider.h"

struct FCVXProviderProfile;

/** Turns provider profiles into live providers and finds their API keys. */
class FCVXProviderFactory
{
public:
	/** @return null for a profile whose type no dialect serves, which is logged. Game thread. */
	static TUniquePtr<ICVXProvider> CreateProvider(const FCVXProviderProfile& Profile);

	/**
	 * The key that the profile names: the name itself when it looks like a key, else the environment variable, else the
	 * line of that name in `Saved/CVX/apikeys.cfg`, read at each call. Empty when there is none. Any thread.
	 */
	static FString GetApiKey(const FCVXProviderProfile& Profile);

	static bool HasApiKey(const FCVXProviderProfile& Profile);
};
