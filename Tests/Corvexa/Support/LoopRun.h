#pragma once

#include "Agent/Loop/CVXAgentLoop.h"
#include "Corvexa/Support/ScriptedProvider.h"
#include "Support/LoopPump.h"
#include "Support/TempProject.h"
#include "Tools/CVXTool.h"

/** A tool whose work is the test's. */
class FScriptedTool final : public ICVXTool
{
public:
	using FWork = TFunction<FCVXToolExecutionResult(const FString& Arguments)>;

	FScriptedTool(const FString& InName, bool bInReadOnly, FWork InWork, bool bInThreadSafe = false);

	FString GetName() const override { return Name; }
	FString GetDescription() const override { return TEXT("What the test wants."); }
	FString GetInputSchemaJson() const override { return TEXT("{\"type\":\"object\"}"); }
	FCVXToolExecutionResult Execute(const FString& Arguments, const FCVXAgentProfile&) override
	{
		return Work(Arguments);
	}
	bool IsReadOnly() const override { return bReadOnly; }
	bool IsThreadSafe() const override { return bThreadSafe; }

	/** Registers a tool that always gives this text. */
	static void Register(const FString& Name, const FString& Output, bool bIsError = false, bool bReadOnly = true);
	static void Register(const FString& Name, FWork Work, bool bReadOnly = true, bool bThreadSafe = false);

private:
	FString Name;
	bool bReadOnly;
	bool bThreadSafe;
	FWork Work;
};

/** A tool result with this text. */
FCVXToolExecutionResult MakeToolResult(const FString& Output, bool bIsError = false);

/** One agent loop with a scripted model and tools of the test's, and all that its delegates told. */
class FLoopRun
{
public:
	FLoopRun();
	~FLoopRun();

	/** Submits a message and turns the host's loop until the agent rests. */
	void Submit(const FString& Text);
	/** Turns the host's loop until the agent rests: no request, no tool, no retry under way. */
	void Settle();
	/** The ids of the history's messages, "GUID" for those that are one, separated by blanks. */
	FString DescribeHistory() const;
	/** The text of the message of that id; empty when there is none. */
	FString TextOf(const FString& MessageId) const;
	const TArray<FCVXMessage>& History() const { return Loop->GetContextManager().GetHistory(); }

	FTempProject Project;
	FLoopPump Pump;
	TSharedRef<FScriptedModel> Model = MakeShared<FScriptedModel>();
	FCVXAgentProfile Profile;
	TSharedPtr<FCVXAgentLoop> Loop;
	/** "state 1", "complete ...", "error ...", "message user ...", in order. Texts aren't among them. */
	TArray<FString> Told;
	TArray<FString> Texts;
	TArray<FCVXApprovalRequest> Approvals;
	TArray<FCVXClarificationRequest> Clarifications;

	/** Makes the loop, after Profile was changed. */
	void MakeLoop();
};
