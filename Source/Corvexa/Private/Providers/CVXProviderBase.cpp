#include "Providers/CVXProviderBase.h"

#include "Core/CVXJsonObject.h"
#include "Core/CVXLog.h"
#include "HttpModule.h"
#include "Interfaces/IHttpResponse.h"
#include "Misc/Guid.h"
#include "Providers/CVXProviderFactory.h"

namespace
{
void ReportError(const FCVXProviderCallbacks& Callbacks, const FString& ErrorText)
{
	if (Callbacks.OnError)
	{
		Callbacks.OnError(ErrorText);
	}
}
} // namespace

FCVXProviderBase::FCVXProviderBase(const FCVXProviderProfile& InProfile)
	: Profile(InProfile)
{
}

FCVXProviderBase::~FCVXProviderBase()
{
	*AliveFlag = false;
	for (const auto& [Handle, State] : ActiveRequests)
	{
		State->bActive = false;
		State->Stream->Cancel();
		State->HttpRequest->CancelRequest();
	}
}

bool FCVXProviderBase::IsConfigured() const
{
	return FCVXProviderFactory::HasApiKey(Profile);
}

int32 FCVXProviderBase::GetMaxContextTokens() const
{
	return Profile.MaxContextTokens > 0 ? Profile.MaxContextTokens : GetDefaultContextTokens();
}

FString FCVXProviderBase::StreamRequest(const FCVXProviderRequest& Request, const FCVXProviderCallbacks& Callbacks)
{
	const FString ApiKey = FCVXProviderFactory::GetApiKey(Profile);
	if (ApiKey.IsEmpty())
	{
		ReportError(Callbacks,
			FString::Printf(TEXT("API key not found. Set the '%s' environment variable."), *Profile.ApiKeyEnvVar));
		return FString();
	}

	const FString Handle = FGuid::NewGuid().ToString(EGuidFormats::Digits);
	const TSharedRef<FRequestState> State = MakeState();
	State->Callbacks = Callbacks;
	State->ApiKey = ApiKey;
	State->Stream = MakeShared<FCVXSSEStream>(
		[this, Handle, Alive = AliveFlag, WeakState = State.ToWeakPtr()](const FCVXSSEEvent& Event)
		{
			const TSharedPtr<FRequestState> Active = *Alive ? WeakState.Pin() : nullptr;
			if (Active && Active->bActive)
			{
				HandleSSEEvent(Handle, *Active, Event);
			}
		});

	const FHttpRequestRef HttpRequest = FHttpModule::Get().CreateRequest();
	State->HttpRequest = HttpRequest;
	HttpRequest->SetURL(GetRequestURL());
	HttpRequest->SetVerb(TEXT("POST"));
	SetHeaders(*HttpRequest, ApiKey);
	HttpRequest->SetContentAsString(BuildRequestJson(Request));
	HttpRequest->SetResponseBodyReceiveStream(State->Stream.ToSharedRef());
	HttpRequest->SetTimeout(Profile.TimeoutSeconds > 0.0f ? Profile.TimeoutSeconds : DefaultTimeoutSeconds);
	HttpRequest->OnProcessRequestComplete().BindLambda(
		[this, Handle, Alive = AliveFlag](FHttpRequestPtr, FHttpResponsePtr Response, bool bConnected)
		{
			if (*Alive)
			{
				OnHttpComplete(Handle, Response, bConnected);
			}
		});

	ActiveRequests.Add(Handle, State);
	if (!HttpRequest->ProcessRequest())
	{
		FailRequest(Handle, TEXT("Failed to start HTTP request."));
		return FString();
	}
	return Handle;
}

void FCVXProviderBase::CancelRequest(const FString& Handle)
{
	if (const TSharedPtr<FRequestState> State = RemoveState(Handle))
	{
		State->Stream->Cancel();
		State->HttpRequest->CancelRequest();
	}
}

void FCVXProviderBase::OnHttpComplete(const FString& Handle, const FHttpResponsePtr& Response, bool bConnected)
{
	const TSharedPtr<FRequestState> State = ActiveRequests.FindRef(Handle);
	if (!State)
	{
		return;
	}
	if (!bConnected || !Response.IsValid())
	{
		FailRequest(Handle, DescribeLostConnection(Response.Get(), *State));
		return;
	}
	if (Response->GetResponseCode() >= 400)
	{
		FailRequest(Handle, FormatHttpError(*Response, *State));
		return;
	}
	OnStreamClosed(Handle, *State);
}

