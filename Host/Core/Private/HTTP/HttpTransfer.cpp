#include "HttpTransfer.h"

#include "../Async/GameThreadQueue.h"
#include "HAL/PlatformTime.h"
#include "HttpModule.h"
#include "Misc/ScopeLock.h"
#include "Serialization/Archive.h"

#include <algorithm>
#include <string_view>

namespace
{
constexpr double MaxConnectSeconds = 30.0;
constexpr long MaxRedirects = 10;
constexpr long ReceiveBufferBytes = 512 * 1024;

FString Trimmed(std::string_view Text)
{
	return FString::FromUtf8(Text.data(), (int64)Text.size()).TrimStartAndEnd();
}

/** One header line, or a status line, which begins a new message (after a redirect or an interim response). */
size_t OnHeader(char* Data, size_t Size, size_t Count, void* UserData)
{
	FHttpTransfer& Transfer = *(FHttpTransfer*)UserData;
	FHttpReceived& Received = *Transfer.Received;
	const std::string_view Line(Data, Size * Count);
	Transfer.LastActivity = FPlatformTime::Seconds();
	const size_t Colon = Line.find(':');
	FScopeLock Lock(&Received.Lock);
	if (Line.starts_with("HTTP/"))
	{
		Received.Headers.Reset();
		Received.Code = 0;
		const size_t Blank = Line.find(' ');
		if (Blank != std::string_view::npos)
		{
			Received.Code = FCString::Atoi(*Trimmed(Line.substr(Blank)));
		}
	}
	else if (Colon != std::string_view::npos)
	{
		Received.Headers.Append(Trimmed(Line.substr(0, Colon)), Trimmed(Line.substr(Colon + 1)));
	}
	return Line.size();
}

bool KeepContent(FHttpTransfer& Transfer, const char* Data, size_t Bytes)
{
	TArray<uint8>& Content = Transfer.Received->Content;
	if ((int64)Content.Num() + (int64)Bytes > FHttpModule::MaxContentBytes)
	{
		Transfer.AbortReason = EHttpFailureReason::Other;
		return false;
	}
	Content.Append((const uint8*)Data, (int32)Bytes);
	return true;
}

size_t OnBody(char* Data, size_t Size, size_t Count, void* UserData)
{
	FHttpTransfer& Transfer = *(FHttpTransfer*)UserData;
	const size_t Bytes = Size * Count;
	Transfer.LastActivity = FPlatformTime::Seconds();
	if (Transfer.Stream && FGameThreadQueue::Get().Num() >= FHttpModule::MaxTasksAhead)
	{
		Transfer.bPaused = true;
		return CURL_WRITEFUNC_PAUSE;
	}
	Transfer.Received->BytesReceived += Bytes;
	if (!Transfer.Stream)
	{
		return KeepContent(Transfer, Data, Bytes) ? Bytes : 0;
	}
	Transfer.Stream->Serialize(Data, (int64)Bytes);
	if (Transfer.Stream->IsError())
	{
		Transfer.AbortReason = EHttpFailureReason::Other;
		return 0;
	}
	return Bytes;
}

/** Called often while a transfer runs: notes activity in either direction. */
int OnProgress(void* UserData, curl_off_t, curl_off_t, curl_off_t, curl_off_t Sent)
{
	FHttpTransfer& Transfer = *(FHttpTransfer*)UserData;
	if (Transfer.Received->BytesSent.exchange((uint64)Sent) != (uint64)Sent)
	{
		Transfer.LastActivity = FPlatformTime::Seconds();
	}
	return 0;
}

void SetVerb(FHttpTransfer& Transfer)
{
	CURL* Easy = Transfer.Easy;
	if (Transfer.Verb == "HEAD")
	{
		curl_easy_setopt(Easy, CURLOPT_NOBODY, 1L);
	}
	else
	{
		curl_easy_setopt(Easy, CURLOPT_CUSTOMREQUEST, Transfer.Verb.c_str());
	}
	if (Transfer.Body.Num() > 0 || Transfer.Verb == "POST" || Transfer.Verb == "PUT" || Transfer.Verb == "PATCH")
	{
		curl_easy_setopt(Easy, CURLOPT_POSTFIELDSIZE_LARGE, (curl_off_t)Transfer.Body.Num());
		curl_easy_setopt(Easy, CURLOPT_POSTFIELDS, Transfer.Body.Num() > 0 ? (const char*)Transfer.Body.GetData() : "");
	}
}

/** @return false when there is no memory for a line. */
bool SetHeaders(FHttpTransfer& Transfer)
{
	// Without this the body of a larger request waits a second for the server's leave.
	std::vector<std::string> Lines = Transfer.HeaderLines;
	Lines.push_back("Expect:");
	for (const std::string& Line : Lines)
	{
		curl_slist* Longer = curl_slist_append(Transfer.HeaderList, Line.c_str());
		if (!Longer)
		{
			return false;
		}
		Transfer.HeaderList = Longer;
	}
	return curl_easy_setopt(Transfer.Easy, CURLOPT_HTTPHEADER, Transfer.HeaderList) == CURLE_OK;
}
} // namespace

