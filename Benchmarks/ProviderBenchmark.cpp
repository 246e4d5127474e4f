#include "HttpModule.h"
#include "LaunchEngineLoop.h"
#include "Loopback/LoopbackServer.h"
#include "Providers/Anthropic/CVXAnthropicDelta.h"
#include "Providers/Anthropic/CVXAnthropicProvider.h"

#include <algorithm>
#include <arpa/inet.h>
#include <benchmark/benchmark.h>
#include <chrono>
#include <cstdlib>
#include <memory>
#include <simdjson.h>
#include <string>
#include <string_view>
#include <sys/resource.h>
#include <sys/socket.h>
#include <unistd.h>

/** A streamed answer of 200,000 text deltas, from the socket to the callback that gets each word. */
namespace
{
constexpr std::size_t EventCount = 200'000;
constexpr std::size_t EventsPerChunk = 20;

const std::string Delta = "event: content_block_delta\n"
						  "data: {\"type\":\"content_block_delta\",\"index\":0,"
						  "\"delta\":{\"type\":\"text_delta\",\"text\":\" word\"}}\n\n";
const std::string Stop = "event: message_stop\ndata: {\"type\":\"message_stop\"}\n\n";

FLoopbackReply Answer()
{
	std::string Piece;
	for (std::size_t Index = 0; Index < EventsPerChunk; ++Index)
	{
		Piece += Delta;
	}
	std::vector<std::string> Chunks(EventCount / EventsPerChunk, Piece);
	Chunks.push_back(Stop);
	return FLoopbackReply::Chunked(200, Chunks, {{"Content-Type", "text/event-stream"}});
}

/** A provider on a loopback server, and the loop that it needs. */
class FProviderRun
{
public:
	FProviderRun()
	{
		FEngineLoopParams Params;
		Params.bLogFile = false;
		Params.bLogToTerminal = false;
		Loop.Init(Params);
		Profile.BaseURL = FString(Server.Url("").c_str());
		Profile.ApiKeyEnvVar = TEXT("key-for-the-benchmark");
		Provider = MakeUnique<FCVXAnthropicProvider>(Profile);
	}

	/** Starts a request. @param OnText called for each text delta. */
	void Start(TFunction<void(const FString&)> OnText)
	{
		bDone = false;
		FCVXProviderCallbacks Callbacks;
		Callbacks.OnTextDelta = MoveTemp(OnText);
		Callbacks.OnStreamFinished = [this](const FCVXTokenUsage&) { bDone = true; };
		Callbacks.OnError = [](const FString&) { std::abort(); };
		Provider->StreamRequest(FCVXProviderRequest(), Callbacks);
	}
	void RunUntil(const bool& bCondition)
	{
		while (!bCondition)
		{
			Loop.WaitForWork(0.1);
			Loop.Tick();
		}
	}
	/** @return the words that one whole answer brought. */
	std::size_t CountWords()
	{
		std::size_t Words = 0;
		Start([&Words](const FString& Text) { Words += Text.Len() == 5 ? 1 : 0; });
		RunUntil(bDone);
		return Words;
	}

