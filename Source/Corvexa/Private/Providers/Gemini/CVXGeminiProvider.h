#pragma once

#include "Providers/CVXProviderBase.h"
#include "Providers/Gemini/CVXGeminiDelta.h"

/** The `streamGenerateContent` API of Google Gemini. */
class FCVXGeminiProvider final : public FCVXProviderBase
{
public:
	using FCVXProviderBase::FCVXProviderBase;

	FString GetProviderName() const override;

private:
	struct FGeminiState final : FRequestState
	{
		/** Reads the chunks; null at first, and while one is being told. */
		TUniquePtr<FCVXGeminiDelta> Delta;
	};

	TSharedRef<FRequestState> MakeState() const override;
	int32 GetDefaultContextTokens() const override;
	FString GetRequestURL() const override;
	void SetHeaders(IHttpRequest& HttpRequest, const FString& ApiKey) const override;
	FString BuildRequestJson(const FCVXProviderRequest& Request) const override;
	void HandleSSEEvent(const FString& Handle, FRequestState& State, const FCVXSSEEvent& Event) override;
	void HandleMissingStop(const FString& Handle, FRequestState& State) override;
	FString DescribeLostConnection(const IHttpResponse* Response, const FRequestState& State) const override;

	void HandleFinishReason(const FString& Handle, FRequestState& State, const FString& Reason);
	static void TakeUsage(FRequestState& State, const FCVXGeminiDelta& Delta);
	static bool TellParts(const FRequestState& State, const FCVXGeminiDelta& Delta);
};
