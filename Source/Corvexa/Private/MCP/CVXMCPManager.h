#pragma once

#include "Containers/Array.h"
#include "Containers/Map.h"
#include "Containers/Set.h"
#include "Containers/Ticker.h"
#include "Containers/UnrealString.h"
#include "Templates/SharedPointer.h"

class FCVXMCPServer;
struct FCVXMCPServerConfig;

/**
 * The tool servers of the settings: starts and stops them, offers their tools to the agent, and starts those again that
 * crash, a few times. Server names ignore case. Starting waits for the server, within limits. Game thread.
 */
class FCVXMCPManager : private FNoncopyable
{
public:
	/** Made at the first call and kept to the end of the process. */
	static FCVXMCPManager& Get();

	/** Starts every enabled server that the settings name a command for, in their order. */
	void StartAll();

	/** Starts a server, in the place of one of the same name. @return false, with the reason in the log, if not. */
	bool StartServer(const FCVXMCPServerConfig& Config);

	/** Ends a server, takes its tools from the agent and forgets its crashes. An unknown name is ignored. */
	void StopServer(const FString& Name);

	/** Starts a server as the settings have it now. @return false when they don't know it, or it doesn't start. */
	bool RestartServer(const FString& Name);

	/** Ends all servers, and the watch over them. */
	void Shutdown();

	/** Those whose process runs, in the order of their start. */
	TArray<FString> GetRunningServers() const;

	/** The tools that the agent has of a server; 0 for an unknown one. */
	int32 GetToolCount(const FString& Name) const;

private:
	/** What is planned for a server that has crashed. */
	struct FRestartState
	{
		/** Restarts that were tried. */
		int32 Attempts = 0;
		double NextRetryTime = 0.0;
	};

	FCVXMCPManager() = default;

	void OfferTools(const FString& Name, const TSharedPtr<FCVXMCPServer>& Server);
	void WatchServers();
	bool CheckHealth();
	void FindCrashes();
	void RetryIfDue(const FString& Name, double Now);

	TMap<FString, TSharedPtr<FCVXMCPServer>> Servers;
	/** The names of the tools that were registered for each server. */
	TMap<FString, TArray<FString>> ServerTools;
	TSet<FString> CrashedServers;
	TMap<FString, FRestartState> RestartStates;
	FTSTicker::FDelegateHandle HealthTicker;
};
