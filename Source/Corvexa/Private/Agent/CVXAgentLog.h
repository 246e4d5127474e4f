#pragma once

#include "CoreMinimal.h"
#include "Logging/LogMacros.h"

/** The agent loop and its rules. */
DECLARE_LOG_CATEGORY_EXTERN(LogCVXAgentLoop, Log, All);

namespace CVXAgentLog
{
/** The beginning of a call's input or of a result, 200 characters at most, with "..." when cut. */
FString Cut(const FString& Text);
} // namespace CVXAgentLog
