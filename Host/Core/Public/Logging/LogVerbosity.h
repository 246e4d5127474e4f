#pragma once

#include "HAL/Platform.h"

/** How grave a message is: the smaller, the graver. */
namespace ELogVerbosity
{
enum Type : uint8
{
	NoLogging = 0,
	/** Ends the process. */
	Fatal,
	Error,
	Warning,
	Display,
	Log,
	Verbose,
	VeryVerbose,
	All = VeryVerbose,
	NumVerbosity,
	VerbosityMask = 0x0f
};
}

/** "Warning" and the like. */
const TCHAR* ToString(ELogVerbosity::Type Verbosity);

/** Reads a name in any case. @return false, and no change, for an unknown one. */
bool ParseLogVerbosity(const TCHAR* Name, ELogVerbosity::Type& OutVerbosity);
