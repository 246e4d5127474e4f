#pragma once

#include "Delegates/Delegate.h"
#include "Interfaces/IHttpResponse.h"

class FArchive;
class IHttpRequest;

using FHttpRequestPtr = TSharedPtr<IHttpRequest>;
using FHttpRequestRef = TSharedRef<IHttpRequest>;

/** Game thread. The flag tells whether a whole response arrived; the response may be null or a part when it is false.
 */
using FHttpRequestCompleteDelegate = TDelegate<void(FHttpRequestPtr, FHttpResponsePtr, bool)>;
/** Game thread, at most once a tick: bytes sent and received so far. */
using FHttpRequestProgressDelegate64 = TDelegate<void(FHttpRequestPtr, uint64, uint64)>;

/**
 * One HTTP request. It is set up, started and watched on the game thread; its bytes move on the HTTP thread. It may be
 * dropped while it runs, and runs on. What was set up can't be changed once it runs.
 */
class IHttpRequest : public IHttpBase
{
public:
	virtual FString GetVerb() const = 0;
	virtual void SetVerb(const FString& Verb) = 0;
	virtual void SetURL(const FString& URL) = 0;
	/** Replaces the header of this name. Line breaks in a name or value make the request fail to start. */
	virtual void SetHeader(const FString& HeaderName, const FString& HeaderValue) = 0;
	virtual void AppendToHeader(const FString& HeaderName, const FString& AdditionalHeaderValue) = 0;
	virtual void SetContent(const TArray<uint8>& Content) = 0;
	virtual void SetContent(TArray<uint8>&& Content) = 0;
	/** Sends the text as UTF-8. */
	virtual void SetContentAsString(const FString& Content) = 0;

	/**
	 * Sends the response's body to the stream as it arrives, on the HTTP thread, one write at a time, instead of
	 * keeping it. An error set on the stream ends the request. @return false while the request runs.
	 */
	virtual bool SetResponseBodyReceiveStream(TSharedRef<FArchive> Stream) = 0;

	/**
	 * The longest silence on the connection, in seconds: before the first byte and between any two. 0 or less waits for
	 * ever. A connection must stand within this time or 30 seconds, whichever is less.
	 */
	virtual void SetTimeout(float Seconds) = 0;
	virtual void ClearTimeout() = 0;

	/** @return false when the request can't be started: a bad URL or header, or one that runs. Nothing is called then.
	 */
	virtual bool ProcessRequest() = 0;

	virtual FHttpRequestCompleteDelegate& OnProcessRequestComplete() = 0;
	virtual FHttpRequestProgressDelegate64& OnRequestProgress64() = 0;

	/** Ends the request; its completion is called in a later tick, as a failure. */
	virtual void CancelRequest() = 0;

	virtual EHttpRequestStatus::Type GetStatus() const = 0;
	virtual EHttpFailureReason GetFailureReason() const = 0;
	/** Null until the first header has arrived. */
	virtual const FHttpResponsePtr GetResponse() const = 0;
	/** Seconds since the start, or that it took. */
	virtual float GetElapsedTime() const = 0;
};
