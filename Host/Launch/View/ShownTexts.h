#pragma once

#include "Core/CVXTypes.h"

struct FShownUsage;

/** The words in which states, outcomes and figures are shown. */
namespace ShownTexts
{
/** Empty for a state that needs no word. */
FString DescribeState(ECVXTaskState State);

/** The first line of a text, at most so many characters, and how much more there is. */
FString SumUp(const FString& Text, int32 MaxChars);

/** "0.4 s", "12 s", "3 min 5 s". */
FString FormatSeconds(double Seconds);

/** Tokens and time. */
FString DescribeUsage(const FShownUsage& Usage);
} // namespace ShownTexts
