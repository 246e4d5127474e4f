#include "Launch/Session/LaunchSession.h"

#include "Agent/Checkpoints/CVXCheckpointManager.h"
#include "Agent/Tasks/CVXTaskManager.h"
#include "Core/CVXSessionOverrides.h"
#include "Core/CVXSettings.h"
#include "CoreGlobals.h"
#include "Launch/Options/LaunchOptions.h"
#include "Launch/Session/ModelChoice.h"
#include "Launch/Session/ProjectChoice.h"
#include "Launch/Session/TaskChoice.h"
#include "Logging/TerminalDevice.h"
#include "Misc/App.h"
#include "Misc/Paths.h"
#include "Modules/ModuleManager.h"

namespace
{
const TCHAR* const ModuleName = TEXT("Corvexa");
/** The longest that a condition which wakes nobody waits to be looked at. */
constexpr double LongestWaitSeconds = 0.1;
} // namespace

FLaunchSession::FLaunchSession() = default;

FLaunchSession::~FLaunchSession()
{
	if (bModuleLoaded)
	{
		(void)FModuleManager::Get().UnloadModule(ModuleName);
		FCVXSessionOverrides::Get().Revert(*UCVXSettings::Get());
	}
	Loop.Exit();
}

FLaunchSession::FStart FLaunchSession::StartProject(const FLaunchOptions& Options)
{
	FStart Result;
	FEngineLoopParams Params;
	if (!FindProjectFile(Options.Project, Params.ProjectFile, Result.Error))
	{
		return Result;
	}
	// The program tells the user itself what matters; the log's warnings are for who asks for them.
	FTerminalDevice::Get().SetVerbosity(Options.bVerbose ? ELogVerbosity::Warning : ELogVerbosity::NoLogging);
	Loop.Init(Params);
	FModuleManager::Get().LoadModuleChecked(ModuleName);
	bModuleLoaded = true;
	Result.bStarted = true;
	return Result;
}

FLaunchSession::FStart FLaunchSession::Start(const FLaunchOptions& Options, std::chrono::milliseconds DemoPause)
{
	FStart Result = StartProject(Options);
	if (!Result.bStarted)
	{
		return Result;
	}
	UCVXSettings& Settings = *UCVXSettings::Get();
	FModelChoice Choice = FModelChoice::Make(Options, Settings);
	Result.Error = Choice.Error;
	Result.Notice = Choice.Notice;
	Result.bStarted = Result.Error.IsEmpty();
	if (!Result.bStarted)
	{
		return Result;
	}
	if (Choice.Demo)
	{
		Demo = MakeUnique<FDemoModel>(DemoPause);
		Choice.Overrides.Provider = Demo->MakeProfile(*Choice.Demo);
	}
	FCVXSessionOverrides::Get().Apply(Settings, Choice.Overrides);
	return Result;
}

TSharedPtr<FCVXTask> FLaunchSession::CreateTask(const FString& Title)
{
	return FCVXTaskManager::Get().CreateNewTask(Title);
}

TSharedPtr<FCVXTask> FLaunchSession::ResumeTask(const FString& Id, FString& OutError)
{
	const FTaskChoice Choice = FTaskChoice::Find(Id);
	OutError = Choice.Error;
	// A sub-agent's conversation is led by its parent's.
	const TSharedPtr<FCVXTask> Task = FTaskChoice::FindLeader(Choice.Task);
	if (Task)
	{
		FCVXTaskManager::Get().SetActiveTask(Task);
	}
	return Task;
}

TSharedPtr<FCVXTask> FLaunchSession::ForkTask(const FString& Id, int32 MessageCount, FString& OutError)
{
	const FTaskChoice Choice = FTaskChoice::Find(Id);
	OutError = Choice.Error;
	if (!Choice.Task)
	{
		return nullptr;
	}
	FCVXTaskManager& Tasks = FCVXTaskManager::Get();
	const TSharedPtr<FCVXTask> Fork = Tasks.ForkTask(Choice.Task->GetTaskId(), MessageCount);
	if (Fork)
	{
		Tasks.SetActiveTask(Fork);
		// It is there to stay from now on, whether or not anything more is said in it.
		FCVXCheckpointManager::Get().SaveCheckpoint(*Fork);
	}
	return Fork;
}

void FLaunchSession::RunUntil(TFunctionRef<bool()> Condition)
{
	while (!Condition() && !IsEngineExitRequested())
	{
		Loop.WaitForWork(LongestWaitSeconds);
		Loop.Tick();
	}
}

FString FLaunchSession::GetLogPath()
{
	return FPaths::ProjectLogDir() + FApp::GetProjectName() + TEXT(".log");
}
