#pragma once

#include "Providers/Anthropic/CVXAnthropicDelta.h"
#include "Providers/CVXProviderBase.h"

/** The Anthropic Messages API in streaming form. */
class FCVXAnthropicProvider final : public FCVXProviderBase
{
public:
	using FCVXProviderBase::FCVXProviderBase;

	FString GetProviderName() const override;

private:
	struct FAnthropicState final : FRequestState
	{
		/** Calls under way, and their argument JSON so far, by content-block index. */
		TMap<int32, FCVXToolCall> ToolCalls;
		TMap<int32, FString> ToolJson;
		/** Reads the deltas; null at first, and while one is being told. */
		TUniquePtr<FCVXAnthropicDelta> Delta;
	};

	TSharedRef<FRequestState> MakeState() const override;
	int32 GetDefaultContextTokens() const override;
	FString GetRequestURL() const override;
	void SetHeaders(IHttpRequest& HttpRequest, const FString& ApiKey) const override;
	FString BuildRequestJson(const FCVXProviderRequest& Request) const override;
	void HandleSSEEvent(const FString& Handle, FRequestState& State, const FCVXSSEEvent& Event) override;
	void HandleMissingStop(const FString& Handle, FRequestState& State) override;

	static void HandleMessageStart(FAnthropicState& State, const FJsonObject& Event);
	static void HandleContentBlockStart(FAnthropicState& State, const FJsonObject& Event);
	void HandleContentBlockDelta(const FString& Handle, FAnthropicState& State, const FString& Data);
	static void HandleDelta(FAnthropicState& State, const FCVXAnthropicDelta& Delta);
	static void HandleContentBlockStop(FAnthropicState& State, const FJsonObject& Event);
	static void HandleMessageDelta(FAnthropicState& State, const FJsonObject& Event);
	void HandleError(const FString& Handle, FAnthropicState& State, const FJsonObject& Event);
};
