#include "SampleText.h"

#include "Dom/JsonObject.h"
#include "Serialization/JsonSerializer.h"

#include <benchmark/benchmark.h>
#include <cstdlib>
#include <nlohmann/json.hpp>
#include <rapidjson/document.h>
#include <rapidjson/prettywriter.h>
#include <rapidjson/stringbuffer.h>
#include <string>

// Parsing is timed up to the whole tree; what the tree costs to free is told beside it, as free_ms.

namespace
{
const std::string& Document()
{
	static const std::string Text = SampleText::Conversation(20'000'000);
	return Text;
}

void Report(benchmark::State& State, std::size_t Bytes)
{
	State.SetBytesProcessed((int64_t)(State.iterations() * Bytes));
}

/** Times the parse by hand, and beside it what it costs to free the tree. */
template <typename TreeType, typename ParseType>
void TimeParse(benchmark::State& State, const ParseType& Parse)
{
	double FreeSeconds = 0;
	for (auto Unused : State)
	{
		(void)Unused;
		auto* Tree = new TreeType();
		const auto Start = SampleText::FClock::now();
		if (!Parse(*Tree))
		{
			std::abort();
		}
		const auto Parsed = SampleText::FClock::now();
		delete Tree;
		State.SetIterationTime(SampleText::Seconds(Parsed - Start));
		FreeSeconds += SampleText::Seconds(SampleText::FClock::now() - Parsed);
	}
	State.counters["free_ms"] = benchmark::Counter(FreeSeconds * 1000, benchmark::Counter::kAvgIterations);
	Report(State, Document().size());
}

void ParseHostUtf8(benchmark::State& State)
{
	const std::string& Text = Document();
	TimeParse<TSharedPtr<FJsonObject>>(State,
		[&Text](TSharedPtr<FJsonObject>& Tree)
		{
			FJsonReader Reader(Text.data(), (int64)Text.size());
			return FJsonSerializer::Deserialize(Reader, Tree);
		});
}

void ParseHostString(benchmark::State& State)
{
	const FString Text = FString::FromUtf8(Document().data(), (int64)Document().size());
	TimeParse<TSharedPtr<FJsonObject>>(State,
		[&Text](TSharedPtr<FJsonObject>& Tree)
		{ return FJsonSerializer::Deserialize(TJsonReaderFactory<>::Create(Text), Tree); });
}

void ParseRapidJson(benchmark::State& State)
{
	const std::string& Text = Document();
	TimeParse<rapidjson::Document>(State,
		[&Text](rapidjson::Document& Tree)
		{
			Tree.Parse(Text.data(), Text.size());
			return !Tree.HasParseError();
		});
}

void ParseNlohmann(benchmark::State& State)
{
	const std::string& Text = Document();
	TimeParse<nlohmann::json>(State,
		[&Text](nlohmann::json& Tree)
		{
			Tree = nlohmann::json::parse(Text);
			return Tree.is_object();
		});
}

void PrettyHost(benchmark::State& State)
{
	FJsonReader Reader(Document().data(), (int64)Document().size());
	TSharedPtr<FJsonObject> Tree;
	FJsonSerializer::Deserialize(Reader, Tree);
	for (auto Unused : State)
	{
		(void)Unused;
		FString Text;
		FJsonSerializer::Serialize(Tree.ToSharedRef(), TJsonWriterFactory<>::Create(&Text));
		benchmark::DoNotOptimize(Text.Len());
	}
	Report(State, Document().size());
}

void PrettyRapidJson(benchmark::State& State)
{
	rapidjson::Document Tree;
	Tree.Parse(Document().data(), Document().size());
	for (auto Unused : State)
	{
		(void)Unused;
		rapidjson::StringBuffer Text;
		rapidjson::PrettyWriter<rapidjson::StringBuffer> Writer(Text);
		Writer.SetIndent('\t', 1);
		Tree.Accept(Writer);
		benchmark::DoNotOptimize(Text.GetSize());
	}
	Report(State, Document().size());
}

void PrettyNlohmann(benchmark::State& State)
{
	const nlohmann::json Tree = nlohmann::json::parse(Document());
	for (auto Unused : State)
	{
		(void)Unused;
		benchmark::DoNotOptimize(Tree.dump(1, '\t').size());
	}
	Report(State, Document().size());
}
}

BENCHMARK(ParseHostUtf8)->Name("Json/Parse20MB/Host")->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(ParseHostString)->Name("Json/Parse20MB/HostFromFString")->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(ParseRapidJson)->Name("Json/Parse20MB/RapidJSON")->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(ParseNlohmann)->Name("Json/Parse20MB/nlohmann")->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(PrettyHost)->Name("Json/PrettyWrite20MB/Host")->Unit(benchmark::kMillisecond);
BENCHMARK(PrettyRapidJson)->Name("Json/PrettyWrite20MB/RapidJSON")->Unit(benchmark::kMillisecond);
BENCHMARK(PrettyNlohmann)->Name("Json/PrettyWrite20MB/nlohmann")->Unit(benchmark::kMillisecond);
