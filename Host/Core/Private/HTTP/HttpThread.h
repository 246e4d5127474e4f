#pragma once

#include "Containers/Array.h"
#include "HAL/CriticalSection.h"
#include "HAL/Runnable.h"
#include "Interfaces/IHttpBase.h"
#include "Templates/SharedPointer.h"
#include "Templates/UniquePtr.h"

#include <atomic>
#include <curl/curl.h>

class FRunnableThread;
struct FHttpTransfer;

/** Moves the bytes of all transfers, on one thread of its own. */
class FHttpThread : public FRunnable
{
public:
	FHttpThread();
	/** Drops all transfers without telling anyone, and ends the thread. */
	~FHttpThread() override;

	bool IsRunning() const { return Thread.IsValid(); }

	/** Any thread. */
	void Add(const TSharedRef<FHttpTransfer>& Transfer);
	/** Lets the thread look at its transfers' cancel flags. Any thread. */
	void Wake();

	uint32 Run() override;
	void Stop() override;

private:
	void TakeNew();
	void StartTransfer(const TSharedRef<FHttpTransfer>& Transfer);
	/** Lets the paused transfers go on once the game thread has caught up. */
	void ResumePaused();
	bool IsAnyPaused() const;
	void FinishDone();
	void EndStopped();
	void End(FHttpTransfer& Transfer, EHttpFailureReason Reason);

	CURLM* Multi;
	std::atomic<bool> bStopping{false};
	FCriticalSection NewLock;
	TArray<TSharedRef<FHttpTransfer>> New;
	/** Touched by the thread alone. */
	TArray<TSharedRef<FHttpTransfer>> Running;
	TUniquePtr<FRunnableThread> Thread;
};
