#pragma once

#include "Tools/Edit/CVXPatch.h"

/**
 * Reads a unified diff. What stands around the file patches is passed over. The counts of a hunk tell its lines from
 * what merely looks like a header, and from empty lines behind it; where they are wrong, every line that has a marker
 * counts. Any thread.
 */
TArray<FCVXFilePatch> ParsePatch(const FString& Patch);
