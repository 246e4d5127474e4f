#include "Providers/OpenAI/CVXOpenAILog.h"

DEFINE_LOG_CATEGORY(LogCVXOpenAIProvider);
