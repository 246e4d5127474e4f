#pragma once

#include "Logging/LogMacros.h"

/** Saving and restoring of conversations. */
DECLARE_LOG_CATEGORY_EXTERN(LogCVXCheckpoint, Log, All);
