#include "Diagnostics/CVXPerformanceCommands.h"

#include "Diagnostics/CVXPerformanceLog.h"
#include "Diagnostics/CVXPerformanceMonitor.h"
#include "HAL/IConsoleManager.h"

namespace
{
const TCHAR* const StatsCommand = TEXT("cvx.perfstats");
const TCHAR* const ResetCommand = TEXT("cvx.perfreset");

void LogStats()
{
	UE_LOG(LogCVXPerf, Log, TEXT("\n%s"), *FCVXPerformanceMonitor::Get().DumpStats());
}

void ResetStats()
{
	FCVXPerformanceMonitor::Get().ResetStats();
}
} // namespace

void CVXPerformanceCommands::Register()
{
	IConsoleManager& Console = IConsoleManager::Get();
	Console.RegisterConsoleCommand(StatsCommand, TEXT("Logs what turns and tools have cost so far."),
		FConsoleCommandDelegate::CreateStatic(&LogStats));
	Console.RegisterConsoleCommand(ResetCommand, TEXT("Sets the counters of turns and tools back to nothing."),
		FConsoleCommandDelegate::CreateStatic(&ResetStats));
}

void CVXPerformanceCommands::Unregister()
{
	IConsoleManager& Console = IConsoleManager::Get();
	Console.UnregisterConsoleObject(StatsCommand);
	Console.UnregisterConsoleObject(ResetCommand);
}
