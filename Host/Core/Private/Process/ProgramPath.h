#pragma once

#include "Containers/UnrealString.h"

/**
 * The full path of a program. A name without a slash is looked up in the PATH of the children's environment; a relative
 * path begins at our own working directory, wherever the child will run. @return empty, with `errno` set, when there is
 * no such program that we may run.
 */
FString FindProgram(const FString& Program);
