#pragma once

#include "Containers/Array.h"
#include "Containers/UnrealString.h"

/** Where a request stands. */
namespace EHttpRequestStatus
{
enum Type
{
	NotStarted,
	Processing,
	Failed,
	Failed_ConnectionError,
	Succeeded
};
inline bool IsFinished(Type Status)
{
	return Status != NotStarted && Status != Processing;
}
} // namespace EHttpRequestStatus

/** Why a request failed. */
enum class EHttpFailureReason : uint8
{
	None,
	ConnectionError,
	Cancelled,
	TimedOut,
	Other
};

/** What a request and a response have in common. Header names compare without regard to case. */
class IHttpBase
{
public:
	virtual ~IHttpBase() = default;

	virtual FString GetURL() const = 0;
	/** The header's value; empty when there is none. Values of a header that came more than once are joined by ", ". */
	virtual FString GetHeader(const FString& HeaderName) const = 0;
	/** Each header as "Name: Value". */
	virtual TArray<FString> GetAllHeaders() const = 0;
	virtual FString GetContentType() const = 0;
	/** Bytes of the body: as announced by its header, or as many as are there. */
	virtual uint64 GetContentLength() const = 0;
	virtual const TArray<uint8>& GetContent() const = 0;
};
