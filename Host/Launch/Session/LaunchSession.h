#pragma once

#include "Launch/Demo/DemoModel.h"
#include "LaunchEngineLoop.h"
#include "Templates/Function.h"

class FCVXTask;
struct FLaunchOptions;

/** The host and the plug-in, started on a project for one run of the program. Game thread; one at a time. */
class FLaunchSession
{
public:
	/** How the start went. */
	struct FStart
	{
		bool bStarted = false;
		/** One line for the user when it didn't. */
		FString Error;
		/** What the user is told about the model; may be empty. */
		FString Notice;
	};

	FLaunchSession();
	/** Ends conversations, the plug-in and the host, in this order. */
	~FLaunchSession();
	FLaunchSession(const FLaunchSession&) = delete;
	FLaunchSession& operator=(const FLaunchSession&) = delete;

	/** The project alone, with its settings as they are. A start that failed was the user's mistake. */
	FStart StartProject(const FLaunchOptions& Options);

	/** The project, with the model and the agent of this run. @param DemoPause between the words of the demo model. */
	FStart Start(const FLaunchOptions& Options, std::chrono::milliseconds DemoPause);

	/** A new conversation with the active agent. @return null when the settings don't allow one; the log says why. */
	TSharedPtr<FCVXTask> CreateTask(const FString& Title);

	/** A stored conversation, made active. @param Id as `FTaskChoice::Find` takes it. @return null without one. */
	TSharedPtr<FCVXTask> ResumeTask(const FString& Id, FString& OutError);

	/**
	 * Branches a stored conversation; the branch is stored and active. @param MessageCount how many messages it begins
	 * with, at most. @return null without one, with an error, or when the settings don't allow one; the log says why.
	 */
	TSharedPtr<FCVXTask> ForkTask(const FString& Id, int32 MessageCount, FString& OutError);

	/** Turns the loop until the condition holds or the host is asked to end. */
	void RunUntil(TFunctionRef<bool()> Condition);

	/** Where the run's log is. */
	static FString GetLogPath();

private:
	FEngineLoop Loop;
	TUniquePtr<FDemoModel> Demo;
	bool bModuleLoaded = false;
};
