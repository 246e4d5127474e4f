#pragma once

#include "Containers/Array.h"
#include "Containers/UnrealString.h"

/**
 * Cuts a command line into its arguments. Blanks, tabs and line ends separate; double quotes keep them, and may begin
 * and end within an argument; a backslash in front of a quote makes it plain, any other backslash stands for itself. An
 * argument that ends in a backslash has it behind its closing quote. A quote that isn't closed reaches to the end.
 */
TArray<FString> SplitCommandLine(const TCHAR* CommandLine);
