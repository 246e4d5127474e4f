#include "Logging/LogVerbosity.h"

#include "Misc/CString.h"

namespace
{
constexpr const TCHAR* Names[] = {TEXT("NoLogging"), TEXT("Fatal"), TEXT("Error"), TEXT("Warning"), TEXT("Display"),
	TEXT("Log"), TEXT("Verbose"), TEXT("VeryVerbose")};
}

const TCHAR* ToString(ELogVerbosity::Type Verbosity)
{
	const int32 Index = Verbosity & ELogVerbosity::VerbosityMask;
	return Index < ELogVerbosity::NumVerbosity ? Names[Index] : TEXT("Unknown");
}

bool ParseLogVerbosity(const TCHAR* Name, ELogVerbosity::Type& OutVerbosity)
{
	if (FCString::Stricmp(Name, TEXT("All")) == 0)
	{
		OutVerbosity = ELogVerbosity::All;
		return true;
	}
	for (int32 Index = 0; Index < ELogVerbosity::NumVerbosity; ++Index)
	{
		if (FCString::Stricmp(Name, Names[Index]) == 0)
		{
			OutVerbosity = (ELogVerbosity::Type)Index;
			return true;
		}
	}
	return false;
}
