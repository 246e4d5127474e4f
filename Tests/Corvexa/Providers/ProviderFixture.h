#pragma once

#include "Core/CVXProfiles.h"
#include "Loopback/LoopbackServer.h"
#include "Providers/CVXProviderFactory.h"
#include "Support/HostTypePrinting.h"
#include "Support/LogCapture.h"
#include "Support/LoopPump.h"
#include "Support/TempProject.h"

#include <gtest/gtest.h>

/** One provider on a loopback server, and all that its callbacks told, in order. */
class FProviderFixture : public testing::Test
{
protected:
	static constexpr const char* Key = "sk-test-s3cret";

	explicit FProviderFixture(ECVXProviderType Type);

	/** Makes the provider anew, from the profile as it is now. */
	void MakeProvider();
	/** Plays one reply to its end, and what comes too late behind it. @return what was told. */
	TArray<FString> Play(FLoopbackReply Reply);
	/** Sends one request. @return it as it arrived. */
	FHttpRequestMessage Send(const FCVXProviderRequest& Request);
	/** Expects the same of the answer cut in two at every byte, and in random pieces. */
	void ExpectSameWhereverCut(const std::string& Body, const TArray<FString>& Whole);
	/** Expects that a request says nothing once its first word has cancelled it, or has ended the provider. */
	void ExpectSilenceAfterFirstWord(const std::vector<std::string>& Events);

	FTempProject Project;
	FLoopPump Pump;
	FLoopbackServer Server;
	FCVXProviderProfile Profile;
	TUniquePtr<ICVXProvider> Provider;
	FCVXProviderCallbacks Callbacks;
	TArray<FString> Told;
	bool bEnded = false;
};