	FLoopbackServer Server;
	FEngineLoop Loop;
	FCVXProviderProfile Profile;
	TUniquePtr<FCVXAnthropicProvider> Provider;
	bool bDone = false;
};

void StreamThroughProvider(benchmark::State& State)
{
	FProviderRun Run;
	Run.Server.Route("/v1/messages", Answer());
	for (auto Unused : State)
	{
		(void)Unused;
		if (Run.CountWords() != EventCount)
		{
			State.SkipWithError("words were lost");
			return;
		}
	}
	State.SetItemsProcessed((int64_t)(State.iterations() * EventCount));
}

double PeakMegabytes()
{
	rusage Usage = {};
	getrusage(RUSAGE_SELF, &Usage);
	return (double)Usage.ru_maxrss / 1024.0;
}

/** Ten times the words take no more memory: the peak that the shorter answer left may not grow with the longer one. */
void MemoryOfLongerAnswer(benchmark::State& State)
{
	FProviderRun Run;
	const auto Body = std::make_shared<const std::string>(Delta);
	Run.Server.Enqueue(FLoopbackReply::Repeated(Body, EventCount));
	Run.CountWords();
	const double Before = PeakMegabytes();
	for (auto Unused : State)
	{
		(void)Unused;
		Run.Server.Enqueue(FLoopbackReply::Repeated(Body, 10 * EventCount));
		if (Run.CountWords() != 10 * EventCount)
		{
			State.SkipWithError("words were lost");
			return;
		}
	}
	State.counters["peak_MB"] = PeakMegabytes();
	State.counters["growth_MB"] = PeakMegabytes() - Before;
	State.SetItemsProcessed((int64_t)(State.iterations() * 10 * EventCount));
}

/** From the moment that the server may send the first word to the callback that gets it. */
void FirstDelta(benchmark::State& State, const std::string& Ahead)
{
	FProviderRun Run;
	std::size_t Requests = 0;
	double Worst = 0.0;
	for (auto Unused : State)
	{
		(void)Unused;
		const auto Gate = FLoopbackGate::Create();
		FLoopbackReply Reply = FLoopbackReply::Sized(200, Ahead + Delta + Stop);
		Reply.WaitAt(Reply.HeadSize() + Ahead.size() + Delta.size(), FLoopbackGate::Create());
		Reply.WaitAt(Reply.HeadSize() + Ahead.size(), Gate);
		Run.Server.Enqueue(std::move(Reply));
		bool bArrived = false;
		Run.Start([&bArrived](const FString&) { bArrived = true; });
		if (!Run.Server.WaitForRequests(++Requests))
		{
			State.SkipWithError("no request");
			return;
		}
		const auto Begin = std::chrono::steady_clock::now();
		Gate->Open();
		Run.RunUntil(bArrived);
		const double Seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - Begin).count();
		State.SetIterationTime(Seconds);
		Worst = std::max(Worst, Seconds);
		Run.Provider = MakeUnique<FCVXAnthropicProvider>(Run.Profile);
	}
	State.counters["worst_ms"] = Worst * 1000.0;
}

void FirstDeltaAlone(benchmark::State& State)
{
	FirstDelta(State, "");
}

void FirstDeltaBehindStart(benchmark::State& State)
{
	FirstDelta(State, "event: message_start\ndata: {\"message\":{}}\n\n");
}

/** The game thread's share alone: text into events, and each read. */
void ReadEvents(benchmark::State& State)
{
	FString Chunk;
	for (std::size_t Index = 0; Index < 2 * EventsPerChunk; ++Index)
	{
		Chunk.AppendUtf8(Delta.data(), (int64)Delta.size());
	}
	FCVXSSEParser Parser;
	std::size_t Words = 0;
	const TFunction<void(const FCVXSSEEvent&)> OnEvent = [&Words](const FCVXSSEEvent& Event)
	{
		FCVXAnthropicDelta Read;
		Words += Read.Read(Event.Data) && Read.Text->Len() == 5 ? 1 : 0;
	};
	for (auto Unused : State)
	{
		(void)Unused;
		Words = 0;
		while (Words < EventCount)
		{
			Parser.FeedChunk(Chunk, OnEvent);
		}
	}
	State.SetItemsProcessed((int64_t)(State.iterations() * EventCount));
}

int Connect(int Port)
{
	const int Fd = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
	sockaddr_in Address = {};
	Address.sin_family = AF_INET;
	Address.sin_port = htons((uint16_t)Port);
	Address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
	if (Fd < 0 || connect(Fd, (const sockaddr*)&Address, sizeof(Address)) != 0)
	{
		std::abort();
	}
	const std::string_view Request =
		"POST /v1/messages HTTP/1.1\r\nHost: x\r\nContent-Length: 0\r\nConnection: close\r\n\r\n";
	if (send(Fd, Request.data(), Request.size(), MSG_NOSIGNAL) != (ssize_t)Request.size())
	{
		std::abort();
	}
	return Fd;
}

/** Takes the chunk framing off in place. @return the bytes that belong to no whole chunk yet. */
std::size_t TakeChunks(std::string& Wire, std::string& Body)
{
	std::size_t At = 0;
	for (;;)
	{
		const std::size_t LineEnd = Wire.find("\r\n", At);
		if (LineEnd == std::string::npos)
		{
			break;
		}
		const std::size_t Size = std::strtoul(Wire.c_str() + At, nullptr, 16);
		if (LineEnd + 2 + Size + 2 > Wire.size())
		{
			break;
		}
		Body.append(Wire, LineEnd + 2, Size);
		At = LineEnd + 2 + Size + 2;
	}
	return At;
}

