#pragma once

#include "Logging/LogMacros.h"

/** The agent loop and its rules. */
DECLARE_LOG_CATEGORY_EXTERN(LogCVXAgentLoop, Log, All);
