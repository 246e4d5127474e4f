#pragma once

#include "Logging/LogMacros.h"

/** One connection: its process, its messages, its tools. */
DECLARE_LOG_CATEGORY_EXTERN(LogCVXMCP, Log, All);
/** Which servers run, and what is done about those that crash. */
DECLARE_LOG_CATEGORY_EXTERN(LogCVXMCPManager, Log, All);
