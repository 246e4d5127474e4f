#pragma once

#include "HttpManager.h"
#include "Interfaces/IHttpRequest.h"

/** The way to HTTP: one module, one HTTP thread, connections that are used again. Game thread. */
class FHttpModule
{
public:
	/** Started by the first call. */
	static FHttpModule& Get();
	static bool IsAvailable();

	FHttpRequestRef CreateRequest();
	FHttpManager& GetHttpManager() { return Manager; }

	/** Ends all requests without calling their completions, and the thread. The next `Get` starts anew. */
	static void Shutdown();

	/** The largest body that is kept in memory, in bytes; a larger one fails. A stream has no limit. */
	static constexpr int64 MaxContentBytes = 512ll * 1024 * 1024;
	/**
	 * A body that goes into a stream is paused while this many tasks wait for the game thread, and goes on at half of
	 * it: what the stream posts would pile up without bound behind a peer that is quicker than the game thread.
	 */
	static constexpr int32 MaxTasksAhead = 128;

private:
	FHttpModule() = default;

	FHttpManager Manager;
};
