#pragma once

#include "Containers/UnrealString.h"

/**
 * The path in a patch's file header. @param Header what follows "--- " or "+++ ": a path, in double quotes with
 * backslash escapes where it has unusual characters, then perhaps a tab and a time. Any thread.
 */
FString ReadPatchPath(FStringView Header);
