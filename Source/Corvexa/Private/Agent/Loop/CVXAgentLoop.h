#pragma once

#include "Agent/Context/CVXContextManager.h"
#include "Agent/Guards/CVXGuardContext.h"
#include "Agent/Loop/CVXSharedProfile.h"
#include "Agent/Tasks/CVXDelegationHistory.h"
#include "Containers/Ticker.h"
#include "Delegates/Delegate.h"
#include "Providers/CVXProvider.h"
#include "Tools/CVXApprovalRequest.h"
#include "Tools/CVXToolExecutor.h"

class FCVXTask;

/**
 * Drives one conversation: takes a user message, asks the model for a streamed answer, runs the tool calls in it, feeds
 * the results back, and repeats until the model finishes, a rule stops it or the user does. Owned by a shared pointer,
 * because all delayed work holds a weak one. Game thread; any of its delegates may call it again or let go of it.
 */
class FCVXAgentLoop : public TSharedFromThis<FCVXAgentLoop>
{
public:
	/** The window of a loop that has no provider, in tokens. */
	static constexpr int32 DefaultContextTokens = 200000;
	/** A smaller window isn't believed. */
	static constexpr int32 MinContextTokens = 8000;
	/** A call that nobody decides in this time is denied. */
	static constexpr double ApprovalSeconds = 600.0;
	/** The time of a delegation that names none. */
	static constexpr float DefaultDelegationSeconds = 900.0f;
	/** A sub-agent this deep delegates no further. */
	static constexpr int32 MaxDelegationDepth = 3;

	DECLARE_MULTICAST_DELEGATE_OneParam(FOnText, const FString&);
	DECLARE_MULTICAST_DELEGATE_OneParam(FOnMessage, const FCVXMessage&);
	DECLARE_MULTICAST_DELEGATE_OneParam(FOnState, ECVXTaskState);
	DECLARE_MULTICAST_DELEGATE_TwoParams(FOnApproval, const FString&, const FCVXApprovalRequest&);
	DECLARE_MULTICAST_DELEGATE_TwoParams(FOnClarification, const FString&, const FCVXClarificationRequest&);
	DECLARE_MULTICAST_DELEGATE_FiveParams(
		FOnSubAgent, const FString&, const FString&, const FString&, const FString&, int32);

	/** A piece of visible text arrived. */
	FOnText OnTextDelta;
	/** A piece of reasoning arrived. */
	FOnText OnReasoningDelta;
	/** A message is ready for display. */
	FOnMessage OnMessageComplete;
	FOnState OnStateChanged;
	/** The loop failed; the text is for the user. */
	FOnText OnError;
	/** The task ended; the text is its result. */
	FOnText OnComplete;
	/** A call waits for `ResolveApproval`. First the call's id. */
	FOnApproval OnApprovalNeeded;
	/** A call put questions to the user and waits for `ResolveClarification`. First the call's id. */
	FOnClarification OnClarificationNeeded;
	/** A delegation must start and end in `ResolveSubAgent`: the call's id, profile, task, context, turn limit. */
	FOnSubAgent OnSubAgentRequired;

	/** 0 for a top-level task, greater for a sub-agent. */
	int32 SubAgentDepth = 0;
	/** Most answers to one user message; 0 or less means no limit. */
	int32 MaxTurns = 0;

	/** @param InProvider may be null until the settings give one. */
	FCVXAgentLoop(TUniquePtr<ICVXProvider> InProvider, const FCVXAgentProfile& InAgentProfile);
	/** Ends what runs, without any further callback. */
	~FCVXAgentLoop();
	FCVXAgentLoop(const FCVXAgentLoop&) = delete;
	FCVXAgentLoop& operator=(const FCVXAgentLoop&) = delete;

	/** Starts a run. While one is busy the message is dropped, which is logged. */
	void SubmitUserMessage(const FString& Text);
	/** Stops for good. Neither OnComplete nor OnError fires. */
	void Cancel();
	/** Stops this run; the next message goes on with the conversation. */
	void Interrupt();
	/** Forgets the conversation, the work done and the knowledge shown; nothing else. */
	void ClearHistory();

