#include "CurlHttpRequest.h"

#include "Containers/StringConv.h"
#include "HAL/PlatformTime.h"
#include "HttpModule.h"
#include "HttpThread.h"
#include "Misc/ScopeLock.h"

namespace
{
std::string ToStd(const FString& Text)
{
	const FTCHARToUTF8 Narrow(Text);
	return std::string(Narrow.Get(), (size_t)Narrow.Length());
}

bool HasControl(const FString& Text)
{
	for (const TCHAR Char : Text)
	{
		if (Char < 32 || Char == 127)
		{
			return true;
		}
	}
	return false;
}

bool NamesCredentials(const FString& HeaderLine)
{
	FString Name;
	HeaderLine.Split(TEXT(":"), &Name, nullptr);
	return Name == TEXT("Authorization") || Name == TEXT("Cookie") || Name.Contains(TEXT("key")) ||
		Name.Contains(TEXT("token"));
}
} // namespace

FCurlHttpResponse::FCurlHttpResponse(const FString& InRequestURL, const TSharedRef<FHttpReceived>& InReceived)
	: RequestURL(InRequestURL)
	, Received(InReceived)
{
}

FString FCurlHttpResponse::GetURL() const
{
	FScopeLock Lock(&Received->Lock);
	return Received->EffectiveURL.IsEmpty() ? RequestURL : Received->EffectiveURL;
}

FString FCurlHttpResponse::GetHeader(const FString& HeaderName) const
{
	FScopeLock Lock(&Received->Lock);
	return Received->Headers.Find(HeaderName);
}

TArray<FString> FCurlHttpResponse::GetAllHeaders() const
{
	FScopeLock Lock(&Received->Lock);
	return Received->Headers.ToLines();
}

FString FCurlHttpResponse::GetContentType() const
{
	return GetHeader(TEXT("Content-Type"));
}

uint64 FCurlHttpResponse::GetContentLength() const
{
	const FString Announced = GetHeader(TEXT("Content-Length"));
	return Announced.IsEmpty() ? Received->BytesReceived.load() : FCString::Strtoui64(*Announced, nullptr, 10);
}

int32 FCurlHttpResponse::GetResponseCode() const
{
	FScopeLock Lock(&Received->Lock);
	return Received->Code;
}

FString FCurlHttpResponse::GetContentAsString() const
{
	return FString::FromUtf8((const ANSICHAR*)Received->Content.GetData(), Received->Content.Num());
}

void FCurlHttpRequest::SetHeader(const FString& HeaderName, const FString& HeaderValue)
{
	Headers.Set(HeaderName, HeaderValue);
}

void FCurlHttpRequest::AppendToHeader(const FString& HeaderName, const FString& AdditionalHeaderValue)
{
	Headers.Append(HeaderName, AdditionalHeaderValue);
}

void FCurlHttpRequest::SetContentAsString(const FString& InContent)
{
	Content.SetNumUninitialized((int32)Unicode::Utf16ToUtf8Length(*InContent, InContent.Len()));
	Unicode::Utf16ToUtf8(*InContent, InContent.Len(), (char*)Content.GetData());
}

bool FCurlHttpRequest::SetResponseBodyReceiveStream(TSharedRef<FArchive> InStream)
{
	if (Status == EHttpRequestStatus::Processing)
	{
		return false;
	}
	Stream = InStream;
	return true;
}

bool FCurlHttpRequest::IsValidToSend() const
{
	const bool bWeb = URL.StartsWith(TEXT("http://")) || URL.StartsWith(TEXT("https://"));
	if (!bWeb || HasControl(URL) || Verb.IsEmpty() || HasControl(Verb) || Verb.Contains(TEXT(" ")))
	{
		return false;
	}
	return !Headers.ToLines().ContainsByPredicate(
		[](const FString& Line) { return HasControl(Line) || Line.StartsWith(TEXT(":")); });
}

TSharedRef<FHttpTransfer> FCurlHttpRequest::MakeTransfer() const
{
	const TSharedRef<FHttpTransfer> Made = MakeShared<FHttpTransfer>();
	Made->URL = ToStd(URL);
	Made->Verb = ToStd(Verb);
	for (const FString& Line : Headers.ToLines())
	{
		Made->HeaderLines.push_back(ToStd(Line));
		Made->bHasCredentials |= NamesCredentials(Line);
	}
	Made->Body = Content;
	Made->TimeoutSeconds = TimeoutSeconds;
	Made->Stream = Stream;
	return Made;
}

bool FCurlHttpRequest::ProcessRequest()
{
	if (Status == EHttpRequestStatus::Processing || !IsValidToSend())
	{
		return false;
	}
	Transfer = MakeTransfer();
	Response = MakeShared<FCurlHttpResponse>(URL, Transfer->Received);
	FailureReason = EHttpFailureReason::None;
	ReportedBytes = 0;
	StartTime = FPlatformTime::Seconds();
	if (!FHttpModule::Get().GetHttpManager().Start(AsShared()))
	{
		return false;
	}
	Status = EHttpRequestStatus::Processing;
	return true;
}

void FCurlHttpRequest::CancelRequest()
{
	// After the module's end nothing runs any more, and asking for it would start it again.
	if (Status == EHttpRequestStatus::Processing && FHttpModule::IsAvailable())
	{
		Transfer->bCancelled = true;
		FHttpModule::Get().GetHttpManager().GetThread().Wake();
	}
}

const FHttpResponsePtr FCurlHttpRequest::GetResponse() const
{
	return Response && Response->GetResponseCode() > 0 ? FHttpResponsePtr(Response) : FHttpResponsePtr();
}

float FCurlHttpRequest::GetElapsedTime() const
{
	const bool bRuns = Status == EHttpRequestStatus::Processing;
	return bRuns ? (float)(FPlatformTime::Seconds() - StartTime) : ElapsedTime;
}

void FCurlHttpRequest::SetEnded(EHttpFailureReason Reason)
{
	// A request that was cancelled stays so, even when its last byte came first.
	FailureReason = Transfer->bCancelled ? EHttpFailureReason::Cancelled : Reason;
	ElapsedTime = GetElapsedTime();
	Status = FailureReason == EHttpFailureReason::None         ? EHttpRequestStatus::Succeeded
		: FailureReason == EHttpFailureReason::ConnectionError ? EHttpRequestStatus::Failed_ConnectionError
															   : EHttpRequestStatus::Failed;
}

void FCurlHttpRequest::CallComplete()
{
	// The handler may start the request anew or bind another handler.
	const FHttpRequestCompleteDelegate Delegate = CompleteDelegate;
	const bool bSucceeded = Status == EHttpRequestStatus::Succeeded;
	Delegate.ExecuteIfBound(AsShared(), GetResponse(), bSucceeded);
}

void FCurlHttpRequest::CallProgress()
{
	const uint64 Sent = Transfer->Received->BytesSent;
	const uint64 Received = Transfer->Received->BytesReceived;
	if (Sent + Received != ReportedBytes)
	{
		ReportedBytes = Sent + Received;
		ProgressDelegate.ExecuteIfBound(AsShared(), Sent, Received);
	}
}
