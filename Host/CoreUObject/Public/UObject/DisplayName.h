#pragma once

#include "Containers/UnrealString.h"

/** Makes words of a name of code: `bIsEnabled` becomes "Is Enabled", `MaxHTTPRetries` "Max HTTP Retries". */
FString NameToDisplayString(const FString& Name, bool bIsBool);
