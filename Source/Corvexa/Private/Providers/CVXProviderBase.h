#pragma once

#include "Core/CVXProfiles.h"
#include "HTTP/CVXSSEStream.h"
#include "Interfaces/IHttpRequest.h"
#include "Providers/CVXProvider.h"

class FJsonObject;

/**
 * What the dialects share: starting a request, feeding its events in, ending it exactly once, and the texts of failure.
 * A dialect adds its URL, headers, body, and what each event does. Game thread.
 */
class FCVXProviderBase : public ICVXProvider
{
public:
	/** The time-out of a profile that names none, in seconds. */
	static constexpr float DefaultTimeoutSeconds = 300.0f;
	/** So many bad events in a row end a request. */
	static constexpr int32 MaxJsonParseFailures = 3;
	/** The characters of an error body and of a bad event that a text quotes. */
	static constexpr int32 MaxQuotedBody = 500;
	static constexpr int32 MaxQuotedEvent = 200;
	/** Keys are hidden from this length on: a shorter one is a local server's stand-in, often an ordinary word. */
	static constexpr int32 MinSecretChars = 14;

	explicit FCVXProviderBase(const FCVXProviderProfile& InProfile);
	~FCVXProviderBase() override;
	FCVXProviderBase(const FCVXProviderBase&) = delete;
	FCVXProviderBase& operator=(const FCVXProviderBase&) = delete;

	FString StreamRequest(const FCVXProviderRequest& Request, const FCVXProviderCallbacks& Callbacks) final;
	void CancelRequest(const FString& Handle) final;
	bool IsConfigured() const final;
	int32 GetMaxContextTokens() const final;

protected:
	/** One request under way. It lives to its one terminal event; a dialect adds what it gathers. */
	struct FRequestState
	{
		virtual ~FRequestState() = default;

		FHttpRequestPtr HttpRequest;
		TSharedPtr<FCVXSSEStream> Stream;
		FCVXProviderCallbacks Callbacks;
		/** Never leaves the request; see `HideKey`. */
		FString ApiKey;
		FCVXTokenUsage Usage;
		int32 JsonParseFailures = 0;
		/** False from its terminal event on; asked once an event, which a look into the map would slow down. */
		bool bActive = true;
	};

	virtual TSharedRef<FRequestState> MakeState() const = 0;
	virtual int32 GetDefaultContextTokens() const = 0;
	virtual FString GetRequestURL() const = 0;
	virtual void SetHeaders(IHttpRequest& HttpRequest, const FString& ApiKey) const = 0;
	virtual FString BuildRequestJson(const FCVXProviderRequest& Request) const = 0;
	/** The handle is known. The state stays valid during the call, even when a callback ends the request. */
	virtual void HandleSSEEvent(const FString& Handle, FRequestState& State, const FCVXSSEEvent& Event) = 0;
	/** The response ended well without the dialect's stop event. */
	virtual void HandleMissingStop(const FString& Handle, FRequestState& State) = 0;
	/** @param Response what came before the connection was lost; may be null. @return the text of the failure. */
	virtual FString DescribeLostConnection(const IHttpResponse* Response, const FRequestState& State) const;

	/** @return the event's object; null for bad JSON, which is counted and ends the request when it happens too often.
	 */
	TSharedPtr<FJsonObject> ParseEventData(const FString& Handle, FRequestState& State, const FString& Data);

	/** The same two outcomes for a dialect that reads an event's text itself. */
	static void NoteParseSuccess(FRequestState& State) { State.JsonParseFailures = 0; }
	void NoteParseFailure(const FString& Handle, FRequestState& State, const FString& Data);

	/** Takes an event's reader out of the state while it is told, which may let further events in; makes the first. */
	template <typename ReaderType>
	static TUniquePtr<ReaderType> TakeReader(TUniquePtr<ReaderType>& Kept)
	{
		return Kept ? MoveTemp(Kept) : MakeUnique<ReaderType>();
	}

	/**
	 * Call the request's callback, if it is set. An empty text is not told.
	 * @return whether the request goes on; when it doesn't, the provider may be gone too.
	 */
	static bool TellText(const FRequestState& State, const FString& Text);
	static bool TellReasoning(const FRequestState& State, const FString& Text);
	static bool TellToolCall(const FRequestState& State, const FCVXToolCall& Call);

	/** A vendor's text may quote the key that it was sent; before it is cut or shown, the key goes. */
	static FString HideKey(const FRequestState& State, const FString& Text);

	/** "HTTP %d: %s" with the start of the body, and the wait that a vendor in distress asks for. */
	static FString FormatHttpError(const IHttpResponse& Response, const FRequestState& State);

	/** The two terminal events: the state is removed first, then its callback is called. */
	void FinishRequest(const FString& Handle);
	void FailRequest(const FString& Handle, const FString& ErrorText);

	const FCVXProviderProfile Profile;

private:
	void OnHttpComplete(const FString& Handle, const FHttpResponsePtr& Response, bool bConnected);
	void OnStreamClosed(const FString& Handle, FRequestState& State);
	TSharedPtr<FRequestState> RemoveState(const FString& Handle);

	/** False once the provider is gone; every delayed call holds it. */
	TSharedRef<bool> AliveFlag = MakeShared<bool>(true);
	TMap<FString, TSharedPtr<FRequestState>> ActiveRequests;
};
