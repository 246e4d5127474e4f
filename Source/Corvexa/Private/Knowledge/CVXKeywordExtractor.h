#pragma once

#include "CoreMinimal.h"

/** The words of a text that say what it is about, for looking things up. Any thread. */
namespace CVXKeywordExtractor
{
/** Most keywords that a text gives. */
constexpr int32 MaxKeywords = 12;

/**
 * At most twelve keywords with single blanks between them: names as programs have them first, the latest in front, then
 * the other words in their order. Stop words, paths, numbers and names of this plug-in's own parts are left out.
 */
FString ExtractKeywords(const FString& Text);
} // namespace CVXKeywordExtractor
