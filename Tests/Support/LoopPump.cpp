#include "Support/LoopPump.h"

#include "HAL/HostClock.h"
#include "Misc/Paths.h"

namespace
{
/** The condition may hang on something that doesn't wake the loop, as a server's thread that only the test watches. */
constexpr double LongestWaitSeconds = 0.002;
}

FLoopPump::FLoopPump()
{
	FEngineLoopParams Params;
	Params.ProjectFile = FPaths::GetProjectFilePath();
	Params.bLogFile = false;
	Params.bLogToTerminal = false;
	Loop.Init(Params);
}

FLoopPump::~FLoopPump()
{
	Loop.Exit();
}

bool FLoopPump::Until(TFunctionRef<bool()> Condition, double LimitSeconds)
{
	IHostClock& System = FHostClock::GetSystem();
	const double Deadline = System.GetSeconds() + LimitSeconds;
	while (!Condition())
	{
		if (System.GetSeconds() > Deadline)
		{
			return false;
		}
		Loop.WaitForWork(LongestWaitSeconds);
		Loop.Tick();
	}
	return true;
}
