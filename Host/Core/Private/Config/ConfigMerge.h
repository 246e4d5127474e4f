#pragma once

#include "Containers/Array.h"
#include "Containers/UnrealString.h"

/**
 * Carries out on Theirs what has become of Base in Mine. Values are the same when they are so to the letter. What was
 * changed in its place, in a list that hasn't become shorter, is changed where it stands now; what is new goes to the
 * end, what is gone goes, and the rest of Theirs stays. When Theirs is Base, the result is Mine.
 */
TArray<FString> MergeArray(const TArray<FString>& Base, const TArray<FString>& Mine, const TArray<FString>& Theirs);