void FCVXProviderBase::OnStreamClosed(const FString& Handle, FRequestState& State)
{
	State.Stream->Flush();
	if (State.bActive)
	{
		HandleMissingStop(Handle, State);
	}
}

FString FCVXProviderBase::DescribeLostConnection(
	const IHttpResponse* /*Response*/, const FRequestState& /*State*/) const
{
	return TEXT("HTTP connection failed.");
}

FString FCVXProviderBase::FormatHttpError(const IHttpResponse& Response, const FRequestState& State)
{
	const FString Body = HideKey(State, State.Stream->GetRawContent()).Left(MaxQuotedBody);
	FString Text = FString::Printf(TEXT("HTTP %d: %s"), Response.GetResponseCode(), *Body);
	const FString RetryAfter = Response.GetResponseCode() == 429 ? Response.GetHeader(TEXT("Retry-After")) : FString();
	if (!RetryAfter.IsEmpty())
	{
		Text.Appendf(TEXT(" [Retry-After: %s]"), *RetryAfter);
	}
	return Text;
}

TSharedPtr<FJsonObject> FCVXProviderBase::ParseEventData(
	const FString& Handle, FRequestState& State, const FString& Data)
{
	if (TSharedPtr<FJsonObject> Object = CVXJsonObject::Parse(Data))
	{
		NoteParseSuccess(State);
		return Object;
	}
	NoteParseFailure(Handle, State, Data);
	return nullptr;
}

void FCVXProviderBase::NoteParseFailure(const FString& Handle, FRequestState& State, const FString& Data)
{
	const FString Quoted = HideKey(State, Data).Left(MaxQuotedEvent);
	++State.JsonParseFailures;
	UE_LOG(
		LogCorvexa, Warning, TEXT("Failed to parse SSE JSON (consecutive: %d): %s"), State.JsonParseFailures, *Quoted);
	if (State.JsonParseFailures >= MaxJsonParseFailures)
	{
		FailRequest(Handle,
			FString::Printf(TEXT("SSE stream corrupted: %d consecutive JSON parse failures. Last data: %s"),
				State.JsonParseFailures, *Quoted));
	}
}

bool FCVXProviderBase::TellText(const FRequestState& State, const FString& Text)
{
	if (!Text.IsEmpty() && State.Callbacks.OnTextDelta)
	{
		State.Callbacks.OnTextDelta(Text);
	}
	return State.bActive;
}

bool FCVXProviderBase::TellReasoning(const FRequestState& State, const FString& Text)
{
	if (!Text.IsEmpty() && State.Callbacks.OnReasoningDelta)
	{
		State.Callbacks.OnReasoningDelta(Text);
	}
	return State.bActive;
}

bool FCVXProviderBase::TellToolCall(const FRequestState& State, const FCVXToolCall& Call)
{
	if (State.Callbacks.OnToolCallComplete)
	{
		State.Callbacks.OnToolCallComplete(Call);
	}
	return State.bActive;
}

void FCVXProviderBase::FinishRequest(const FString& Handle)
{
	const TSharedPtr<FRequestState> State = RemoveState(Handle);
	if (State && State->Callbacks.OnStreamFinished)
	{
		State->Callbacks.OnStreamFinished(State->Usage);
	}
}

void FCVXProviderBase::FailRequest(const FString& Handle, const FString& ErrorText)
{
	if (const TSharedPtr<FRequestState> State = RemoveState(Handle))
	{
		State->Stream->Cancel();
		State->HttpRequest->CancelRequest();
		ReportError(State->Callbacks, HideKey(*State, ErrorText));
	}
}

FString FCVXProviderBase::HideKey(const FRequestState& State, const FString& Text)
{
	return State.ApiKey.Len() < MinSecretChars
		? Text
		: Text.Replace(*State.ApiKey, TEXT("[API key]"), ESearchCase::CaseSensitive);
}

TSharedPtr<FCVXProviderBase::FRequestState> FCVXProviderBase::RemoveState(const FString& Handle)
{
	TSharedPtr<FRequestState> State;
	if (ActiveRequests.RemoveAndCopyValue(Handle, State))
	{
		State->bActive = false;
	}
	return State;
}
