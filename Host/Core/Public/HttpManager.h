#pragma once

#include "Containers/Array.h"
#include "Templates/SharedPointer.h"
#include "Templates/UniquePtr.h"

class FCurlHttpRequest;
class FHttpThread;

/** Keeps the running requests alive and calls their completions. Game thread. */
class FHttpManager
{
public:
	FHttpManager();
	/** Ends all requests without calling their completions, and the HTTP thread with them. */
	~FHttpManager();

	/** Calls the completions of what has ended, and reports progress. Part of every tick of the engine loop. */
	void Tick(float DeltaSeconds);

	/** The requests that have started and whose completion hasn't been called. */
	int32 GetNumActiveRequests() const { return Active.Num(); }

private:
	friend class FCurlHttpRequest;

	/** @return false when there is no thread to run it. */
	bool Start(const TSharedRef<FCurlHttpRequest>& Request);
	FHttpThread& GetThread() { return *Thread; }

	TUniquePtr<FHttpThread> Thread;
	TArray<TSharedRef<FCurlHttpRequest>> Active;
	/** Requests whose end the game thread has been told of, in order. */
	TSharedRef<TArray<TSharedPtr<FCurlHttpRequest>>> Ended;
};
