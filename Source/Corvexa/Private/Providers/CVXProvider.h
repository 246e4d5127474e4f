#pragma once

#include "Core/CVXTypes.h"

/** The whole input of one turn. Read during `StreamRequest` and not kept. */
struct FCVXProviderRequest
{
	/** May be empty. */
	FString SystemPrompt;
	/** The conversation in order. */
	TArray<FCVXMessage> Messages;
	/** The tools offered for this turn; may be empty. */
	TArray<FCVXToolDescriptor> Tools;
	/** What goes on the wire comes from the provider's own profile instead of these two. */
	float Temperature = 0.0f;
	int32 MaxTokens = 8192;
};

/**
 * What a request reports, always on the game thread. Deltas and tool calls come before the one terminal event, which is
 * either `OnStreamFinished` or `OnError`; a cancelled request has none. Any member may be unset.
 */
struct FCVXProviderCallbacks
{
	/** A piece of the visible text, in stream order. */
	TFunction<void(const FString&)> OnTextDelta;
	/** A piece of the reasoning text, in stream order. */
	TFunction<void(const FString&)> OnReasoningDelta;
	/** One complete tool call. */
	TFunction<void(const FCVXToolCall&)> OnToolCallComplete;
	/** The stream ended normally. */
	TFunction<void(const FCVXTokenUsage&)> OnStreamFinished;
	/** The request failed. The text is for the user and for the rules of recovery. */
	TFunction<void(const FString&)> OnError;
};

/** A model vendor, as the agent sees it. Game thread. */
class ICVXProvider
{
public:
	virtual ~ICVXProvider() = default;

	/** The dialect's label. */
	virtual FString GetProviderName() const = 0;

	/** Starts a request. @return its handle; empty when it didn't start, which OnError has been told. */
	virtual FString StreamRequest(const FCVXProviderRequest& Request, const FCVXProviderCallbacks& Callbacks) = 0;

	/** Ends a request without any further callback. An unknown handle is ignored. */
	virtual void CancelRequest(const FString& Handle) = 0;

	/** Whether an API key is there. */
	virtual bool IsConfigured() const = 0;

	/** The size of the model's context window. */
	virtual int32 GetMaxContextTokens() const = 0;
};
