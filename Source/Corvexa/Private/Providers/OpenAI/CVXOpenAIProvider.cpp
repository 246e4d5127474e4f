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
	if (HandleFramed(State, Event.Data))
	{
		return;
	}
	if (Event.Data == TEXTVIEW("[DONE]"))
	{
		HandleStreamDone(Handle, State);
		return;
	}
	FCVXOpenAIDelta Delta;
	if (!Delta.Read(Event.Data))
	{
		NoteParseFailure(Handle, State, Event.Data);
		return;
	}
	NoteParseSuccess(State);
	KeepFrame(State, Event.Data, Delta);
	HandleChunk(Handle, State, Delta);
}

void FCVXOpenAIProvider::HandleMissingStop(const FString& Handle, FRequestState& State)
{
	UE_LOG(LogCVXOpenAIProvider, Warning,
		TEXT("HTTP completed 200 but SSE [DONE] was not received for %s — forcing stream done."), *Handle);
	HandleStreamDone(Handle, static_cast<FOpenAIState&>(State));
}

bool FCVXOpenAIProvider::HandleFramed(FOpenAIState& State, const FString& Data)
{
	// Taken out for the call, which may let further events in.
	FString Text = MoveTemp(State.SpareText);
	const bool bFramed = State.Frame.ReadString(Data, Text);
	if (bFramed)
	{
		NoteParseSuccess(State);
		State.bFrameIsReasoning ? TellReasoning(State, Text) : TellText(State, Text);
	}
	State.SpareText = MoveTemp(Text);
	return bFramed;
}

void FCVXOpenAIProvider::KeepFrame(FOpenAIState& State, const FString& Data, const FCVXOpenAIDelta& Delta)
{
	if (Delta.IsText() || Delta.IsReasoning())
	{
		State.bFrameIsReasoning = Delta.IsReasoning();
		const FCVXOpenAIString& Told = State.bFrameIsReasoning ? Delta.Reasoning : Delta.Content;
		State.Frame.Keep(Data, Told.Start, Told.End);
	}
}

void FCVXOpenAIProvider::TakeUsage(FOpenAIState& State, const FCVXOpenAIDelta& Delta)
{
	State.Usage.InputTokens = Delta.PromptTokens.Get(State.Usage.InputTokens);
	State.Usage.OutputTokens = Delta.CompletionTokens.Get(State.Usage.OutputTokens);
}

void FCVXOpenAIProvider::HandleChunk(const FString& Handle, FOpenAIState& State, const FCVXOpenAIDelta& Delta)
{
	TakeUsage(State, Delta);
	if (!Delta.bHasDelta || !TellReasoning(State, Delta.Reasoning.Text) || !TellText(State, Delta.Content.Text))
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
