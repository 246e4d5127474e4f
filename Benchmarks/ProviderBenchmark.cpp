#include "HTTP/CVXSSEParser.h"
#include "ProviderRun.h"
#include "Providers/Anthropic/CVXAnthropicDelta.h"
#include "Providers/Gemini/CVXGeminiDelta.h"
#include "Providers/OpenAI/CVXOpenAIDelta.h"

#include <algorithm>
#include <benchmark/benchmark.h>
#include <chrono>
#include <fstream>
#include <string>

/** Streamed answers, from the socket to the callback that gets each word. */
namespace
{
constexpr std::size_t EventCount = 200'000;

void StreamThroughProvider(benchmark::State& State, const FStreamDialect& Dialect)
{
	FProviderRun Run(Dialect);
	Run.Server.Route(Dialect.Path, MakeAnswer(Dialect, EventCount));
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

/** Lets the peak of the process begin anew. */
void ForgetPeak()
{
	std::ofstream("/proc/self/clear_refs") << '5';
}

double PeakMegabytes()
{
	std::ifstream Status("/proc/self/status");
	std::string Word;
	while (Status >> Word && Word != "VmHWM:")
	{
	}
	double Kilobytes = 0.0;
	Status >> Kilobytes;
	return Kilobytes / 1024.0;
}

/** Ten times the words take no more memory than the shorter answer. */
void MemoryOfLongerAnswer(benchmark::State& State)
{
	FProviderRun Run(AnthropicStream());
	const auto Body = std::make_shared<const std::string>(AnthropicStream().Words);
	const std::size_t Repeats = EventCount / FStreamDialect::WordCount;
	const auto Measure = [&](std::size_t Times)
	{
		ForgetPeak();
		Run.Server.Enqueue(FLoopbackReply::Repeated(Body, Times * Repeats));
		return Run.CountWords() == Times * EventCount;
	};
	bool bWhole = Measure(1);
	const double Shorter = PeakMegabytes();
	for (auto Unused : State)
	{
		(void)Unused;
		bWhole = Measure(10) && bWhole;
	}
	if (!bWhole)
	{
		State.SkipWithError("words were lost");
		return;
	}
	State.counters["peak_MB"] = PeakMegabytes();
	State.counters["growth_MB"] = PeakMegabytes() - Shorter;
	State.SetItemsProcessed((int64_t)(State.iterations() * 10 * EventCount));
}

/** From the moment that the server may send the first word to the callback that gets it. */
void FirstDelta(benchmark::State& State, const std::string& Ahead)
{
	const FStreamDialect& Dialect = AnthropicStream();
	FProviderRun Run(Dialect);
	std::size_t Requests = 0;
	double Worst = 0.0;
	for (auto Unused : State)
	{
		(void)Unused;
		const auto Gate = FLoopbackGate::Create();
		FLoopbackReply Reply = FLoopbackReply::Sized(200, Ahead + Dialect.Words + Dialect.Stop);
		Reply.WaitAt(Reply.HeadSize() + Ahead.size() + Dialect.Words.size(), FLoopbackGate::Create());
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
		Run.MakeProvider();
	}
	State.counters["worst_ms"] = Worst * 1000.0;
}

int32 TextLength(const FCVXAnthropicDelta& Delta)
{
	return Delta.Text ? Delta.Text->Len() : 0;
}

int32 TextLength(const FCVXOpenAIDelta& Delta)
{
	return Delta.Content.Len();
}

int32 TextLength(const FCVXGeminiDelta& Delta)
{
	return Delta.Parts.Num() == 1 ? Delta.Parts[0].Text.Len() : 0;
}

/** The game thread's share alone: text into events, and those into deltas. */
template <typename DeltaType, const FStreamDialect& (*Dialect)()>
void ReadEvents(benchmark::State& State)
{
	FString Chunk;
	Chunk.AppendUtf8(Dialect().Words.data(), (int64)Dialect().Words.size());
	FCVXSSEParser Parser;
	DeltaType Delta;
	std::size_t Words = 0;
	const TFunction<void(const FCVXSSEEvent&)> OnEvent = [&](const FCVXSSEEvent& Event)
	{ Words += Delta.Read(Event.Data) && (std::size_t)TextLength(Delta) == FStreamDialect::WordSize ? 1 : 0; };
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

void MeasureWhole(benchmark::internal::Benchmark* Registered)
{
	Registered->UseRealTime()->MeasureProcessCPUTime()->Unit(benchmark::kMillisecond);
}
} // namespace

BENCHMARK_CAPTURE(StreamThroughProvider, Anthropic, AnthropicStream())
	->Name("Provider/200kDeltas/Anthropic")
	->Apply(MeasureWhole);
BENCHMARK_CAPTURE(StreamThroughProvider, OpenAI, OpenAIStream())
	->Name("Provider/200kDeltas/OpenAI")
	->Apply(MeasureWhole);
BENCHMARK_CAPTURE(StreamThroughProvider, PaddedOpenAI, PaddedOpenAIStream())
	->Name("Provider/200kDeltas/OpenAI padded")
	->Apply(MeasureWhole);
BENCHMARK_CAPTURE(StreamThroughProvider, Gemini, GeminiStream())
	->Name("Provider/200kDeltas/Gemini")
	->Apply(MeasureWhole);
BENCHMARK(MemoryOfLongerAnswer)->Name("Provider/2MDeltas/memory")->Iterations(1)->Apply(MeasureWhole);
BENCHMARK_CAPTURE(FirstDelta, Alone, "")->Name("Provider/first delta")->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(FirstDelta, BehindStart, "event: message_start\ndata: {\"message\":{}}\n\n")
	->Name("Provider/first delta behind message_start")
	->UseManualTime()
	->Unit(benchmark::kMillisecond);
BENCHMARK_TEMPLATE(ReadEvents, FCVXAnthropicDelta, AnthropicStream)
	->Name("Provider/200kDeltas/Anthropic/reading alone")
	->Unit(benchmark::kMillisecond);
BENCHMARK_TEMPLATE(ReadEvents, FCVXOpenAIDelta, OpenAIStream)
	->Name("Provider/200kDeltas/OpenAI/reading alone")
	->Unit(benchmark::kMillisecond);
BENCHMARK_TEMPLATE(ReadEvents, FCVXOpenAIDelta, PaddedOpenAIStream)
	->Name("Provider/200kDeltas/OpenAI padded/reading alone")
	->Unit(benchmark::kMillisecond);
BENCHMARK_TEMPLATE(ReadEvents, FCVXGeminiDelta, GeminiStream)
	->Name("Provider/200kDeltas/Gemini/reading alone")
	->Unit(benchmark::kMillisecond);