std::size_t CountWords(std::string& Body, simdjson::ondemand::parser& Parser)
{
	std::size_t Words = 0;
	std::size_t At = 0;
	for (std::size_t End = 0; (End = Body.find("\n\n", At)) != std::string::npos; At = End + 2)
	{
		const std::size_t Data = Body.find("data: ", At);
		const std::size_t Length = End - Data - 6;
		Body.reserve(Body.size() + simdjson::SIMDJSON_PADDING);
		auto Document = Parser.iterate(Body.data() + Data + 6, Length, Body.capacity() - Data - 6);
		std::string_view Text;
		Words += Document["delta"]["text"].get(Text) == simdjson::SUCCESS && Text.size() == 5 ? 1 : 0;
	}
	Body.erase(0, At);
	return Words;
}

/** No more than must be done: read, take chunks off, split events, parse each. */
void StreamThroughBareLoop(benchmark::State& State)
{
	FLoopbackServer Server;
	Server.Route("/v1/messages", Answer());
	simdjson::ondemand::parser Parser;
	for (auto Unused : State)
	{
		(void)Unused;
		const int Fd = Connect(Server.Port());
		std::string Wire;
		std::string Body;
		std::string Buffer(512 * 1024, 0);
		std::size_t Words = 0;
		bool bHead = true;
		for (ssize_t Got = 0; (Got = recv(Fd, Buffer.data(), Buffer.size(), 0)) > 0;)
		{
			Wire.append(Buffer, 0, (std::size_t)Got);
			const std::size_t HeadEnd = bHead ? Wire.find("\r\n\r\n") : 0;
			if (bHead && HeadEnd == std::string::npos)
			{
				continue;
			}
			Wire.erase(0, bHead ? HeadEnd + 4 : 0);
			bHead = false;
			Wire.erase(0, TakeChunks(Wire, Body));
			Words += CountWords(Body, Parser);
		}
		close(Fd);
		if (Words != EventCount)
		{
			State.SkipWithError("words were lost");
			return;
		}
	}
	State.SetItemsProcessed((int64_t)(State.iterations() * EventCount));
}

void StreamThroughCurl(benchmark::State& State)
{
	FLoopbackServer Server;
	Server.Route("/v1/messages", Answer());
	const std::string Command = "curl -sN -X POST -o /dev/null " + Server.Url("/v1/messages");
	for (auto Unused : State)
	{
		(void)Unused;
		if (std::system(Command.c_str()) != 0)
		{
			State.SkipWithError("curl failed");
			return;
		}
	}
	State.SetItemsProcessed((int64_t)(State.iterations() * EventCount));
}
} // namespace

BENCHMARK(StreamThroughProvider)
	->Name("Provider/200kDeltas/Anthropic")
	->UseRealTime()
	->MeasureProcessCPUTime()
	->Unit(benchmark::kMillisecond);
BENCHMARK(MemoryOfLongerAnswer)
	->Name("Provider/2MDeltas/memory")
	->UseRealTime()
	->MeasureProcessCPUTime()
	->Iterations(1)
	->Unit(benchmark::kMillisecond);
BENCHMARK(FirstDeltaAlone)->Name("Provider/first delta")->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(FirstDeltaBehindStart)
	->Name("Provider/first delta behind message_start")
	->UseManualTime()
	->Unit(benchmark::kMillisecond);
BENCHMARK(ReadEvents)->Name("Provider/200kDeltas/events alone")->Unit(benchmark::kMillisecond);
BENCHMARK(StreamThroughBareLoop)
	->Name("Provider/200kDeltas/bare loop")
	->UseRealTime()
	->MeasureProcessCPUTime()
	->Unit(benchmark::kMillisecond);
BENCHMARK(StreamThroughCurl)
	->Name("Provider/200kDeltas/curl -sN")
	->UseRealTime()
	->MeasureProcessCPUTime()
	->Unit(benchmark::kMillisecond);