	/** Decides a call that waits. @param bRemember keeps an "always" decision as a rule. */
	void ResolveApproval(const FString& ToolUseId, ECVXApprovalState Decision, bool bRemember);
	/** Answers the questions of a call, one text for each. Ignored when no question of that call is open. */
	void ResolveClarification(const FString& ToolUseId, const TArray<FString>& Selections);
	/** Ends a delegation. A result that nobody waits for is dropped. @param bIncomplete it ran out of turns. */
	void ResolveSubAgent(const FString& ToolUseId, const FString& Result, bool bIsError, bool bIncomplete);

	/** The names of the turn's calls while they run, else nothing. */
	TArray<FString> GetExecutingToolNames() const;
	ECVXTaskState GetState() const { return State; }
	/** Whether a message would be dropped. */
	bool IsBusy() const { return IsBusyState(State); }
	static bool IsBusyState(ECVXTaskState State);
	bool IsInterrupted() const { return bInterrupted; }
	const FString& GetLoopId() const { return LoopId; }
	FCVXContextManager& GetContextManager() { return ContextManager; }
	const FCVXContextManager& GetContextManager() const { return ContextManager; }
	const FCVXGuardState& GetGuardState() const { return Guards; }
	const FString& GetAgentProfileName() const { return AgentProfile->ProfileName; }
	const FString& GetProviderProfileName() const { return AgentProfile->ProviderProfileName; }
	void SetAgentProfile(const FCVXAgentProfile& Profile) { AgentProfile = CVXSharedProfile::Share(Profile); }
	/** Sums over the loop's life. */
	int32 GetCumulativeCacheRead() const { return TotalUsage.CacheRead; }
	int32 GetCumulativeCacheWrite() const { return TotalUsage.CacheWrite; }
	const FCVXTokenUsage& GetTotalUsage() const { return TotalUsage; }
	/** The provider's, for requests beside the conversation; null when there is none. */
	ICVXProvider* GetProvider() const { return Provider.Get(); }
	const FCVXAgentProfile& GetAgentProfile() const { return *AgentProfile; }
	/** When the failed request is tried again, in `FPlatformTime::Seconds`; 0 when none waits. */
	double GetRetryTime() const { return RetryTime; }

	static bool LoadDelegationHistory(const FString& LoopId, const FString& FilePath)
	{
		return FCVXDelegationHistory::Get().Load(LoopId, FilePath);
	}
	static bool SaveDelegationHistory(const FString& LoopId, const FString& FilePath)
	{
		return FCVXDelegationHistory::Get().Save(LoopId, FilePath);
	}

private:
	struct FPendingSubAgent
	{
		FString Profile;
		FString Task;
		float TimeoutSeconds = 0.0f;
		FTSTicker::FDelegateHandle Ticker;
	};

	/** The work of one turn, from its request to the last result. */
	struct FTurn
	{
		FString Text;
		FString Reasoning;
		/** In stream order. */
		TArray<FCVXToolCall> Calls;
		/** In order of arrival. */
		TArray<FCVXCompletedToolResult> Results;
		/** When each call that waits for a decision is denied, by id. */
		TMap<FString, double> ApprovalDeadlines;
		/** Questions to the user; the first is put, the others wait for its answer. */
		TArray<FCVXClarificationRequest> Clarifications;
		TMap<FString, FPendingSubAgent> SubAgents;
		bool bCompletionRequested = false;
		FString CompletionMessage;
		double ToolBatchStartTime = 0.0;
	};

