#include "Core/CVXVisionSupport.h"

#include "Core/CVXProfiles.h"

namespace
{
const TCHAR* const BlindModels[] = {TEXT("o1"), TEXT("o1-mini"), TEXT("o3-mini")};

const TCHAR* const BlindFamilies[] = {
	TEXT("deepseek"), TEXT("o1-"), TEXT("o3-mini"), TEXT("mistral"), TEXT("codestral"), TEXT("open-mistral")};
} // namespace

bool CVXVisionSupport::LacksVision(const FCVXProviderProfile& Profile)
{
	for (const TCHAR* Model : BlindModels)
	{
		if (Profile.ModelId == Model)
		{
			return true;
		}
	}
	for (const TCHAR* Family : BlindFamilies)
	{
		if (Profile.ModelId.Contains(Family))
		{
			return true;
		}
	}
	return Profile.BaseURL.Contains(TEXT("localhost"));
}
