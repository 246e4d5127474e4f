#include "Agent/CVXAgentLog.h"

DEFINE_LOG_CATEGORY(LogCVXAgentLoop);
