#pragma once

#include "Core/CVXProfiles.h"
#include "Providers/CVXProvider.h"

/** The request body of chat completions. */
namespace CVXOpenAI
{
/** @return the body as JSON text. Every tool call in it is answered right behind its message, whatever the history. */
FString BuildBody(const FCVXProviderProfile& Profile, const FCVXProviderRequest& Request);
} // namespace CVXOpenAI
