#pragma once

#include "CoreGlobals.h"

/** What runs. */
struct FApp
{
	/** The project's name; "None" without a project. */
	static const TCHAR* GetProjectName() { return GInternalProjectName[0] ? GInternalProjectName : TEXT("None"); }
	static bool IsUnattended() { return GIsRunningUnattendedScript; }
};
