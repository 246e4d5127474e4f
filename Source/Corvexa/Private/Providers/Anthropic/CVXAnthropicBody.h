#pragma once

#include "Core/CVXProfiles.h"
#include "Providers/CVXProvider.h"

/** The request body of the Anthropic Messages API. */
namespace CVXAnthropic
{
/** @return the body as JSON text, its members in the order that the vendor's prompt cache relies on. */
FString BuildBody(const FCVXProviderProfile& Profile, const FCVXProviderRequest& Request);
} // namespace CVXAnthropic
