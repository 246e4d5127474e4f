#include "Providers/Anthropic/CVXAnthropicProvider.h"

#include "Dom/JsonObject.h"
#include "Logging/LogMacros.h"
#include "Providers/Anthropic/CVXAnthropicBody.h"
#include "Providers/Anthropic/CVXAnthropicDelta.h"

DEFINE_LOG_CATEGORY_STATIC(LogCVXAnthropicProvider, Log, All);

namespace
{
constexpr const TCHAR* DefaultBaseURL = TEXT("https://api.anthropic.com");
constexpr const TCHAR* APIVersion = TEXT("2023-06-01");
constexpr const TCHAR* BetaHeader = TEXT("interleaved-thinking-2025-05-14,prompt-caching-2024-07-31");
constexpr int32 DefaultContextTokens = 200000;

/** The index that an event names; false for an event without one. */
bool ReadIndex(const FJsonObject& Event, int32& OutIndex)
{
	return Event.TryGetNumberField(TEXT("index"), OutIndex);
}
} // namespace

FString FCVXAnthropicProvider::GetProviderName() const
{
	return TEXT("Anthropic");
}

TSharedRef<FCVXProviderBase::FRequestState> FCVXAnthropicProvider::MakeState() const
{
	return MakeShared<FAnthropicState>();
}

int32 FCVXAnthropicProvider::GetDefaultContextTokens() const
{
	return DefaultContextTokens;
}

FString FCVXAnthropicProvider::GetRequestURL() const
{
	return FString::Printf(TEXT("%s/v1/messages"), Profile.BaseURL.IsEmpty() ? DefaultBaseURL : *Profile.BaseURL);
}

void FCVXAnthropicProvider::SetHeaders(IHttpRequest& HttpRequest, const FString& ApiKey) const
{
	HttpRequest.SetHeader(TEXT("Content-Type"), TEXT("application/json"));
	HttpRequest.SetHeader(TEXT("x-api-key"), ApiKey);
	HttpRequest.SetHeader(TEXT("anthropic-version"), APIVersion);
	HttpRequest.SetHeader(TEXT("anthropic-beta"), BetaHeader);
}

FString FCVXAnthropicProvider::BuildRequestJson(const FCVXProviderRequest& Request) const
{
	return CVXAnthropic::BuildBody(Profile, Request);
}

void FCVXAnthropicProvider::HandleSSEEvent(const FString& Handle, FRequestState& BaseState, const FCVXSSEEvent& Event)
{
	if (Event.Data == TEXTVIEW("[DONE]") || Event.EventType == TEXTVIEW("message_stop"))
	{
		FinishRequest(Handle);
		return;
	}
	if (Event.Data.IsEmpty())
	{
		return;
	}
	FAnthropicState& State = static_cast<FAnthropicState&>(BaseState);
	if (Event.EventType == TEXTVIEW("content_block_delta"))
	{
		HandleContentBlockDelta(Handle, State, Event.Data);
		return;
	}
	const TSharedPtr<FJsonObject> Json = ParseEventData(Handle, BaseState, Event.Data);
	if (!Json)
	{
		return;
	}
	if (Event.EventType == TEXTVIEW("content_block_start"))
	{
		HandleContentBlockStart(State, *Json);
	}
	else if (Event.EventType == TEXTVIEW("content_block_stop"))
	{
		HandleContentBlockStop(State, *Json);
	}
	else if (Event.EventType == TEXTVIEW("message_start"))
	{
		HandleMessageStart(State, *Json);
	}
	else if (Event.EventType == TEXTVIEW("message_delta"))
	{
		HandleMessageDelta(State, *Json);
	}
	else if (Event.EventType == TEXTVIEW("error"))
	{
		HandleError(Handle, State, *Json);
	}
}

void FCVXAnthropicProvider::HandleMissingStop(const FString& Handle, FRequestState& /*State*/)
{
	UE_LOG(LogCVXAnthropicProvider, Warning,
		TEXT("HTTP completed 200 but message_stop was not received for %s — forcing stream done."), *Handle);
	FinishRequest(Handle);
}

void FCVXAnthropicProvider::HandleMessageStart(FAnthropicState& State, const FJsonObject& Event)
{
	const TSharedPtr<FJsonObject>* Message = nullptr;
	const TSharedPtr<FJsonObject>* Usage = nullptr;
	if (!Event.TryGetObjectField(TEXT("message"), Message) || !(*Message)->TryGetObjectField(TEXT("usage"), Usage))
	{
		return;
	}
	State.Usage.CacheRead = 0;
	State.Usage.CacheWrite = 0;
	(*Usage)->TryGetNumberField(TEXT("input_tokens"), State.Usage.InputTokens);
	(*Usage)->TryGetNumberField(TEXT("output_tokens"), State.Usage.OutputTokens);
	(*Usage)->TryGetNumberField(TEXT("cache_read_input_tokens"), State.Usage.CacheRead);
	(*Usage)->TryGetNumberField(TEXT("cache_creation_input_tokens"), State.Usage.CacheWrite);
}

