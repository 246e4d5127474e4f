#include "Support/LoopPump.h"

#include "Misc/Paths.h"

#include <gtest/gtest.h>

#include <chrono>

namespace
{
FEngineLoopParams QuietParams()
{
	FEngineLoopParams Params;
	// The project of a temporary project stays the project.
	Params.ProjectFile = FPaths::GetProjectFilePath();
	Params.bLogFile = false;
	Params.bLogToTerminal = false;
	return Params;
}
} // namespace

FLoopPump::FLoopPump()
{
	Loop.Init(QuietParams());
}

FLoopPump::~FLoopPump() = default;

bool FLoopPump::Until(TFunctionRef<bool()> Condition, double LimitSeconds)
{
	const auto End = std::chrono::steady_clock::now() + std::chrono::duration<double>(LimitSeconds);
	while (!Condition())
	{
		if (std::chrono::steady_clock::now() >= End)
		{
			ADD_FAILURE() << "the condition didn't hold within " << LimitSeconds << " seconds";
			return false;
		}
		Loop.Tick();
		Loop.WaitForWork(0.005);
	}
	return true;
}
