#pragma once

#include "Providers/CVXProviderBase.h"
#include "Providers/OpenAI/CVXOpenAIDelta.h"

/** The chat completions that many vendors and all local servers speak; which one is told by the profile's URL alone. */
class FCVXOpenAIProvider final : public FCVXProviderBase
{
public:
	using FCVXProviderBase::FCVXProviderBase;

	FString GetProviderName() const override;

private:
	struct FOpenAIState final : FRequestState
	{
		/** Calls under way by their index, with the arguments so far. */
		TMap<int32, FCVXToolCall> ToolCalls;
		/** Reads the chunks; null at first, and while one is being told. */
		TUniquePtr<FCVXOpenAIDelta> Delta;
	};

	TSharedRef<FRequestState> MakeState() const override;
	int32 GetDefaultContextTokens() const override;
	FString GetRequestURL() const override;
	void SetHeaders(IHttpRequest& HttpRequest, const FString& ApiKey) const override;
	FString BuildRequestJson(const FCVXProviderRequest& Request) const override;
	void HandleSSEEvent(const FString& Handle, FRequestState& State, const FCVXSSEEvent& Event) override;
	void HandleMissingStop(const FString& Handle, FRequestState& State) override;

	void HandleChunk(const FString& Handle, FOpenAIState& State, const FCVXOpenAIDelta& Delta);
	void HandleFinishReason(const FString& Handle, FOpenAIState& State, const FString& Reason);
	void HandleStreamDone(const FString& Handle, FOpenAIState& State);
	static void TakeUsage(FOpenAIState& State, const FCVXOpenAIDelta& Delta);
	static void GatherCall(FOpenAIState& State, const FCVXOpenAICallDelta& Piece);
	static bool CompleteCalls(FOpenAIState& State);
};