void FCVXAnthropicProvider::HandleContentBlockStart(FAnthropicState& State, const FJsonObject& Event)
{
	int32 Index = INDEX_NONE;
	const TSharedPtr<FJsonObject>* Block = nullptr;
	FString Type;
	if (!ReadIndex(Event, Index) || !Event.TryGetObjectField(TEXT("content_block"), Block) ||
		!(*Block)->TryGetStringField(TEXT("type"), Type) || Type != TEXT("tool_use"))
	{
		return;
	}
	FCVXToolCall& Call = State.ToolCalls.Add(Index, FCVXToolCall());
	(*Block)->TryGetStringField(TEXT("id"), Call.Id);
	(*Block)->TryGetStringField(TEXT("name"), Call.Name);
	Call.Arguments = TEXT("{}");
	State.ToolJson.Add(Index, FString());
}

void FCVXAnthropicProvider::HandleContentBlockDelta(const FString& Handle, FAnthropicState& State, const FString& Data)
{
	TUniquePtr<FCVXAnthropicDelta> Delta = TakeReader(State.Delta);
	if (!Delta->Read(Data))
	{
		NoteParseFailure(Handle, State, Data);
		return;
	}
	NoteParseSuccess(State);
	HandleDelta(State, *Delta);
	State.Delta = MoveTemp(Delta);
}

void FCVXAnthropicProvider::HandleDelta(FAnthropicState& State, const FCVXAnthropicDelta& Delta)
{
	switch (Delta.Type)
	{
	case ECVXAnthropicDeltaType::Text:
		if (Delta.Text.IsSet() && State.Callbacks.OnTextDelta)
		{
			State.Callbacks.OnTextDelta(*Delta.Text);
		}
		return;
	case ECVXAnthropicDeltaType::InputJson:
		if (FString* Json = State.ToolJson.Find(Delta.Index); Json && Delta.PartialJson.IsSet())
		{
			Json->Append(*Delta.PartialJson);
		}
		return;
	case ECVXAnthropicDeltaType::Thinking:
		if (Delta.Thinking.IsSet() && !Delta.Thinking->IsEmpty() && State.Callbacks.OnReasoningDelta)
		{
			State.Callbacks.OnReasoningDelta(*Delta.Thinking);
		}
		return;
	case ECVXAnthropicDeltaType::Other:
		return;
	}
}

void FCVXAnthropicProvider::HandleContentBlockStop(FAnthropicState& State, const FJsonObject& Event)
{
	int32 Index = INDEX_NONE;
	FCVXToolCall Call;
	if (!ReadIndex(Event, Index) || !State.ToolCalls.RemoveAndCopyValue(Index, Call))
	{
		return;
	}
	FString Json;
	State.ToolJson.RemoveAndCopyValue(Index, Json);
	if (!Json.IsEmpty())
	{
		Call.Arguments = MoveTemp(Json);
	}
	if (State.Callbacks.OnToolCallComplete)
	{
		State.Callbacks.OnToolCallComplete(Call);
	}
}

void FCVXAnthropicProvider::HandleMessageDelta(FAnthropicState& State, const FJsonObject& Event)
{
	const TSharedPtr<FJsonObject>* Usage = nullptr;
	if (Event.TryGetObjectField(TEXT("usage"), Usage))
	{
		(*Usage)->TryGetNumberField(TEXT("output_tokens"), State.Usage.OutputTokens);
	}
	const TSharedPtr<FJsonObject>* Delta = nullptr;
	FString StopReason;
	if (Event.TryGetObjectField(TEXT("delta"), Delta) && (*Delta)->TryGetStringField(TEXT("stop_reason"), StopReason))
	{
		State.Usage.bTruncated |= StopReason == TEXT("max_tokens");
	}
}

void FCVXAnthropicProvider::HandleError(const FString& Handle, FAnthropicState& State, const FJsonObject& Event)
{
	const TSharedPtr<FJsonObject>* Error = nullptr;
	FString Message;
	if (!Event.TryGetObjectField(TEXT("error"), Error) || !(*Error)->TryGetStringField(TEXT("message"), Message))
	{
		Message = TEXT("Unknown Anthropic API error");
	}
	Message = HideKey(State, Message);
	UE_LOG(LogCVXAnthropicProvider, Error, TEXT("Anthropic API error for %s: %s"), *Handle, *Message);
	FailRequest(Handle, Message);
}
