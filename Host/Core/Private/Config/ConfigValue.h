#pragma once

#include "Containers/UnrealString.h"

/** How a value is written behind the equals sign. */
namespace ConfigValue
{
/** The value as it stands, or in double quotes with escapes when blanks, quotes or line ends would be lost. */
FString Quote(const FString& Value);

/** Reads what `Quote` writes. @return false when a quote isn't closed; the value is then the text as it stands. */
bool Unquote(FStringView Text, FString& OutValue);
} // namespace ConfigValue
