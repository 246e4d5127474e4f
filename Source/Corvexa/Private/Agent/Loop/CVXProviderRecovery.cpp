#include "Agent/Loop/CVXProviderRecovery.h"

#include "Algo/AnyOf.h"

namespace
{
constexpr const TCHAR* ConnectionMarkers[] = {TEXT("connection failed"), TEXT("timed out"), TEXT("Could not connect")};
constexpr const TCHAR* BalanceMarkers[] = {TEXT("insufficient_quota"), TEXT("Insufficient Balance"), TEXT("billing")};
constexpr const TCHAR* TransientMarkers[] = {
	TEXT("HTTP 429"), TEXT("rate_limit"), TEXT("Rate limit"), TEXT("HTTP 503"), TEXT("overloaded"), TEXT("HTTP 529")};

/** One row of what the user is told. The first row with a marker in the error text counts. */
struct FErrorDescription
{
	TArray<const TCHAR*> Markers;
	/** Holds at most one %d, the retries made. */
	const TCHAR* Text;
};

const TArray<FErrorDescription>& GetDescriptions()
{
	static const TArray<FErrorDescription> Rows = {
		{{TEXT("HTTP 401"), TEXT("Unauthorized")},
			TEXT("**Authentication failed** — your API key is invalid or missing.\n\nCheck the API key in **CVX "
				 "Settings "
				 "→ Provider Profiles**.\nKeys are read from environment variables (never stored in settings).")},
		{{TEXT("HTTP 402"), TEXT("Insufficient Balance"), TEXT("Payment Required"), TEXT("insufficient_quota")},
			TEXT(
				"**Insufficient API balance** — your provider account has run out of credits.\n\nTop up your balance:\n"
				"- **Anthropic**: console.anthropic.com → Settings → Billing\n"
				"- **OpenAI**: platform.openai.com → Settings → Billing\n"
				"- **OpenRouter**: openrouter.ai → Settings → Credits\n"
				"- **Google**: aistudio.google.com → Settings → Billing")},
		{{TEXT("HTTP 403"), TEXT("Forbidden")},
			TEXT("**Access denied (403)** — your API key doesn't have permission for this model or endpoint.\n\nCheck "
				 "that the model name is correct and your account has access to it.")},
		{{TEXT("HTTP 429"), TEXT("rate_limit"), TEXT("Rate limit")},
			TEXT("**Rate limit exceeded** — too many requests to the API (retried %d times).\n\nWait a moment and try "
				 "again. If this persists, check your API plan's rate limits.")},
		{{TEXT("HTTP 500"), TEXT("HTTP 502"), TEXT("HTTP 503"), TEXT("overloaded")},
			TEXT("**Provider server error** — the API service is temporarily unavailable (retried %d times).\n\nWait a "
				 "moment and try again.")},
	};
	return Rows;
}

template <typename RangeType>
bool ContainsAny(const FString& Error, const RangeType& Markers)
{
	return Algo::AnyOf(Markers, [&](const TCHAR* Marker) { return Error.Contains(Marker); });
}

/** @return 0 when the text names no wait. */
double ParseRetryAfter(const FString& Error)
{
	static const FString Marker = TEXT("[Retry-After: ");
	const int32 Start = Error.Find(Marker);
	if (Start == INDEX_NONE)
	{
		return 0.0;
	}
	const FString Rest = Error.Mid(Start + Marker.Len());
	int32 End = INDEX_NONE;
	return Rest.FindChar(TEXT(']'), End) ? FCString::Atod(*Rest.Left(End)) : 0.0;
}
} // namespace

CVXProviderRecovery::EErrorClass CVXProviderRecovery::Classify(const FString& Error)
{
	if (ContainsAny(Error, ConnectionMarkers))
	{
		return EErrorClass::Connection;
	}
	const bool bTransient = !ContainsAny(Error, BalanceMarkers) && ContainsAny(Error, TransientMarkers);
	return bTransient ? EErrorClass::Transient : EErrorClass::Permanent;
}

double CVXProviderRecovery::GetTransientDelay(const FString& Error, int32 RetriesMade)
{
	const double Asked = ParseRetryAfter(Error);
	return Asked > 0.0 ? FMath::Min(Asked, MaxRetryAfterSeconds) : static_cast<double>(1 << RetriesMade);
}

FString CVXProviderRecovery::DescribeForUser(const FString& Error, int32 RetriesMade)
{
	for (const FErrorDescription& Row : GetDescriptions())
	{
		if (ContainsAny(Error, Row.Markers))
		{
			return FString(Row.Text).Replace(TEXT("%d"), *FString::FromInt(RetriesMade));
		}
	}
	return Error;
}
