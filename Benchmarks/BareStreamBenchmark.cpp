#include "Loopback/LoopbackServer.h"
#include "ProviderRun.h"

#include <arpa/inet.h>
#include <benchmark/benchmark.h>
#include <cstdlib>
#include <string>
#include <string_view>
#include <sys/socket.h>
#include <unistd.h>

/** The peers of the providers: the same answers, read with as little as possible. */
namespace
{
constexpr std::size_t EventCount = 200'000;

int Connect(int Port, const std::string& Path)
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
	const std::string Request =
		"POST " + Path + " HTTP/1.1\r\nHost: x\r\nContent-Length: 0\r\nConnection: close\r\n\r\n";
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

std::size_t CountWords(std::string& Body, const FStreamDialect& Dialect, simdjson::ondemand::parser& Parser)
{
	std::size_t Words = 0;
	std::size_t At = 0;
	for (std::size_t End = 0; (End = Body.find("\n\n", At)) != std::string::npos; At = End + 2)
	{
		const std::size_t Data = Body.find("data: ", At) + 6;
		Body.reserve(Body.size() + simdjson::SIMDJSON_PADDING);
		simdjson::ondemand::document Document;
		std::string_view Text;
		const bool bText =
			Parser.iterate(Body.data() + Data, End - Data, Body.capacity() - Data).get(Document) == simdjson::SUCCESS &&
			Dialect.FindText(Document, Text) == simdjson::SUCCESS;
		Words += bText && Text.size() == FStreamDialect::WordSize ? 1 : 0;
	}
	Body.erase(0, At);
	return Words;
}

/** Reads one answer to its end. @return its words. */
std::size_t ReadAnswer(int Fd, const FStreamDialect& Dialect, simdjson::ondemand::parser& Parser)
{
	std::string Wire;
	std::string Body;
	std::string Buffer(512 * 1024, 0);
	std::size_t Words = 0;
	bool bHead = true;
	for (ssize_t Got = 0; (Got = recv(Fd, Buffer.data(), Buffer.size(), 0)) > 0;)
	{
		Wire.append(Buffer, 0, (std::size_t)Got);
		const std::size_t HeadEnd = bHead ? Wire.find("\r\n\r\n") : 0;
		if (HeadEnd == std::string::npos)
		{
			continue;
		}
		Wire.erase(0, bHead ? HeadEnd + 4 : 0);
		bHead = false;
		Wire.erase(0, TakeChunks(Wire, Body));
		Words += CountWords(Body, Dialect, Parser);
	}
	return Words;
}

/** No more than must be done: read, take chunks off, split events, parse each. */
void StreamThroughBareLoop(benchmark::State& State, const FStreamDialect& Dialect)
{
	FLoopbackServer Server;
	Server.Route(Dialect.Path, MakeAnswer(Dialect, EventCount));
	simdjson::ondemand::parser Parser;
	for (auto Unused : State)
	{
		(void)Unused;
		const int Fd = Connect(Server.Port(), Dialect.Path);
		const std::size_t Words = ReadAnswer(Fd, Dialect, Parser);
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
	Server.Route("/", MakeAnswer(AnthropicStream(), EventCount));
	const std::string Command = "curl -sN -X POST -o /dev/null " + Server.Url();
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

void MeasureWhole(benchmark::internal::Benchmark* Registered)
{
	Registered->UseRealTime()->MeasureProcessCPUTime()->Unit(benchmark::kMillisecond);
}
} // namespace

BENCHMARK_CAPTURE(StreamThroughBareLoop, Anthropic, AnthropicStream())
	->Name("Provider/200kDeltas/Anthropic/bare loop")
	->Apply(MeasureWhole);
BENCHMARK_CAPTURE(StreamThroughBareLoop, OpenAI, OpenAIStream())
	->Name("Provider/200kDeltas/OpenAI/bare loop")
	->Apply(MeasureWhole);
BENCHMARK_CAPTURE(StreamThroughBareLoop, PaddedOpenAI, PaddedOpenAIStream())
	->Name("Provider/200kDeltas/OpenAI padded/bare loop")
	->Apply(MeasureWhole);
BENCHMARK_CAPTURE(StreamThroughBareLoop, Gemini, GeminiStream())
	->Name("Provider/200kDeltas/Gemini/bare loop")
	->Apply(MeasureWhole);
BENCHMARK(StreamThroughCurl)->Name("Provider/200kDeltas/Anthropic/curl -sN")->Apply(MeasureWhole);
