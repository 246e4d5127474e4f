#pragma once

#include "Containers/UnrealString.h"

/**
 * A preview of a change as a unified diff. Of longer files the first 2000 lines are compared, and the diff says so at
 * its end. Any thread.
 * @param FilePath as it shall be shown. @param ContextLines equal lines around each change, 0 or more.
 * @return "(no changes)" when the texts are equal but for case and line ends.
 */
FString GenerateUnifiedDiff(
	const FString& OldText, const FString& NewText, const FString& FilePath, int32 ContextLines);
