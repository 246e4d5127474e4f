#pragma once

#include "Logging/LogMacros.h"

/** The lexical index of the project's source. */
DECLARE_LOG_CATEGORY_EXTERN(LogCVXBM25, Log, All);
