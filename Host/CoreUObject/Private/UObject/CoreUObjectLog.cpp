#if __has_include("Logging/LogMacros.h")
#include "UObject/CoreUObjectLog.h"

DEFINE_LOG_CATEGORY(LogProperty);
DEFINE_LOG_CATEGORY(LogObj);
#endif
