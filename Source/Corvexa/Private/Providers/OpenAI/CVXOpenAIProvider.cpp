#include "Providers/OpenAI/CVXOpenAIProvider.h"

#include "Providers/OpenAI/CVXOpenAIBody.h"
#include "Providers/OpenAI/CVXOpenAIDelta.h"
#include "Providers/OpenAI/CVXOpenAILog.h"

namespace
{
constexpr const TCHAR* DefaultBaseURL = TEXT("https://api.openai.com/v1");
constexpr const TCHAR* OpenRouterDomain = TEXT("openrouter.ai");
constexpr const TCHAR* ProductURL = TEXT("https://corvexa.example");
constexpr int32 DefaultContextTokens = 128000;
} // namespace

FString FCVXOpenAIProvider::GetProviderName() const
{
	return TEXT("OpenAI");
}

TSharedRef<FCVXProviderBase::FRequestState> FCVXOpenAIProvider::MakeState() const
{
	return MakeShared<FOpenAIState>();
}

int32 FCVXOpenAIProvider::GetDefaultContextTokens() const
{
	return DefaultContextTokens;
}

FString FCVXOpenAIProvider::GetRequestURL() const
{
	return FString::Printf(TEXT("%s/chat/completions"), Profile.BaseURL.IsEmpty() ? DefaultBaseURL : *Profile.BaseURL);
}

void FCVXOpenAIProvider::SetHeaders(IHttpRequest& HttpRequest, const FString& ApiKey) const
{
	HttpRequest.SetHeader(TEXT("Content-Type"), TEXT("application/json"));
	HttpRequest.SetHeader(TEXT("Authorization"), FString::Printf(TEXT("Bearer %s"), *ApiKey));
	if (Profile.BaseURL.Contains(OpenRouterDomain))
	{
		HttpRequest.SetHeader(TEXT("HTTP-Referer"), ProductURL);
		HttpRequest.SetHeader(TEXT("X-Title"), TEXT("Corvexa"));
	}
}

FString FCVXOpenAIProvider::BuildRequestJson(const FCVXProviderRequest& Request) const
{
	return CVXOpenAI::BuildBody(Profile, Request);
}

void FCVXOpenAIProvider::HandleSSEEvent(const FString& Handle, FRequestState& BaseState, const FCVXSSEEvent& Event)
{
	FOpenAIState& State = static_cast<FOpenAIState&>(BaseState);
	if (Event.Data == TEXTVIEW("[DONE]"))
	{
		HandleStreamDone(Handle, State);
		return;
	}
	TUniquePtr<FCVXOpenAIDelta> Delta = TakeReader(State.Delta);
	if (!Delta->Read(Event.Data))
	{
		NoteParseFailure(Handle, State, Event.Data);
		return;
	}
	NoteParseSuccess(State);
	HandleChunk(Handle, State, *Delta);
	State.Delta = MoveTemp(Delta);
}

void FCVXOpenAIProvider::HandleMissingStop(const FString& Handle, FRequestState& State)
{
	UE_LOG(LogCVXOpenAIProvider, Warning,
		TEXT("HTTP completed 200 but SSE [DONE] was not received for %s — forcing stream done."), *Handle);
	HandleStreamDone(Handle, static_cast<FOpenAIState&>(State));
}

void FCVXOpenAIProvider::TakeUsage(FOpenAIState& State, const FCVXOpenAIDelta& Delta)
{
	State.Usage.InputTokens = Delta.PromptTokens.Get(State.Usage.InputTokens);
	State.Usage.OutputTokens = Delta.CompletionTokens.Get(State.Usage.OutputTokens);
}

void FCVXOpenAIProvider::HandleChunk(const FString& Handle, FOpenAIState& State, const FCVXOpenAIDelta& Delta)
{
	TakeUsage(State, Delta);
	if (!Delta.bHasDelta || !TellReasoning(State, Delta.Reasoning) || !TellText(State, Delta.Content))
	{
		return;
	}
	for (const FCVXOpenAICallDelta& Piece : Delta.Calls)
	{
		GatherCall(State, Piece);
	}
	HandleFinishReason(Handle, State, Delta.FinishReason);
}

void FCVXOpenAIProvider::GatherCall(FOpenAIState& State, const FCVXOpenAICallDelta& Piece)
{
	FCVXToolCall& Call = State.ToolCalls.FindOrAdd(Piece.Index);
	if (!Piece.Id.IsEmpty())
	{
		Call.Id = Piece.Id;
	}
	if (!Piece.Name.IsEmpty())
	{
		Call.Name = Piece.Name;
	}
	Call.Arguments += Piece.Arguments;
}

void FCVXOpenAIProvider::HandleFinishReason(const FString& Handle, FOpenAIState& State, const FString& Reason)
{
	if (Reason == TEXTVIEW("tool_calls"))
	{
		// The counters and the end are still to come.
		CompleteCalls(State);
	}
	else if (Reason == TEXTVIEW("stop"))
	{
		HandleStreamDone(Handle, State);
	}
	else if (Reason == TEXTVIEW("length"))
	{
		State.Usage.bTruncated = true;
		HandleStreamDone(Handle, State);
	}
}

/** @return whether the request goes on. */
bool FCVXOpenAIProvider::CompleteCalls(FOpenAIState& State)
{
	TMap<int32, FCVXToolCall> Calls = MoveTemp(State.ToolCalls);
	State.ToolCalls.Reset();
	for (auto& [Index, Call] : Calls)
	{
		if (Call.Arguments.IsEmpty())
		{
			Call.Arguments = TEXT("{}");
		}
		if (!TellToolCall(State, Call))
		{
			return false;
		}
	}
	return true;
}

void FCVXOpenAIProvider::HandleStreamDone(const FString& Handle, FOpenAIState& State)
{
	if (!State.ToolCalls.IsEmpty())
	{
		UE_LOG(LogCVXOpenAIProvider, Warning, TEXT("HandleStreamDone: finalizing %d orphaned tool calls for %s"),
			State.ToolCalls.Num(), *Handle);
	}
	if (CompleteCalls(State))
	{
		FinishRequest(Handle);
	}
}