FHttpTransfer::~FHttpTransfer()
{
	if (Easy)
	{
		curl_easy_cleanup(Easy);
	}
	curl_slist_free_all(HeaderList);
}

bool PrepareCurl(FHttpTransfer& Transfer)
{
	CURL* Easy = Transfer.Easy = curl_easy_init();
	if (!Easy || curl_easy_setopt(Easy, CURLOPT_URL, Transfer.URL.c_str()) != CURLE_OK)
	{
		return false;
	}
	SetVerb(Transfer);
	const double Connect =
		Transfer.TimeoutSeconds > 0.0 ? std::min(Transfer.TimeoutSeconds, MaxConnectSeconds) : MaxConnectSeconds;
	curl_easy_setopt(Easy, CURLOPT_CONNECTTIMEOUT_MS, (long)std::max(1.0, Connect * 1000.0));
	curl_easy_setopt(Easy, CURLOPT_PROTOCOLS_STR, "http,https");
	curl_easy_setopt(Easy, CURLOPT_REDIR_PROTOCOLS_STR, "http,https");
	curl_easy_setopt(Easy, CURLOPT_FOLLOWLOCATION, Transfer.bHasCredentials ? 0L : 1L);
	curl_easy_setopt(Easy, CURLOPT_MAXREDIRS, MaxRedirects);
	curl_easy_setopt(Easy, CURLOPT_HTTP_VERSION, (long)CURL_HTTP_VERSION_2TLS);
	curl_easy_setopt(Easy, CURLOPT_SSL_VERIFYPEER, 1L);
	curl_easy_setopt(Easy, CURLOPT_SSL_VERIFYHOST, 2L);
	curl_easy_setopt(Easy, CURLOPT_NOSIGNAL, 1L);
	curl_easy_setopt(Easy, CURLOPT_TCP_NODELAY, 1L);
	curl_easy_setopt(Easy, CURLOPT_BUFFERSIZE, ReceiveBufferBytes);
	curl_easy_setopt(Easy, CURLOPT_HEADERFUNCTION, &OnHeader);
	curl_easy_setopt(Easy, CURLOPT_HEADERDATA, &Transfer);
	curl_easy_setopt(Easy, CURLOPT_WRITEFUNCTION, &OnBody);
	curl_easy_setopt(Easy, CURLOPT_WRITEDATA, &Transfer);
	curl_easy_setopt(Easy, CURLOPT_NOPROGRESS, 0L);
	curl_easy_setopt(Easy, CURLOPT_XFERINFOFUNCTION, &OnProgress);
	curl_easy_setopt(Easy, CURLOPT_XFERINFODATA, &Transfer);
	curl_easy_setopt(Easy, CURLOPT_PRIVATE, &Transfer);
	return SetHeaders(Transfer);
}
