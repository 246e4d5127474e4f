#pragma once

#include "Containers/UnrealString.h"

/**
 * Finds the project that the command line means.
 * @param Given a directory or a project file; empty means the working directory. A directory without a project file is
 * a project named after it. @param OutFile absolute. @return false, with one line for the user, when there is none.
 */
bool FindProjectFile(const FString& Given, FString& OutFile, FString& OutError);
