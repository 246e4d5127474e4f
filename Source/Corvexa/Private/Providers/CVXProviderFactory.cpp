#include "Providers/CVXProviderFactory.h"

#include "Core/CVXApiKeysFile.h"
#include "Core/CVXLog.h"
#include "Core/CVXProfiles.h"
#include "HAL/PlatformMisc.h"
#include "Providers/Anthropic/CVXAnthropicProvider.h"

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
} // namespace

TUniquePtr<ICVXProvider> FCVXProviderFactory::CreateProvider(const FCVXProviderProfile& Profile)
{
	if (Profile.ProviderType == ECVXProviderType::Anthropic)
	{
		return MakeUnique<FCVXAnthropicProvider>(Profile);
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
