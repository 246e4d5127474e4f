#include "Async/Async.h"
#include "HAL/PlatformProcess.h"
#include "LaunchEngineLoop.h"

#include <benchmark/benchmark.h>
#include <cstdlib>

namespace
{
/** From the game thread to the pool and back, the game thread asleep in between. */
void HopToThePoolAndBack(benchmark::State& State)
{
	FEngineLoop Loop;
	FEngineLoopParams Params;
	Params.bLogFile = false;
	Loop.Init(Params);
	for (auto Unused : State)
	{
		(void)Unused;
		bool bBack = false;
		AsyncTask(ENamedThreads::AnyBackgroundThreadNormalTask,
			[&bBack] { AsyncTask(ENamedThreads::GameThread, [&bBack] { bBack = true; }); });
		while (!bBack)
		{
			Loop.WaitForWork(0.1);
			Loop.Tick();
		}
	}
}

/** Posted and run by the game thread itself: the queue alone. */
void PostToOneself(benchmark::State& State)
{
	FEngineLoop Loop;
	FEngineLoopParams Params;
	Params.bLogFile = false;
	Loop.Init(Params);
	for (auto Unused : State)
	{
		(void)Unused;
		bool bRun = false;
		AsyncTask(ENamedThreads::GameThread, [&bRun] { bRun = true; });
		Loop.Tick();
		benchmark::DoNotOptimize(bRun);
	}
}

void SpawnAndWait(benchmark::State& State)
{
	for (auto Unused : State)
	{
		(void)Unused;
		FProcHandle Child =
			FPlatformProcess::CreateProc(TEXT("/bin/true"), TEXT(""), false, true, true, nullptr, 0, nullptr, nullptr);
		FPlatformProcess::WaitForProc(Child);
		int32 Code = -1;
		if (!FPlatformProcess::GetProcReturnCode(Child, &Code) || Code != 0)
		{
			State.SkipWithError("the child failed");
			return;
		}
		FPlatformProcess::CloseProc(Child);
	}
}

/** The shell's own way, for comparison. */
void SpawnAndWaitBySystem(benchmark::State& State)
{
	for (auto Unused : State)
	{
		(void)Unused;
		benchmark::DoNotOptimize(std::system("/bin/true"));
	}
}
}

BENCHMARK(HopToThePoolAndBack)->Name("Task/HopToPoolAndBack")->UseRealTime();
BENCHMARK(PostToOneself)->Name("Task/PostToGameThread")->UseRealTime();
BENCHMARK(SpawnAndWait)->Name("Process/SpawnAndWait/Host")->UseRealTime()->Unit(benchmark::kMicrosecond);
BENCHMARK(SpawnAndWaitBySystem)->Name("Process/SpawnAndWait/system")->UseRealTime()->Unit(benchmark::kMicrosecond);
