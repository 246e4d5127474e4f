#include "Logging/LogMacros.h"

#include "Misc/OutputDeviceRedirector.h"

#include <cstdlib>

DEFINE_LOG_CATEGORY(LogTemp);
DEFINE_LOG_CATEGORY(LogCore);

void FMsg::LogPacked(const FLogCategoryBase& Category, ELogVerbosity::Type Verbosity, const TCHAR* Format,
	TArrayView<const FFormatArg> Args)
{
	FString Text;
	AppendFormatted(Text, Format, Args);
	FOutputDeviceRedirector::Get()->Serialize(*Text, Verbosity, Category.GetCategoryName());
	if (Verbosity == ELogVerbosity::Fatal)
	{
		FOutputDeviceRedirector::Get()->Flush();
		std::abort();
	}
}
