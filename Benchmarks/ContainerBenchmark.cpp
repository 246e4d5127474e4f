#include "Containers/Map.h"
#include "Containers/UnrealString.h"

#include <benchmark/benchmark.h>
#include <string>
#include <unordered_map>
#include <vector>

namespace
{
constexpr int32 KeyCount = 100'000;

std::string KeyText(int32 Number)
{
	return "/Game/Skirmish/Blueprints/BP_Actor_" + std::to_string(Number);
}

template <typename KeyType, typename MakeType>
std::vector<KeyType> MakeKeys(const MakeType& Make)
{
	std::vector<KeyType> Keys;
	for (int32 Number = 0; Number < KeyCount; ++Number)
	{
		Keys.push_back(Make(KeyText(Number * 7919 % KeyCount)));
	}
	return Keys;
}

const std::vector<FString>& HostKeys()
{
	static const auto Keys = MakeKeys<FString>([](const std::string& Text) { return FString(Text.c_str()); });
	return Keys;
}

const std::vector<std::string>& StandardKeys()
{
	static const auto Keys = MakeKeys<std::string>([](const std::string& Text) { return Text; });
	return Keys;
}

TMap<FString, int32> FilledMap()
{
	TMap<FString, int32> Map;
	for (const FString& Key : HostKeys())
	{
		Map.Add(Key, 1);
	}
	return Map;
}

std::unordered_map<std::string, int32> FilledStandardMap()
{
	std::unordered_map<std::string, int32> Map;
	for (const std::string& Key : StandardKeys())
	{
		Map.emplace(Key, 1);
	}
	return Map;
}

void InsertHost(benchmark::State& State)
{
	HostKeys();
	for (auto Unused : State)
	{
		(void)Unused;
		benchmark::DoNotOptimize(FilledMap().Num());
	}
	State.SetItemsProcessed(State.iterations() * KeyCount);
}

void InsertStandard(benchmark::State& State)
{
	StandardKeys();
	for (auto Unused : State)
	{
		(void)Unused;
		benchmark::DoNotOptimize(FilledStandardMap().size());
	}
	State.SetItemsProcessed(State.iterations() * KeyCount);
}

void FindHost(benchmark::State& State)
{
	const TMap<FString, int32> Map = FilledMap();
	for (auto Unused : State)
	{
		(void)Unused;
		for (const FString& Key : HostKeys())
		{
			benchmark::DoNotOptimize(Map.Find(Key));
		}
	}
	State.SetItemsProcessed(State.iterations() * KeyCount);
}

void FindStandard(benchmark::State& State)
{
	const std::unordered_map<std::string, int32> Map = FilledStandardMap();
	for (auto Unused : State)
	{
		(void)Unused;
		for (const std::string& Key : StandardKeys())
		{
			benchmark::DoNotOptimize(Map.find(Key));
		}
	}
	State.SetItemsProcessed(State.iterations() * KeyCount);
}
}

// The host's map ignores the case of its keys, the standard one does not.
BENCHMARK(InsertHost)->Name("Map/Insert100k/TMap")->Unit(benchmark::kMillisecond);
BENCHMARK(InsertStandard)->Name("Map/Insert100k/unordered_map")->Unit(benchmark::kMillisecond);
BENCHMARK(FindHost)->Name("Map/Find100k/TMap")->Unit(benchmark::kMillisecond);
BENCHMARK(FindStandard)->Name("Map/Find100k/unordered_map")->Unit(benchmark::kMillisecond);
