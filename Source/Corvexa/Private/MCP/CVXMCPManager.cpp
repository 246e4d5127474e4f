#include "MCP/CVXMCPManager.h"

#include "Core/CVXSettings.h"
#include "HAL/PlatformTime.h"
#include "MCP/CVXMCPLog.h"
#include "MCP/CVXMCPServer.h"
#include "MCP/CVXMCPTool.h"
#include "Tools/CVXToolRegistry.h"

namespace
{
constexpr float HealthCheckSeconds = 5.0f;
/** From the moment a crash is seen to the first restart; doubled with each that fails. */
constexpr double RetrySeconds = 2.0;
constexpr int32 MaxAttempts = 3;

/** @return null, which is logged, when the settings don't name it. Valid until they change. */
const FCVXMCPServerConfig* FindConfig(const FString& Name)
{
	const FCVXMCPServerConfig* Found = UCVXSettings::Get()->MCPServers.FindByPredicate(
		[&Name](const FCVXMCPServerConfig& Config) { return Config.Name.Equals(Name, ESearchCase::IgnoreCase); });
	UE_CLOG(!Found, LogCVXMCPManager, Warning, TEXT("RestartServer: no config found for '%s'"), *Name);
	return Found;
}
} // namespace

FCVXMCPManager& FCVXMCPManager::Get()
{
	static FCVXMCPManager Manager;
	return Manager;
}

void FCVXMCPManager::StartAll()
{
	for (const FCVXMCPServerConfig& Config : UCVXSettings::Get()->MCPServers)
	{
		if (Config.bEnabled && !Config.Name.IsEmpty() && !Config.Command.IsEmpty())
		{
			(void)StartServer(Config);
		}
	}
}

bool FCVXMCPManager::StartServer(const FCVXMCPServerConfig& Config)
{
	// Also when none runs: one that was given up is to be watched anew.
	StopServer(Config.Name);
	const TSharedPtr<FCVXMCPServer> Server = MakeShared<FCVXMCPServer>();
	if (!Server->Start(Config))
	{
		UE_LOG(LogCVXMCPManager, Error, TEXT("Failed to start MCP server '%s'"), *Config.Name);
		return false;
	}
	OfferTools(Config.Name, Server);
	Servers.Add(Config.Name, Server);
	WatchServers();
	UE_LOG(LogCVXMCPManager, Log, TEXT("MCP server '%s' running with %d tool(s)"), *Config.Name,
		GetToolCount(Config.Name));
	return true;
}

void FCVXMCPManager::StopServer(const FString& Name)
{
	TArray<FString> Tools;
	ServerTools.RemoveAndCopyValue(Name, Tools);
	for (const FString& Tool : Tools)
	{
		FCVXToolRegistry::Get().UnregisterTool(Tool);
	}
	TSharedPtr<FCVXMCPServer> Server;
	if (Servers.RemoveAndCopyValue(Name, Server))
	{
		Server->Stop();
	}
	CrashedServers.Remove(Name);
	RestartStates.Remove(Name);
}

bool FCVXMCPManager::RestartServer(const FString& Name)
{
	const FCVXMCPServerConfig* Config = FindConfig(Name);
	return Config && StartServer(*Config);
}

void FCVXMCPManager::Shutdown()
{
	FTSTicker::RemoveTicker(HealthTicker);
	HealthTicker.Reset();
	CrashedServers.Empty();
	RestartStates.Empty();
	TArray<FString> Names;
	Servers.GetKeys(Names);
	for (const FString& Name : Names)
	{
		StopServer(Name);
	}
}

TArray<FString> FCVXMCPManager::GetRunningServers() const
{
	TArray<FString> Names;
	for (const auto& [Name, Server] : Servers)
	{
		if (Server->IsRunning())
		{
			Names.Add(Name);
		}
	}
	return Names;
}

int32 FCVXMCPManager::GetToolCount(const FString& Name) const
{
	const TArray<FString>* Tools = ServerTools.Find(Name);
	return Tools ? Tools->Num() : 0;
}

void FCVXMCPManager::OfferTools(const FString& Name, const TSharedPtr<FCVXMCPServer>& Server)
{
	TArray<FCVXMCPToolInfo> Infos;
	const bool bListed = Server->ListTools(Infos);
	UE_CLOG(!bListed, LogCVXMCPManager, Warning, TEXT("MCP server '%s' started but tools/list failed"), *Name);
	TArray<FString>& Names = ServerTools.FindOrAdd(Name);
	Names.Reset();
	for (FCVXMCPToolInfo& Info : Infos)
	{
		Names.AddUnique(Info.PrefixedName);
		UE_LOG(LogCVXMCPManager, Log, TEXT("Registered MCP tool: %s"), *Info.PrefixedName);
		FCVXToolRegistry::Get().RegisterTool(MakeUnique<FCVXMCPTool>(Server, MoveTemp(Info)));
	}
}

void FCVXMCPManager::WatchServers()
{
	if (!HealthTicker.IsValid())
	{
		HealthTicker = FTSTicker::GetCoreTicker().AddTicker(
			TEXT("CVXMCPHealth"), HealthCheckSeconds, [this](float) { return CheckHealth(); });
	}
}

/** @return true: it is always to be called again. */
bool FCVXMCPManager::CheckHealth()
{
	FindCrashes();
	const double Now = FPlatformTime::Seconds();
	for (const FString& Name : CrashedServers.Array())
	{
		RetryIfDue(Name, Now);
	}
	return true;
}

void FCVXMCPManager::FindCrashes()
{
	for (const auto& [Name, Server] : Servers)
	{
		if (CrashedServers.Contains(Name) || Server->IsRunning())
		{
			continue;
		}
		UE_LOG(LogCVXMCPManager, Error,
			TEXT("[%s] MCP server process has crashed! Tools for this server will return errors."), *Name);
		Server->Stop();
		CrashedServers.Add(Name);
		if (!RestartStates.Contains(Name))
		{
			RestartStates.Add(Name, {0, FPlatformTime::Seconds() + RetrySeconds});
		}
	}
}

void FCVXMCPManager::RetryIfDue(const FString& Name, double Now)
{
	const FRestartState* Found = RestartStates.Find(Name);
	if (!Found || Found->Attempts >= MaxAttempts || Now < Found->NextRetryTime)
	{
		return;
	}
	FRestartState State = *Found;
	UE_LOG(LogCVXMCPManager, Log, TEXT("[%s] Auto-restart attempt %d/%d"), *Name, State.Attempts + 1, MaxAttempts);
	// What is left of the old instance goes, and all that is known of its crash with it.
	StopServer(Name);
	if (RestartServer(Name))
	{
		UE_LOG(LogCVXMCPManager, Log, TEXT("[%s] Auto-restart succeeded"), *Name);
		return;
	}
	const double Delay = RetrySeconds * (double)(1 << State.Attempts);
	++State.Attempts;
	State.NextRetryTime = Now + Delay;
	CrashedServers.Add(Name);
	RestartStates.Add(Name, State);
	UE_LOG(LogCVXMCPManager, Warning, TEXT("[%s] Auto-restart failed (attempt %d/%d). Next retry in %.0fs"), *Name,
		State.Attempts, MaxAttempts, Delay);
}
