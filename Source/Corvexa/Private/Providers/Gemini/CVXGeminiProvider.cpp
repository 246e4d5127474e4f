#include "Providers/Gemini/CVXGeminiProvider.h"

#include "HAL/ThreadSafeCounter.h"
#include "Interfaces/IHttpResponse.h"
#include "Providers/Gemini/CVXGeminiBody.h"
#include "Providers/Gemini/CVXGeminiDelta.h"

namespace
{
constexpr const TCHAR* DefaultBaseURL = TEXT("https://generativelanguage.googleapis.com/v1beta");
constexpr int32 DefaultContextTokens = 1000000;

/** The vendor gives its calls no ids, so each gets one that no other call of this process has. */
FString MakeCallId(const FString& ToolName)
{
	static FThreadSafeCounter Calls;
	return FString::Printf(TEXT("gemini_%s_%d"), *ToolName, Calls.Increment());
}
} // namespace

FString FCVXGeminiProvider::GetProviderName() const
{
	return TEXT("Gemini");
}

TSharedRef<FCVXProviderBase::FRequestState> FCVXGeminiProvider::MakeState() const
{
	return MakeShared<FGeminiState>();
}

int32 FCVXGeminiProvider::GetDefaultContextTokens() const
{
	return DefaultContextTokens;
}

FString FCVXGeminiProvider::GetRequestURL() const
{
	return FString::Printf(TEXT("%s/models/%s:streamGenerateContent?alt=sse"),
		Profile.BaseURL.IsEmpty() ? DefaultBaseURL : *Profile.BaseURL, *Profile.ModelId);
}

void FCVXGeminiProvider::SetHeaders(IHttpRequest& HttpRequest, const FString& ApiKey) const
{
	HttpRequest.SetHeader(TEXT("Content-Type"), TEXT("application/json"));
	HttpRequest.SetHeader(TEXT("x-goog-api-key"), ApiKey);
}

FString FCVXGeminiProvider::BuildRequestJson(const FCVXProviderRequest& Request) const
{
	return CVXGemini::BuildBody(Profile, Request);
}

void FCVXGeminiProvider::HandleSSEEvent(const FString& Handle, FRequestState& BaseState, const FCVXSSEEvent& Event)
{
	if (Event.Data.IsEmpty())
	{
		return;
	}
	FGeminiState& State = static_cast<FGeminiState&>(BaseState);
	TUniquePtr<FCVXGeminiDelta> Delta = TakeReader(State.Delta);
	if (!Delta->Read(Event.Data))
	{
		NoteParseFailure(Handle, State, Event.Data);
		return;
	}
	NoteParseSuccess(State);
	TakeUsage(State, *Delta);
	if (TellParts(State, *Delta))
	{
		HandleFinishReason(Handle, State, Delta->FinishReason);
	}
	State.Delta = MoveTemp(Delta);
}

void FCVXGeminiProvider::HandleMissingStop(const FString& Handle, FRequestState& /*State*/)
{
	// The ordinary end of an answer that stopped for another reason than the two that are read.
	FinishRequest(Handle);
}

FString FCVXGeminiProvider::DescribeLostConnection(const IHttpResponse* Response, const FRequestState& State) const
{
	// A refusal says more than the loss of its end.
	return Response && Response->GetResponseCode() >= 400 ? FormatHttpError(*Response, State)
														  : FString(TEXT("Connection failed"));
}

void FCVXGeminiProvider::TakeUsage(FRequestState& State, const FCVXGeminiDelta& Delta)
{
	State.Usage.InputTokens = Delta.PromptTokens.Get(State.Usage.InputTokens);
	State.Usage.OutputTokens = Delta.CandidatesTokens.Get(State.Usage.OutputTokens);
}

/** @return whether the request goes on. */
bool FCVXGeminiProvider::TellParts(const FRequestState& State, const FCVXGeminiDelta& Delta)
{
	for (const FCVXGeminiPart& Part : Delta.Parts)
	{
		if (!TellText(State, Part.Text))
		{
			return false;
		}
		if (Part.bIsCall && !TellToolCall(State, {MakeCallId(Part.CallName), Part.CallName, Part.CallArguments}))
		{
			return false;
		}
	}
	return true;
}

void FCVXGeminiProvider::HandleFinishReason(const FString& Handle, FRequestState& State, const FString& Reason)
{
	const bool bTruncated = Reason == TEXTVIEW("MAX_TOKENS");
	State.Usage.bTruncated |= bTruncated;
	if (bTruncated || Reason == TEXTVIEW("STOP"))
	{
		FinishRequest(Handle);
	}
}
