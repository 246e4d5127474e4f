#include "Corvexa/Providers/ProviderFixture.h"

#include "HttpModule.h"

#include <random>

FProviderFixture::FProviderFixture(ECVXProviderType Type)
{
	Profile.ProviderType = Type;
	Profile.BaseURL = FString(Server.Url("").c_str());
	Profile.ApiKeyEnvVar = FString(Key);
	MakeProvider();
	Callbacks.OnTextDelta = [this](const FString& Text) { Told.Add(TEXT("text ") + Text); };
	Callbacks.OnReasoningDelta = [this](const FString& Text) { Told.Add(TEXT("reasoning ") + Text); };
	Callbacks.OnToolCallComplete = [this](const FCVXToolCall& Call)
	{ Told.Add(FString::Printf(TEXT("call %s %s %s"), *Call.Id, *Call.Name, *Call.Arguments)); };
	Callbacks.OnStreamFinished = [this](const FCVXTokenUsage& Usage)
	{
		Told.Add(FString::Printf(TEXT("finished %d %d %d %d%s"), Usage.InputTokens, Usage.OutputTokens, Usage.CacheRead,
			Usage.CacheWrite, Usage.bTruncated ? TEXT(" truncated") : TEXT("")));
		bEnded = true;
	};
	Callbacks.OnError = [this](const FString& Text)
	{
		Told.Add(TEXT("error ") + Text);
		bEnded = true;
	};
}

void FProviderFixture::MakeProvider()
{
	Provider = FCVXProviderFactory::CreateProvider(Profile);
}

TArray<FString> FProviderFixture::Play(FLoopbackReply Reply)
{
	Server.Enqueue(std::move(Reply));
	Told.Reset();
	bEnded = false;
	EXPECT_EQ(Provider->StreamRequest(FCVXProviderRequest(), Callbacks).Len(), 32);
	EXPECT_TRUE(Pump.Until([this] { return bEnded; }));
	for (int32 Index = 0; Index < 3; ++Index)
	{
		Pump.Tick();
	}
	return Told;
}

FHttpRequestMessage FProviderFixture::Send(const FCVXProviderRequest& Request)
{
	Server.Enqueue(FLoopbackReply::Sized(200, ""));
	bEnded = false;
	Provider->StreamRequest(Request, Callbacks);
	EXPECT_TRUE(Pump.Until([this] { return bEnded; }));
	return Server.Requests().back().Request;
}

void FProviderFixture::ExpectSameWhereverCut(const std::string& Body, const TArray<FString>& Whole)
{
	ASSERT_EQ(Play(FLoopbackReply::Sized(200, Body)), Whole);
	for (size_t Cut = 1; Cut < Body.size(); ++Cut)
	{
		FLoopbackReply Reply = FLoopbackReply::Sized(200, Body);
		Reply.SplitAt({Reply.HeadSize() + Cut});
		ASSERT_EQ(Play(std::move(Reply)), Whole) << "cut at " << Cut;
	}
	std::mt19937 Random(9);
	for (int32 Round = 0; Round < 50; ++Round)
	{
		std::vector<std::string> Pieces;
		for (size_t At = 0; At < Body.size(); At += Pieces.back().size())
		{
			Pieces.push_back(Body.substr(At, 1 + Random() % 60));
		}
		ASSERT_EQ(Play(FLoopbackReply::Events(Pieces)), Whole) << "round " << Round;
	}
}

void FProviderFixture::ExpectSilenceAfterFirstWord(const std::vector<std::string>& Events)
{
	for (const bool bDestroy : {false, true})
	{
		Server.Enqueue(FLoopbackReply::Events(Events));
		MakeProvider();
		FString Handle;
		FCVXProviderCallbacks Ending = Callbacks;
		Ending.OnTextDelta = [&](const FString& Text)
		{
			Told.Add(Text);
			bDestroy ? Provider.Reset() : Provider->CancelRequest(Handle);
		};
		Told.Reset();
		Handle = Provider->StreamRequest(FCVXProviderRequest(), Ending);
		EXPECT_TRUE(Pump.Until([this] { return Told.Num() > 0; }));
		EXPECT_TRUE(Pump.Until([] { return FHttpModule::Get().GetHttpManager().GetNumActiveRequests() == 0; }));
		Pump.Tick();
		EXPECT_EQ(Told.Num(), 1) << (bDestroy ? "after the provider's end" : "after a cancel");
	}
}
