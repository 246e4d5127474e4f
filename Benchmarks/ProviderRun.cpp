#include "ProviderRun.h"

#include "Providers/CVXProviderFactory.h"

#include <cstdlib>

FProviderRun::FProviderRun(const FStreamDialect& InDialect)
	: Dialect(InDialect)
{
	FEngineLoopParams Params;
	Params.bLogFile = false;
	Params.bLogToTerminal = false;
	Loop.Init(Params);
	MakeProvider();
}

void FProviderRun::MakeProvider()
{
	FCVXProviderProfile Profile;
	Profile.ProviderType = Dialect.Type;
	Profile.BaseURL = FString(Server.Url("").c_str());
	Profile.ModelId = TEXT("m");
	Profile.ApiKeyEnvVar = TEXT("key-for-the-benchmark");
	Provider = FCVXProviderFactory::CreateProvider(Profile);
}

void FProviderRun::Start(TFunction<void(const FString&)> OnText)
{
	bDone = false;
	FCVXProviderCallbacks Callbacks;
	Callbacks.OnTextDelta = MoveTemp(OnText);
	Callbacks.OnStreamFinished = [this](const FCVXTokenUsage&) { bDone = true; };
	Callbacks.OnError = [](const FString&) { std::abort(); };
	if (Provider->StreamRequest(FCVXProviderRequest(), Callbacks).IsEmpty())
	{
		std::abort();
	}
}

void FProviderRun::RunUntil(const bool& bCondition)
{
	while (!bCondition)
	{
		Loop.WaitForWork(0.1);
		Loop.Tick();
	}
}

std::size_t FProviderRun::CountWords()
{
	std::size_t Words = 0;
	Start([&Words](const FString& Text) { Words += (std::size_t)Text.Len() == FStreamDialect::WordSize ? 1 : 0; });
	RunUntil(bDone);
	return Words;
}

FLoopbackReply MakeAnswer(const FStreamDialect& Dialect, std::size_t Words)
{
	std::vector<std::string> Chunks(Words / FStreamDialect::WordCount, Dialect.Words);
	Chunks.push_back(Dialect.Stop);
	return FLoopbackReply::Chunked(200, Chunks, {{"Content-Type", "text/event-stream"}});
}
