#include "LaunchEngineLoop.h"

#include "../Async/GameThreadQueue.h"
#include "../Async/WorkerPool.h"
#include "Containers/Ticker.h"
#include "CoreGlobals.h"
#include "EngineState.h"
#include "HAL/PlatformTime.h"
#include "HttpModule.h"
#include "Logging/LogMacros.h"
#include "Logging/TerminalDevice.h"
#include "Misc/ConfigCacheIni.h"
#include "Misc/CoreDelegates.h"
#include "Misc/OutputDeviceFile.h"
#include "Misc/OutputDeviceRedirector.h"
#include "Misc/Paths.h"

FEngineLoop::FEngineLoop() = default;

FEngineLoop::~FEngineLoop()
{
	Exit();
}

void FEngineLoop::Init(const FEngineLoopParams& Params)
{
	check(!bRunning && !GConfig);
	AdoptGameThread();
	ClearEngineExitRequest();
	GFrameCounter = 0;
	FPaths::SetProjectFilePath(Params.ProjectFile);
	if (Params.bLogToTerminal)
	{
		GLog->AddOutputDevice(&FTerminalDevice::Get());
	}
	if (Params.bLogFile)
	{
		const FString Name = GInternalProjectName[0] ? FString(GInternalProjectName) : FString(TEXT("Corvexa"));
		LogFile = MakeUnique<FOutputDeviceFile>(*(FPaths::ProjectLogDir() + Name + TEXT(".log")));
		GLog->AddOutputDevice(LogFile.Get());
	}
	GConfig = new FConfigCacheIni();
	LastTickTime = FPlatformTime::Seconds();
	bRunning = true;
}

void FEngineLoop::Tick()
{
	const double Now = FPlatformTime::Seconds();
	const float DeltaSeconds = (float)(Now - LastTickTime);
	LastTickTime = Now;
	FGameThreadQueue::Get().Run(TaskBudgetSeconds);
	FTSTicker::GetCoreTicker().Tick(DeltaSeconds);
	if (FHttpModule::IsAvailable())
	{
		FHttpModule::Get().GetHttpManager().Tick(DeltaSeconds);
	}
	++GFrameCounter;
}

void FEngineLoop::WaitForWork(double MaxSeconds)
{
	const double Limit = FMath::Min(MaxSeconds, FTSTicker::GetCoreTicker().GetSecondsToNextTick());
	if (Limit > 0.0)
	{
		FGameThreadQueue::Get().WaitForWork(Limit);
	}
}

void FEngineLoop::Exit()
{
	if (!bRunning)
	{
		return;
	}
	bRunning = false;
	FCoreDelegates::OnPreExit.Broadcast();
	FHttpModule::Shutdown();
	FGameThreadQueue& Queue = FGameThreadQueue::Get();
	FWorkerPool::Get().Stop([&Queue] { Queue.Run(TaskBudgetSeconds); });
	Queue.DiscardAll();
	FTSTicker::GetCoreTicker().Reset();
	GConfig->Flush(false);
	delete GConfig;
	GConfig = nullptr;
	if (LogFile)
	{
		GLog->RemoveOutputDevice(LogFile.Get());
		LogFile.Reset();
	}
	GLog->RemoveOutputDevice(&FTerminalDevice::Get());
	FPaths::SetProjectFilePath(FString());
}
