#pragma once

#include "Containers/Array.h"
#include "HAL/CriticalSection.h"
#include "MCP/CVXMCPLineBuffer.h"
#include "MCP/CVXMCPProcess.h"
#include "Templates/SharedPointer.h"

class FJsonObject;
struct FCVXMCPServerConfig;
struct FCVXMCPToolInfo;

/**
 * A connection to one tool server, which runs as a child process and speaks JSON-RPC 2.0 over its standard streams, a
 * message a line. All calls wait for the server, within limits. Start, stop and list on the game thread; call tools and
 * ask whether it runs on any. Requests of several threads go one after the other.
 */
class FCVXMCPServer : private FNoncopyable
{
public:
	~FCVXMCPServer() { Stop(); }

	/** Runs the command and greets the server. @return false, with the reason in the log and nothing left, if not. */
	bool Start(const FCVXMCPServerConfig& Config);

	/** Ends the process with all that it has started. A request under way fails at once. */
	void Stop();

	bool IsRunning() const { return Process.IsRunning(); }

	/** Asks for the tools. @return false, with the reason in the log, when there is no usable answer. */
	bool ListTools(TArray<FCVXMCPToolInfo>& OutTools);

	/**
	 * Runs a tool. @param OriginalName as the server knows it. @param ArgumentsJson what is no JSON object calls it
	 * without arguments. @return what it says, or why it couldn't be called.
	 */
	FString CallTool(const FString& OriginalName, const FString& ArgumentsJson, bool& bOutIsError);

private:
	/** @return the result as text; empty with OutError set when there is none. */
	FString SendRequest(
		const FString& Method, const TSharedPtr<FJsonObject>& Params, FString& OutError, double TimeoutSeconds);
	void SendNotification(const FString& Method, const TSharedPtr<FJsonObject>& Params);
	/** @return empty when nothing came in time, or the process has ended. */
	FString ReadLine(double TimeoutSeconds);

	bool Greet();
	void DropStaleLines();
	TSharedPtr<FJsonObject> AwaitResponse(int32 Id, const FString& Method, FString& OutError, double TimeoutSeconds);
	bool IsTooMuchGarbage(const FString& Line, int32 MalformedCount, FString& OutError) const;

	FString ServerName;
	FCVXMCPProcess Process;

	/** Held through a request; guards what follows and the pipes of the process. */
	FCriticalSection RequestLock;
	FCVXMCPLineBuffer LineBuffer;
	int32 NextRequestId = 1;
};
