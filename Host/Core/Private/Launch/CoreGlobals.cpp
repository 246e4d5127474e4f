#include "CoreGlobals.h"

#include "EngineState.h"
#include "Logging/LogMacros.h"

#include <atomic>
#include <thread>

FConfigCacheIni* GConfig = nullptr;
TCHAR GInternalProjectName[64] = {};
bool GIsRunningUnattendedScript = false;
bool GIsEditor = true;
uint64 GFrameCounter = 0;

namespace
{
std::atomic<std::thread::id> GameThread{std::this_thread::get_id()};
std::atomic<bool> bExitRequested{false};
} // namespace

void AdoptGameThread()
{
	GameThread = std::this_thread::get_id();
}

bool IsInGameThread()
{
	return GameThread.load(std::memory_order_relaxed) == std::this_thread::get_id();
}

bool IsEngineExitRequested()
{
	return bExitRequested;
}

void ClearEngineExitRequest()
{
	bExitRequested = false;
}

void RequestEngineExit(const TCHAR* Reason)
{
	UE_LOG(LogCore, Log, TEXT("Exit requested: %s"), Reason ? Reason : TEXT("no reason given"));
	bExitRequested = true;
}
