#pragma once

#include "Logging/LogMacros.h"

DECLARE_LOG_CATEGORY_EXTERN(LogProperty, Log, All);
DECLARE_LOG_CATEGORY_EXTERN(LogObj, Log, All);
