#include "Providers/CVXProviderFactory.h"

#include "Core/CVXApiKeysFile.h"
#include "Core/CVXLog.h"
#include "Core/CVXProfiles.h"
#include "HAL/PlatformMisc.h"
#include "Providers/Anthropic/CVXAnthropicProvider.h"
#include "Providers/CVXProviderCatalog.h"
#include "Providers/Gemini/CVXGeminiProvider.h"
#include "Providers/OpenAI/CVXOpenAIProvider.h"

namespace
{
/** Variables are named in upper case, and keys that are pasted in aren't written so. */
bool LooksLikeKey(const FString& Name)
{
	for (const TCHAR Char : Name)
	{
		if (FChar::IsLower(Char) || Char == TEXT('-'))
		{
			return true;
		}
	}
	return false;
}

/** Profiles stored under the old type name no URL. */
FCVXProviderProfile WithOpenRouterURL(FCVXProviderProfile Profile)
{
	if (Profile.BaseURL.IsEmpty())
	{
		const FCVXProviderEntry* Vendor = FCVXProviderCatalog::FindProvider(TEXT("openrouter"));
		check(Vendor);
		Profile.BaseURL = Vendor->DefaultBaseURL;
	}
	return Profile;
}
} // namespace

TUniquePtr<ICVXProvider> FCVXProviderFactory::CreateProvider(const FCVXProviderProfile& Profile)
{
	switch (Profile.ProviderType)
	{
	case ECVXProviderType::Anthropic:
		return MakeUnique<FCVXAnthropicProvider>(Profile);
	case ECVXProviderType::Gemini:
		return MakeUnique<FCVXGeminiProvider>(Profile);
	case ECVXProviderType::OpenAICompat:
	case ECVXProviderType::Custom:
		return MakeUnique<FCVXOpenAIProvider>(Profile);
	case ECVXProviderType::OpenRouter:
		return MakeUnique<FCVXOpenAIProvider>(WithOpenRouterURL(Profile));
	}
	UE_LOG(LogCorvexa, Error, TEXT("CVXProviderFactory: Unknown provider type %d for profile '%s'"),
		(int32)Profile.ProviderType, *Profile.ProfileName);
	return nullptr;
}

FString FCVXProviderFactory::GetApiKey(const FCVXProviderProfile& Profile)
{
	const FString& Name = Profile.ApiKeyEnvVar;
	if (Name.IsEmpty() || LooksLikeKey(Name))
	{
		return Name;
	}
	const FString FromEnvironment = FPlatformMisc::GetEnvironmentVariable(*Name);
	return FromEnvironment.IsEmpty() ? FCVXApiKeysFile::FindKey(Name) : FromEnvironment;
}

bool FCVXProviderFactory::HasApiKey(const FCVXProviderProfile& Profile)
{
	return !GetApiKey(Profile).IsEmpty();
}
