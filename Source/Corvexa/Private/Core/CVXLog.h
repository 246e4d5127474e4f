#pragma once

#include "Logging/LogMacros.h"

/** What belongs to no component of its own. */
DECLARE_LOG_CATEGORY_EXTERN(LogCorvexa, Log, All);
