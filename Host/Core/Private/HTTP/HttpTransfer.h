#pragma once

#include "Containers/Array.h"
#include "HAL/CriticalSection.h"
#include "Interfaces/IHttpBase.h"
#include "Templates/Function.h"
#include "Templates/SharedPointer.h"

#include <atomic>
#include <curl/curl.h>
#include <string>
#include <vector>

class FArchive;

/** The headers of one message, in order, found without regard to case. */
class FHttpHeaders
{
public:
	void Set(const FString& Name, const FString& Value);
	void Append(const FString& Name, const FString& Value);
	FString Find(const FString& Name) const;
	TArray<FString> ToLines() const;
	void Reset() { Items.Reset(); }

private:
	struct FItem
	{
		FString Name;
		FString Value;
	};
	TArray<FItem> Items;
};

/** What has come back so far. Written on the HTTP thread, read on any under its lock. */
struct FHttpReceived
{
	mutable FCriticalSection Lock;
	int32 Code = 0;
	FHttpHeaders Headers;
	FString EffectiveURL;
	/** Only without a stream. Complete, and read without the lock, once the transfer has ended. */
	TArray<uint8> Content;
	std::atomic<uint64> BytesReceived{0};
	std::atomic<uint64> BytesSent{0};
};

/** The HTTP thread's half of one request. Set up on the game thread and then touched by the HTTP thread alone. */
struct FHttpTransfer
{
	FHttpTransfer() = default;
	~FHttpTransfer();
	FHttpTransfer(const FHttpTransfer&) = delete;
	FHttpTransfer& operator=(const FHttpTransfer&) = delete;

	std::string URL;
	std::string Verb;
	std::vector<std::string> HeaderLines;
	TArray<uint8> Body;
	/** Whether the request carries what another server must not see, so that a redirect isn't followed. */
	bool bHasCredentials = false;
	double TimeoutSeconds = 0.0;
	TSharedPtr<FArchive> Stream;
	TSharedRef<FHttpReceived> Received = MakeShared<FHttpReceived>();
	/** Called once on the HTTP thread, last. */
	TFunction<void(EHttpFailureReason)> OnEnded;

	std::atomic<bool> bCancelled{false};
	double LastActivity = 0.0;
	/** Whether the body waits because the game thread has more to do than it should be given. */
	bool bPaused = false;
	EHttpFailureReason AbortReason = EHttpFailureReason::None;
	CURL* Easy = nullptr;
	curl_slist* HeaderList = nullptr;
};

/** Sets the curl handle up for the transfer. @return false when curl can't take it. HTTP thread. */
bool PrepareCurl(FHttpTransfer& Transfer);
