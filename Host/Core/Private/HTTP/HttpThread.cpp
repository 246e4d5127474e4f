#include "HttpThread.h"

#include "../Async/GameThreadQueue.h"
#include "HAL/FaultInjection.h"
#include "HAL/PlatformTime.h"
#include "HAL/RunnableThread.h"
#include "HttpModule.h"
#include "HttpTransfer.h"
#include "Misc/ScopeLock.h"

namespace
{
/** The longest that the thread waits before it looks at the time-outs, in milliseconds. */
constexpr int32 PollMilliseconds = 50;

/** The same while a transfer is paused: the game thread tells nobody when it has caught up. */
constexpr int32 PausedPollMilliseconds = 1;

struct FCurlLibrary
{
	FCurlLibrary() { curl_global_init(CURL_GLOBAL_DEFAULT); }
	~FCurlLibrary() { curl_global_cleanup(); }
};

EHttpFailureReason ReasonOf(CURLcode Code, const FHttpTransfer& Transfer)
{
	if (Transfer.AbortReason != EHttpFailureReason::None)
	{
		return Transfer.AbortReason;
	}
	if (Code == CURLE_OPERATION_TIMEDOUT)
	{
		return EHttpFailureReason::TimedOut;
	}
	return Code == CURLE_OK ? EHttpFailureReason::None : EHttpFailureReason::ConnectionError;
}
} // namespace

FHttpThread::FHttpThread()
{
	static FCurlLibrary Library;
	Multi = curl_multi_init();
	check(Multi != nullptr);
	Thread.Reset(FRunnableThread::Create(this, TEXT("HTTP")));
}

FHttpThread::~FHttpThread()
{
	Thread.Reset();
	for (const TSharedRef<FHttpTransfer>& Transfer : Running)
	{
		curl_multi_remove_handle(Multi, Transfer->Easy);
	}
	Running.Empty();
	curl_multi_cleanup(Multi);
}

void FHttpThread::Add(const TSharedRef<FHttpTransfer>& Transfer)
{
	{
		FScopeLock Lock(&NewLock);
		New.Add(Transfer);
	}
	Wake();
}

void FHttpThread::Wake()
{
	curl_multi_wakeup(Multi);
}

void FHttpThread::Stop()
{
	bStopping = true;
	Wake();
}

uint32 FHttpThread::Run()
{
	while (!bStopping)
	{
		TakeNew();
		ResumePaused();
		int Active = 0;
		curl_multi_perform(Multi, &Active);
		FinishDone();
		EndStopped();
		curl_multi_poll(Multi, nullptr, 0, IsAnyPaused() ? PausedPollMilliseconds : PollMilliseconds, nullptr);
	}
	return 0;
}

void FHttpThread::TakeNew()
{
	TArray<TSharedRef<FHttpTransfer>> Taken;
	{
		FScopeLock Lock(&NewLock);
		Taken = MoveTemp(New);
	}
	for (const TSharedRef<FHttpTransfer>& Transfer : Taken)
	{
		StartTransfer(Transfer);
	}
}

void FHttpThread::StartTransfer(const TSharedRef<FHttpTransfer>& Transfer)
{
	Transfer->LastActivity = FPlatformTime::Seconds();
	if (FailsByPlan(EHostFault::Network) || !PrepareCurl(*Transfer) ||
		curl_multi_add_handle(Multi, Transfer->Easy) != CURLM_OK)
	{
		Transfer->OnEnded(EHttpFailureReason::ConnectionError);
		return;
	}
	Running.Add(Transfer);
}

bool FHttpThread::IsAnyPaused() const
{
	return Running.ContainsByPredicate([](const TSharedRef<FHttpTransfer>& Transfer) { return Transfer->bPaused; });
}

void FHttpThread::ResumePaused()
{
	if (FGameThreadQueue::Get().Num() > FHttpModule::MaxTasksAhead / 2)
	{
		return;
	}
	for (int32 Index = Running.Num() - 1; Index >= 0; --Index)
	{
		FHttpTransfer& Transfer = *Running[Index];
		if (!Exchange(Transfer.bPaused, false))
		{
			continue;
		}
		// What curl holds back is written in this call, which may pause the transfer again.
		const CURLcode Code = curl_easy_pause(Transfer.Easy, CURLPAUSE_CONT);
		if (Code != CURLE_OK)
		{
			End(Transfer, ReasonOf(Code, Transfer));
		}
	}
}

void FHttpThread::FinishDone()
{
	int Left = 0;
	while (const CURLMsg* Message = curl_multi_info_read(Multi, &Left))
	{
		if (Message->msg != CURLMSG_DONE)
		{
			continue;
		}
		char* Private = nullptr;
		curl_easy_getinfo(Message->easy_handle, CURLINFO_PRIVATE, &Private);
		FHttpTransfer& Transfer = *(FHttpTransfer*)Private;
		End(Transfer, ReasonOf(Message->data.result, Transfer));
	}
}

/** Ends what was cancelled and what has been silent for too long. */
void FHttpThread::EndStopped()
{
	const double Now = FPlatformTime::Seconds();
	for (int32 Index = Running.Num() - 1; Index >= 0; --Index)
	{
		FHttpTransfer& Transfer = *Running[Index];
		// The peer isn't to blame for the silence of a pause.
		Transfer.LastActivity = Transfer.bPaused ? Now : Transfer.LastActivity;
		if (Transfer.bCancelled)
		{
			End(Transfer, EHttpFailureReason::Cancelled);
		}
		else if (Transfer.TimeoutSeconds > 0.0 && Now - Transfer.LastActivity > Transfer.TimeoutSeconds)
		{
			End(Transfer, EHttpFailureReason::TimedOut);
		}
	}
}

void FHttpThread::End(FHttpTransfer& Transfer, EHttpFailureReason Reason)
{
	const int32 Index = Running.IndexOfByPredicate(
		[&Transfer](const TSharedRef<FHttpTransfer>& Each) { return &Each.Get() == &Transfer; });
	const TSharedRef<FHttpTransfer> Kept = Running[Index];
	Running.RemoveAtSwap(Index);
	char* URL = nullptr;
	if (curl_easy_getinfo(Transfer.Easy, CURLINFO_EFFECTIVE_URL, &URL) == CURLE_OK && URL)
	{
		FScopeLock Lock(&Transfer.Received->Lock);
		Transfer.Received->EffectiveURL = FString(URL);
	}
	curl_multi_remove_handle(Multi, Transfer.Easy);
	Transfer.OnEnded(Reason);
}
