#pragma once

#include "Agent/Tasks/CVXTaskManager.h"
#include "Corvexa/Support/ScriptedProvider.h"
#include "Loopback/LoopbackServer.h"
#include "Support/LoopPump.h"
#include "Support/TempProject.h"
#include "Support/TestClock.h"

/** A whole conversation over HTTP: the real settings, tools and provider, and a vendor that plays a script. */
class FScenario
{
public:
	FScenario();
	~FScenario();

	/** The vendor's answer to the next request. */
	FScenario& Answer(const FScriptedAnswer& Answer);
	FScenario& Answer(FLoopbackReply Reply);
	/** The bytes of an answer on the wire, as server-sent events. */
	static std::string ToEvents(const FScriptedAnswer& Answer);

	/** Submits a message and turns the host's loop until the agent rests; waits for retries pass at once. */
	void Submit(const FString& Text);
	FCVXAgentLoop& Loop() const { return *Task->GetAgentLoop(); }
	/** The roles of the history's messages, or the tags of hidden ones, separated by blanks. */
	FString DescribeHistory() const;
	/** The newest tool result. */
	FString LastToolResult() const;

	FTempProject Project;
	FLoopPump Pump;
	FTestClock Clock;
	FLoopbackServer Server;
	TSharedPtr<FCVXTask> Task;
	/** What OnComplete and OnError told, in order. */
	TArray<FString> Ends;
};
