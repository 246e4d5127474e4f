#pragma once

#include "Containers/UnrealString.h"
#include "Templates/UniquePtr.h"

class FOutputDeviceFile;

/** How a program starts the host. */
struct FEngineLoopParams
{
	/** The project file; empty makes the working directory the project. */
	FString ProjectFile;
	/** Whether to write `Saved/Logs/<Project>.log`. */
	bool bLogFile = true;
	/** Whether warnings and worse go to standard error. */
	bool bLogToTerminal = true;
};

/**
 * The host's main loop. `Init` makes the calling thread the game thread; `Exit` ends everything that the host started.
 * It may be started again afterwards. One loop at a time.
 */
class FEngineLoop
{
public:
	FEngineLoop();
	/** Exits if it runs. */
	~FEngineLoop();
	FEngineLoop(const FEngineLoop&) = delete;
	FEngineLoop& operator=(const FEngineLoop&) = delete;

	void Init(const FEngineLoopParams& Params = FEngineLoopParams());

	/** Runs the game thread's tasks, then the tickers that are due, then the completions of HTTP requests. */
	void Tick();

	/**
	 * Waits for a task of the game thread or the next ticker. @param MaxSeconds the limit, by the system's clock.
	 * @return at once when there is something to do.
	 */
	void WaitForWork(double MaxSeconds);

	/**
	 * Runs `FCoreDelegates::OnPreExit`, ends all HTTP requests, runs the background tasks to their end, drops timers
	 * and what still waits for the game thread, writes the configuration and closes the log.
	 */
	void Exit();

	/** The longest that the tasks of one tick run, in seconds; what is left waits for the next tick. */
	static constexpr double TaskBudgetSeconds = 0.008;

private:
	bool bRunning = false;
	double LastTickTime = 0.0;
	TUniquePtr<FOutputDeviceFile> LogFile;
};
