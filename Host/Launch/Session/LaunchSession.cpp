#include "Launch/Session/LaunchSession.h"

#include "Agent/Tasks/CVXTaskManager.h"
#include "Core/CVXSessionOverrides.h"
#include "Core/CVXSettings.h"
#include "CoreGlobals.h"
#include "Launch/Options/LaunchOptions.h"
#include "Launch/Session/ModelChoice.h"
#include "Launch/Session/ProjectChoice.h"
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

FLaunchSession::FStart FLaunchSession::Start(const FLaunchOptions& Options, std::chrono::milliseconds DemoPause)
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

	UCVXSettings& Settings = *UCVXSettings::Get();
	FModelChoice Choice = FModelChoice::Make(Options, Settings);
	Result.Error = Choice.Error;
	Result.Notice = Choice.Notice;
	if (!Result.Error.IsEmpty())
	{
		return Result;
	}
	if (Choice.Demo)
	{
		Demo = MakeUnique<FDemoModel>(DemoPause);
		Choice.Overrides.Provider = Demo->MakeProfile(*Choice.Demo);
	}
	FCVXSessionOverrides::Get().Apply(Settings, Choice.Overrides);
	Result.bStarted = true;
	return Result;
}

TSharedPtr<FCVXTask> FLaunchSession::CreateTask(const FString& Title)
{
	return FCVXTaskManager::Get().CreateNewTask(Title);
}

TSharedPtr<FCVXTask> FLaunchSession::ResumeTask(const FString& Id)
{
	FCVXTaskManager& Tasks = FCVXTaskManager::Get();
	TSharedPtr<FCVXTask> Task = Tasks.FindTask(Id == TEXT("last") ? UCVXSettings::Get()->LastActiveTaskId : Id);
	// A sub-agent's conversation is led by its parent's.
	while (Task && Task->bIsSubTask && Tasks.FindTask(Task->ParentTaskId))
	{
		Task = Tasks.FindTask(Task->ParentTaskId);
	}
	if (Task)
	{
		Tasks.SetActiveTask(Task);
	}
	return Task;
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
