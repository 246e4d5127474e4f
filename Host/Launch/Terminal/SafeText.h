#pragma once

#include "Containers/UnrealString.h"

/**
 * What a terminal may be shown of a text from outside: control characters other than newline and tab, and characters
 * that turn the reading direction, come out as visible names, so that no text can move the cursor, change settings or
 * look like another. Carriage returns are left out.
 */
FString MakeSafeText(FStringView Text);
