#pragma once

#include "HttpTransfer.h"
#include "Interfaces/IHttpRequest.h"

/** A response, complete or still arriving. */
class FCurlHttpResponse final : public IHttpResponse
{
public:
	FCurlHttpResponse(const FString& InRequestURL, const TSharedRef<FHttpReceived>& InReceived);

	FString GetURL() const override;
	FString GetHeader(const FString& HeaderName) const override;
	TArray<FString> GetAllHeaders() const override;
	FString GetContentType() const override;
	uint64 GetContentLength() const override;
	const TArray<uint8>& GetContent() const override { return Received->Content; }
	int32 GetResponseCode() const override;
	FString GetContentAsString() const override;

private:
	FString RequestURL;
	TSharedRef<FHttpReceived> Received;
};

/** The game thread's half of one request. */
class FCurlHttpRequest final
	: public IHttpRequest
	, public TSharedFromThis<FCurlHttpRequest>
{
public:
	FString GetURL() const override { return URL; }
	FString GetHeader(const FString& HeaderName) const override { return Headers.Find(HeaderName); }
	TArray<FString> GetAllHeaders() const override { return Headers.ToLines(); }
	FString GetContentType() const override { return GetHeader(TEXT("Content-Type")); }
	uint64 GetContentLength() const override { return (uint64)Content.Num(); }
	const TArray<uint8>& GetContent() const override { return Content; }
	FString GetVerb() const override { return Verb; }
	void SetVerb(const FString& InVerb) override { Verb = InVerb.ToUpper(); }
	void SetURL(const FString& InURL) override { URL = InURL; }
	void SetHeader(const FString& HeaderName, const FString& HeaderValue) override;
	void AppendToHeader(const FString& HeaderName, const FString& AdditionalHeaderValue) override;
	void SetContent(const TArray<uint8>& InContent) override { Content = InContent; }
	void SetContent(TArray<uint8>&& InContent) override { Content = MoveTemp(InContent); }
	void SetContentAsString(const FString& InContent) override;
	bool SetResponseBodyReceiveStream(TSharedRef<FArchive> InStream) override;
	void SetTimeout(float Seconds) override { TimeoutSeconds = Seconds; }
	void ClearTimeout() override { TimeoutSeconds = 0.0f; }
	bool ProcessRequest() override;
	FHttpRequestCompleteDelegate& OnProcessRequestComplete() override { return CompleteDelegate; }
	FHttpRequestProgressDelegate64& OnRequestProgress64() override { return ProgressDelegate; }
	void CancelRequest() override;
	EHttpRequestStatus::Type GetStatus() const override { return Status; }
	EHttpFailureReason GetFailureReason() const override { return FailureReason; }
	const FHttpResponsePtr GetResponse() const override;
	float GetElapsedTime() const override;

	/** For the manager, on the game thread. */
	const TSharedPtr<FHttpTransfer>& GetTransfer() const { return Transfer; }
	void SetEnded(EHttpFailureReason Reason);
	void CallComplete();
	void CallProgress();

private:
	bool IsValidToSend() const;
	TSharedRef<FHttpTransfer> MakeTransfer() const;

	FString URL;
	FString Verb = TEXT("GET");
	FHttpHeaders Headers;
	TArray<uint8> Content;
	TSharedPtr<FArchive> Stream;
	float TimeoutSeconds = 0.0f;
	FHttpRequestCompleteDelegate CompleteDelegate;
	FHttpRequestProgressDelegate64 ProgressDelegate;
	EHttpRequestStatus::Type Status = EHttpRequestStatus::NotStarted;
	EHttpFailureReason FailureReason = EHttpFailureReason::None;
	TSharedPtr<FHttpTransfer> Transfer;
	TSharedPtr<FCurlHttpResponse> Response;
	double StartTime = 0.0;
	float ElapsedTime = 0.0f;
	uint64 ReportedBytes = 0;
};
