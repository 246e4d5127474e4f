#pragma once

#include "LaunchEngineLoop.h"
#include "Loopback/LoopbackServer.h"
#include "Providers/CVXProvider.h"
#include "StreamDialect.h"

/** A provider on a loopback server, and the loop that it needs. */
class FProviderRun
{
public:
	explicit FProviderRun(const FStreamDialect& InDialect);

	/** Makes the provider anew, which drops the request that runs. */
	void MakeProvider();
	/** Starts a request. @param OnText called for each text delta. */
	void Start(TFunction<void(const FString&)> OnText);
	void RunUntil(const bool& bCondition);
	/** @return the words that one whole answer brought. */
	std::size_t CountWords();

	FLoopbackServer Server;

private:
	const FStreamDialect& Dialect;
	FEngineLoop Loop;
	TUniquePtr<ICVXProvider> Provider;
	bool bDone = false;
};

/** An answer of so many words, in chunks as a server writes them. @param Words a multiple of `WordCount`. */
FLoopbackReply MakeAnswer(const FStreamDialect& Dialect, std::size_t Words);
