#include "HttpModule.h"
#include "LaunchEngineLoop.h"
#include "Loopback/LoopbackServer.h"
#include "Serialization/Archive.h"

#include <benchmark/benchmark.h>
#include <cstdlib>
#include <memory>
#include <string>

namespace
{
constexpr std::size_t BlockBytes = 1 << 20;
constexpr std::size_t BlockCount = 100;
constexpr std::size_t EventCount = 200'000;

/** Counts what arrives and keeps nothing. */
class FCountingArchive final : public FArchive
{
public:
	FCountingArchive() { SetIsSaving(true); }
	void Serialize(void*, int64 Count) override { Bytes += Count; }
	int64 TotalSize() override { return Bytes; }

	int64 Bytes = 0;
};

FLoopbackReply Body()
{
	return FLoopbackReply::Repeated(std::make_shared<const std::string>(BlockBytes, 'x'), BlockCount);
}

/** Small events, as a model streams its words. */
FLoopbackReply EventStream()
{
	const auto Event = std::make_shared<const std::string>("event: delta\ndata: {\"text\":\"word \"}\n\n");
	auto Events = std::make_shared<std::string>();
	for (std::size_t Number = 0; Number < EventCount / 100; ++Number)
	{
		*Events += *Event;
	}
	return FLoopbackReply::Repeated(Events, 100, {{"Content-Type", "text/event-stream"}});
}

void Fetch(FEngineLoop& Loop, const FString& Url, int64 Expected)
{
	const TSharedRef<FCountingArchive> Sink = MakeShared<FCountingArchive>();
	const FHttpRequestRef Request = FHttpModule::Get().CreateRequest();
	bool bDone = false;
	Request->SetURL(Url);
	Request->SetResponseBodyReceiveStream(Sink);
	Request->OnProcessRequestComplete().BindLambda([&bDone](FHttpRequestPtr, FHttpResponsePtr, bool) { bDone = true; });
	if (!Request->ProcessRequest())
	{
		std::abort();
	}
	while (!bDone)
	{
		Loop.WaitForWork(0.001);
		Loop.Tick();
	}
	if (Sink->Bytes != Expected)
	{
		std::abort();
	}
}

void StreamHost(benchmark::State& State, FLoopbackReply (*MakeReply)())
{
	FLoopbackServer Server;
	const FLoopbackReply Reply = MakeReply();
	const int64 Bytes = (int64)(Reply.WireSize() - Reply.HeadSize());
	Server.Route("/", Reply);
	FEngineLoop Loop;
	FEngineLoopParams Params;
	Params.bLogFile = false;
	Loop.Init(Params);
	const FString Url(Server.Url().c_str());
	for (auto Unused : State)
	{
		(void)Unused;
		Fetch(Loop, Url, Bytes);
	}
	State.SetBytesProcessed((int64_t)State.iterations() * Bytes);
}

/** The command line tool, its start included. */
void StreamCurl(benchmark::State& State)
{
	FLoopbackServer Server;
	const FLoopbackReply Reply = Body();
	Server.Route("/", Reply);
	const std::string Command = "curl -s -o /dev/null " + Server.Url();
	for (auto Unused : State)
	{
		(void)Unused;
		if (std::system(Command.c_str()) != 0)
		{
			State.SkipWithError("curl failed");
			return;
		}
	}
	State.SetBytesProcessed((int64_t)(State.iterations() * (Reply.WireSize() - Reply.HeadSize())));
}
}

BENCHMARK_CAPTURE(StreamHost, Body, Body)->Name("Http/Stream100MB/Host")->UseRealTime()->Unit(benchmark::kMillisecond);
BENCHMARK(StreamCurl)->Name("Http/Stream100MB/curl")->UseRealTime()->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(StreamHost, Events, EventStream)
	->Name("Http/Stream200kEvents/Host")
	->UseRealTime()
	->Unit(benchmark::kMillisecond);
