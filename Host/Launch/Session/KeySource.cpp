#include "Launch/Session/KeySource.h"

#include "Core/CVXProfiles.h"
#include "HAL/PlatformMisc.h"
#include "Providers/CVXProviderFactory.h"

EKeySource FindKeySource(const FCVXProviderProfile& Profile, bool bLocal)
{
	const FString Key = FCVXProviderFactory::GetApiKey(Profile);
	if (Key.IsEmpty())
	{
		return bLocal ? EKeySource::NotNeeded : EKeySource::Missing;
	}
	if (Key.Equals(Profile.ApiKeyEnvVar))
	{
		return bLocal ? EKeySource::NotNeeded : EKeySource::Profile;
	}
	return FPlatformMisc::GetEnvironmentVariable(*Profile.ApiKeyEnvVar).IsEmpty() ? EKeySource::KeyFile
																				  : EKeySource::Environment;
}

FString DescribeKeySource(EKeySource Source, const FString& Variable)
{
	switch (Source)
	{
	case EKeySource::NotNeeded:
		return TEXT("local, no key needed");
	case EKeySource::Environment:
		return FString::Printf(TEXT("key found in the environment, %s"), *Variable);
	case EKeySource::KeyFile:
		return FString::Printf(TEXT("key found in Saved/CVX/apikeys.cfg, %s"), *Variable);
	case EKeySource::Profile:
		return TEXT("key found in a profile");
	case EKeySource::Missing:
		break;
	}
	return Variable.IsEmpty() ? FString(TEXT("no key; a profile tells which variable holds it"))
							  : FString::Printf(TEXT("no key; %s would hold it"), *Variable);
}

const TCHAR* GetKeySourceName(EKeySource Source)
{
	switch (Source)
	{
	case EKeySource::NotNeeded:
		return TEXT("not_needed");
	case EKeySource::Environment:
		return TEXT("environment");
	case EKeySource::KeyFile:
		return TEXT("key_file");
	case EKeySource::Profile:
		return TEXT("profile");
	case EKeySource::Missing:
		break;
	}
	return TEXT("missing");
}
