#include "Core/CVXLog.h"

DEFINE_LOG_CATEGORY(LogCorvexa);
