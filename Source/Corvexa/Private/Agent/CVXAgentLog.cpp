#include "Agent/CVXAgentLog.h"

DEFINE_LOG_CATEGORY(LogCVXAgentLoop);

FString CVXAgentLog::Cut(const FString& Text)
{
	constexpr int32 MaxChars = 200;
	return Text.Len() > MaxChars ? Text.Left(MaxChars) + TEXT("...") : Text;
}
