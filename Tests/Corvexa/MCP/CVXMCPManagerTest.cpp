#include "MCP/CVXMCPManager.h"

#include "Core/CVXSettings.h"
#include "Corvexa/MCP/MCPFixture.h"
#include "Modules/ModuleManager.h"
#include "Support/ProcessProbe.h"
#include "Support/TestClock.h"
#include "Tools/CVXToolRegistry.h"

namespace
{
class CVXMCPManager : public FMCPFixture
{
protected:
	~CVXMCPManager() override
	{
		Manager.Shutdown();
		FCVXToolRegistry::Get().Clear();
		Settings.MCPServers.Empty();
	}

	/** What a tool answers that the registry has; errors begin with "ERROR ". */
	static FString Run(const TCHAR* Tool)
	{
		const TSharedPtr<ICVXTool> Found = FCVXToolRegistry::Get().FindToolShared(Tool);
		if (!Found)
		{
			return TEXT("(no such tool)");
		}
		const FCVXToolExecutionResult Result = Found->Execute(TEXT("{}"), {});
		return (Result.bIsError ? TEXT("ERROR ") : TEXT("")) + Result.Output;
	}

	void StartAndCrash()
	{
		Settings.MCPServers = {MakeConfig()};
		Manager.StartAll();
		EXPECT_TRUE(Run(TEXT("mcp__srv__crash")).StartsWith(TEXT("ERROR ")));
	}

	template <typename ClockType>
	void TickAfter(ClockType& Clock, double Seconds)
	{
		Clock.Advance(Seconds);
		Pump.Tick();
	}

	int32 Attempts() const { return Log.Count(TEXT("[srv] Auto-restart attempt"), ELogVerbosity::Log); }

