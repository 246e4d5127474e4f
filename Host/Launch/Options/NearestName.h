#pragma once

#include "Containers/UnrealString.h"

/**
 * The candidate that a mistyped word most likely means, ignoring case: the one with the fewest letters put in, left
 * out, changed or exchanged. @return empty when none is near enough to be worth a guess.
 */
FString FindNearestName(const FString& Word, const TArray<FString>& Candidates);
