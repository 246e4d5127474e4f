#pragma once

#include "Core/CVXProfiles.h"
#include "Providers/CVXProvider.h"

/** The request body of `streamGenerateContent`. */
namespace CVXGemini
{
/** @return the body as JSON text. The model isn't in it: it stands in the URL. */
FString BuildBody(const FCVXProviderProfile& Profile, const FCVXProviderRequest& Request);
} // namespace CVXGemini
