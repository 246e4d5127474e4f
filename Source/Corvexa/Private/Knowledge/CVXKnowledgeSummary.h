#pragma once

#include "CoreMinimal.h"

/** The short form of a knowledge document. Any thread. */
namespace CVXKnowledgeSummary
{
/** What stands between the document's summary marks; without them, its skeleton and its rules. */
FString Make(const FString& Content);

/** Headings, bold lines, table rows and lines with a word of command, code left out; at most 2000 characters. */
FString ExtractSummary(const FString& Text);
} // namespace CVXKnowledgeSummary
