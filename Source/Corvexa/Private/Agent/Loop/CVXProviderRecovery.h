#pragma once

#include "CoreMinimal.h"

/** What a provider's error text says: whether to try again, when, and what to tell the user. Texts are searched without
 * regard to case. */
namespace CVXProviderRecovery
{
constexpr int32 MaxConnectionRetries = 5;
constexpr double ConnectionRetrySeconds = 2.0;
constexpr int32 MaxTransientRetries = 3;
constexpr double MaxRetryAfterSeconds = 60.0;

enum class EErrorClass : uint8
{
	/** The line was lost or never stood. */
	Connection,
	/** The vendor is overloaded and will recover. */
	Transient,
	/** Trying again won't help. */
	Permanent,
};

EErrorClass Classify(const FString& Error);

/**
 * The wait before a transient error is retried, in seconds: what the text's "[Retry-After: N]" says, at most 60, else
 * 1, 2, 4 by the retries made so far.
 */
double GetTransientDelay(const FString& Error, int32 RetriesMade);

/** What the user is told when the loop gives up. @param RetriesMade transient retries made before. */
FString DescribeForUser(const FString& Error, int32 RetriesMade);
} // namespace CVXProviderRecovery