	// One turn, in order.
	void SendRequest();
	void BeginTurn();
	const FCVXProviderProfile* RefreshFromSettings();
	void RefreshProvider(const FCVXProviderProfile& ProviderProfile);
	FCVXProviderRequest BuildRequest(const FCVXProviderProfile* ProviderProfile);
	void OfferTools(FCVXProviderRequest& Request, const FCVXProviderProfile* ProviderProfile) const;
	FCVXProviderCallbacks MakeCallbacks();
	void OnProviderTextDelta(const FString& Text);
	void OnProviderReasoningDelta(const FString& Text);
	void OnProviderToolCallComplete(const FCVXToolCall& Call);
	void OnProviderStreamFinished(const FCVXTokenUsage& Usage);
	void OnProviderError(const FString& Error);
	void FinalizeAssistantMessage();
	void StopAtTurnLimit();
	void AddAssistantMessage();
	void HandleTextOnlyAnswer();
	bool StopAtCallCycle();
	void ProcessPendingToolCalls();
	void StartBackgroundCalls(const TArray<FCVXToolCall>& Calls);
	void RunGameThreadCalls(const TArray<FCVXToolCall>& Calls);
	void OnToolCallResult(const FString& ToolUseId, const FCVXToolExecutionResult& Result);
	void AddResult(const FString& ToolUseId, const FCVXToolExecutionResult& Result);
	void ContinueWhenAllResultsAreIn();
	void JudgeCompletion();
	void AddToolResultsToHistory();
	void AddToolResultsAndContinue();
	void AddScreenshotMessage(const FCVXTurnFindings& Findings);
	void EndTurn();

	// What a turn waits for besides the model.
	void AskForApproval(const FString& ToolUseId, const FCVXApprovalRequest& Request);
	bool TickApprovals();
	void AskForClarification(const FString& ToolUseId, const FCVXToolExecutionResult& Result);
	void PutNextQuestion();
	void RequestSubAgent(const FString& ToolUseId, const FCVXToolExecutionResult& Result);
	void WatchSubAgentTime(const FString& ToolUseId, FPendingSubAgent& SubAgent);
	bool IsWaitedFor(const FString& ToolUseId) const;

	// State.
	void SetState(ECVXTaskState NewState);
	void UpdateWaitingState();
	/** False once a listener has stopped the turn, or even begun another. */
	bool IsStillTurn(int32 Serial) const { return !IsStopped() && TurnSerial == Serial; }
	bool IsStopped() const { return bInterrupted || State == ECVXTaskState::Cancelled; }
	void StopWork();
	void Complete(const FString& Result);
	void Fail(const FString& Error);
	void RetryAfter(double Seconds);
	void CancelRetry();
	void FinalizeTodoList();
	TSharedPtr<FCVXTask> FindOwnTask() const;
	FString GetToolName(const FString& ToolUseId) const;
	/** A fresh message in the name of this agent. */
	FCVXMessage MakeOwnMessage(ECVXMessageRole Role) const;
	FCVXGuardContext MakeGuardContext();

	TUniquePtr<ICVXProvider> Provider;
	FCVXSharedProfile AgentProfile;
	FCVXContextManager ContextManager;
	FCVXToolExecutor ToolExecutor;
	const FString LoopId;

	ECVXTaskState State = ECVXTaskState::Idle;
	bool bInterrupted = false;
	/** Empty when no request runs. */
	FString ActiveRequestHandle;
	/** What the provider was made from. */
	FString ProviderFingerprint;
	/** Whether the model of the last request reads images. */
	bool bModelHasVision = false;
	FCVXTokenUsage TotalUsage;
	/** Assistant messages finished since the last user message. */
	int32 TurnCount = 0;
	FTurn Turn;
	/** Tells whether work begun in a turn still belongs to it. */
	int32 TurnSerial = 0;
	FCVXGuardState Guards;
	/** Knowledge modules that the run's prompts have shown. */
	TSet<FString> InjectedKnowledgeIds;
	int32 TransientRetries = 0;
	int32 ConnectionRetries = 0;
	FTSTicker::FDelegateHandle ApprovalTicker;
	FTSTicker::FDelegateHandle RetryTicker;
	double RetryTime = 0.0;
};
