#pragma once

#include "Dom/JsonObject.h"

namespace CVXJsonObject
{
/** @return the object that the text holds; null when it is no JSON or holds something else. */
TSharedPtr<FJsonObject> Parse(const FString& Json);
} // namespace CVXJsonObject
