#pragma once

#include "Logging/LogMacros.h"

/** The dialect's requests and answers. */
DECLARE_LOG_CATEGORY_EXTERN(LogCVXOpenAIProvider, Log, All);