	FCVXMCPManager& Manager = FCVXMCPManager::Get();
	UCVXSettings& Settings = *UCVXSettings::Get();
};

constexpr const TCHAR* NotRunning =
	TEXT("ERROR MCP server for tool 'mcp__srv__echo' is not running. Check Plugin Settings → MCP Servers and the "
		 "Output Log for startup errors.");

TEST_F(CVXMCPManager, RunsTheEnabledServersOfTheSettingsFromTheModulesStartToItsEnd)
{
	FCVXMCPServerConfig Disabled = MakeConfig(TEXT("plain"), TEXT("off"));
	Disabled.bEnabled = false;
	FCVXMCPServerConfig Bare;
	FCVXMCPServerConfig Gone = Bare;
	Gone.Command = TEXT("/no/such/program");
	Settings.MCPServers = {Disabled, Bare, Gone, MakeConfig(), MakeConfig(TEXT("listless"), TEXT("idle")),
		MakeConfig(TEXT("plain"), TEXT("other"))};
	ASSERT_NE(FModuleManager::Get().LoadModule(TEXT("Corvexa")), nullptr);

	EXPECT_EQ(Manager.GetRunningServers(), (TArray<FString>{TEXT("srv"), TEXT("idle"), TEXT("other")}));
	EXPECT_EQ(Log.Count(TEXT("Failed to start MCP server"), ELogVerbosity::Error), 1);
	EXPECT_EQ(Log.Count(TEXT("started but tools/list failed"), ELogVerbosity::Warning), 1);
	EXPECT_EQ(Manager.GetToolCount(TEXT("srv")), 3);
	EXPECT_EQ(Manager.GetToolCount(TEXT("idle")), 0);
	EXPECT_EQ(Manager.GetToolCount(TEXT("off")), 0);
	EXPECT_EQ(Run(TEXT("mcp__SRV__echo")), TEXT("{}"));
	EXPECT_NE(Run(TEXT("mcp__srv__pid")), Run(TEXT("mcp__other__pid")));
	const TSharedPtr<ICVXTool> Echo = FCVXToolRegistry::Get().FindToolShared(TEXT("mcp__srv__echo"));
	EXPECT_EQ(Echo->GetDescription(), TEXT("[MCP: mcp__srv__echo] Says it again."));
	EXPECT_TRUE(Echo->IsThreadSafe() && !Echo->IsReadOnly() && !Echo->IsDestructive());

	const int32 Pid = FCString::Atoi(*Run(TEXT("mcp__srv__pid")));
	EXPECT_TRUE(IsAlive(Pid));
	EXPECT_TRUE(FModuleManager::Get().UnloadModule(TEXT("Corvexa")));
	EXPECT_FALSE(IsAlive(Pid));
	EXPECT_TRUE(Manager.GetRunningServers().IsEmpty());
	EXPECT_EQ(Echo->Execute(TEXT("{}"), {}).Output, FString(NotRunning + 6)) << "who holds a tool is told";
}

TEST_F(CVXMCPManager, StartsACrashedServerAgainWithWhatItOffersNow)
{
	FForwardClock Clock;
	StartAndCrash();
	EXPECT_TRUE(Manager.GetRunningServers().IsEmpty());
	TickAfter(Clock, 5);
	EXPECT_EQ(Log.Count(TEXT("[srv] MCP server process has crashed!"), ELogVerbosity::Error), 1);
	EXPECT_EQ(Attempts(), 0) << "not before two seconds have passed";
	EXPECT_EQ(Run(TEXT("mcp__srv__echo")), FString(NotRunning));
	TickAfter(Clock, 5);
	EXPECT_EQ(Attempts(), 1);
	EXPECT_TRUE(Log.Contains(TEXT("[srv] Auto-restart succeeded")));
	EXPECT_EQ(Run(TEXT("mcp__srv__echo")), TEXT("{}"));

	EXPECT_TRUE(Run(TEXT("mcp__srv__crash")).StartsWith(TEXT("ERROR ")));
	TickAfter(Clock, 5);
	Manager.StopServer(TEXT("SRV"));
	TickAfter(Clock, 60);
	EXPECT_EQ(Attempts(), 1) << "one that was stopped by hand isn't brought back";
	EXPECT_EQ(Run(TEXT("mcp__srv__echo")), TEXT("(no such tool)"));
}

TEST_F(CVXMCPManager, GivesAServerUpAfterThreeAttemptsUntilItIsStartedByHand)
{
	StartAndCrash();
	Settings.MCPServers[0].Command = TEXT("/no/such/program");
	{
		FTestClock Clock;
		for (const int32 AttemptsSoFar : {0, 1, 2, 3, 3, 3})
		{
			TickAfter(Clock, 5.5);
			EXPECT_EQ(Attempts(), AttemptsSoFar);
		}
	}
	EXPECT_TRUE(Log.Contains(TEXT("[srv] Auto-restart failed (attempt 1/3). Next retry in 2s")));
	EXPECT_TRUE(Log.Contains(TEXT("[srv] Auto-restart failed (attempt 3/3). Next retry in 8s")));
	EXPECT_EQ(Run(TEXT("mcp__srv__echo")), TEXT("(no such tool)"));
	EXPECT_FALSE(Manager.RestartServer(TEXT("unknown")));
	EXPECT_TRUE(Log.Contains(TEXT("RestartServer: no config found for 'unknown'")));

	FForwardClock Clock;
	Settings.MCPServers[0] = MakeConfig();
	EXPECT_TRUE(Manager.RestartServer(TEXT("Srv")));
	EXPECT_TRUE(Run(TEXT("mcp__srv__crash")).StartsWith(TEXT("ERROR ")));
	TickAfter(Clock, 60);
	TickAfter(Clock, 6);
	EXPECT_EQ(Attempts(), 4) << "it is watched like any other";
	Settings.MCPServers.Empty();
	EXPECT_TRUE(Run(TEXT("mcp__srv__crash")).StartsWith(TEXT("ERROR ")));
	TickAfter(Clock, 6);
	TickAfter(Clock, 6);
	EXPECT_EQ(Attempts(), 5);
	EXPECT_EQ(Run(TEXT("mcp__srv__echo")), TEXT("(no such tool)")) << "the settings no longer know it";
}
} // namespace
