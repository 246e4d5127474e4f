#pragma once

#include "CoreMinimal.h"

struct FCVXGuardContext;
struct FCVXTurnFindings;

/** Sends a model back to its compile and Python errors with what is known about them. */
namespace CVXSelfHealing
{
/** Retries before the model is told to ask the user. */
constexpr int32 MaxRetries = 5;

/** Asks for another try after a failed turn; after a turn that truly succeeded, counts afresh. */
void Run(FCVXGuardContext& Context, const FCVXTurnFindings& Findings);

/** The names that Python didn't find, each once, in the order of the error kinds. */
TArray<FString> FindUnknownNames(const FString& ErrorText);
} // namespace CVXSelfHealing
