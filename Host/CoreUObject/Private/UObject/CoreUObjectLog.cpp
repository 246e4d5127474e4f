#include "UObject/CoreUObjectLog.h"

DEFINE_LOG_CATEGORY(LogProperty);
DEFINE_LOG_CATEGORY(LogObj);
