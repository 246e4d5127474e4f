#pragma once

#include "Delegates/Delegate.h"
#include "Tools/CVXTool.h"

/** The end of a call. The first argument is the id of the call. */
DECLARE_DELEGATE_TwoParams(FCVXOnToolComplete, const FString&, const FCVXToolExecutionResult&);

/** A call waits for a decision. The first argument is the id of the call. */
DECLARE_DELEGATE_TwoParams(FCVXOnToolApprovalNeeded, const FString&, const FCVXApprovalRequest&);

/**
 * Stands between an agent loop and the tools: asks the approval manager, parks calls that need a decision, runs tools
 * here or on the pool, keeps results of reading tools for a minute, bounds outputs, and makes every exception an error
 * result. Game thread unless said. It may be destroyed at any moment, also by a delegate that it calls: parked calls
 * and those on the pool then end without a word.
 */
class FCVXToolExecutor
{
public:
	/** The longest output in characters; a longer one is cut and says so. */
	static constexpr int32 MaxOutputChars = 100000;
	/** Seconds since its last use that a kept result lasts. */
	static constexpr double CacheLifetimeSeconds = 60.0;
	static constexpr int32 MaxCacheEntries = 64;

	FCVXToolExecutor();
	~FCVXToolExecutor();
	FCVXToolExecutor(const FCVXToolExecutor&) = delete;
	FCVXToolExecutor& operator=(const FCVXToolExecutor&) = delete;

	/**
	 * Runs a call, or parks it and asks.
	 * @param OnComplete called once at the end, perhaps before this returns; not when the executor is gone by then.
	 * @param OnApprovalNeeded called before this returns if the call waits for `ResolveApproval`.
	 */
	void ExecuteToolCall(const FCVXToolCall& Call, const FCVXAgentProfile& Profile, FCVXOnToolComplete OnComplete,
		FCVXOnToolApprovalNeeded OnApprovalNeeded);

	/** Finishes a parked call. An unknown id is ignored. @param bRemember keeps an "always" decision as a rule. */
	void ResolveApproval(const FString& ToolUseId, ECVXApprovalState Decision, bool bRemember);

	/** Whether a call is parked until `ResolveApproval`. */
	bool IsPending(const FString& ToolUseId) const { return PendingApprovals.Contains(ToolUseId); }

	/** Lets go of all parked calls: their agent has stopped waiting for them. */
	void ForgetPending() { PendingApprovals.Empty(); }

	/** Whether a call may join a batch that worker threads run through `ExecuteToolDirect`. */
	bool CanExecuteOnBackgroundThread(const FCVXToolCall& Call, const FCVXAgentProfile& Profile) const;

	/** Runs a call at once, without approval and without kept results. Any thread that the tool allows. */
	static FCVXToolExecutionResult ExecuteToolDirect(const FCVXToolCall& Call, const FCVXAgentProfile& Profile);

	/** Forgets all kept results. */
	void InvalidateCache();

private:
	struct FPendingCall
	{
		FCVXToolCall ToolCall;
		FCVXAgentProfile Profile;
		FCVXOnToolComplete OnComplete;
	};
	struct FCacheEntry
	{
		FCVXToolExecutionResult Result;
		double Timestamp = 0.0;
	};

	struct FBackgroundCall;

	/** Takes copies: what the caller holds may go while the tool runs. */
	void Run(const TSharedRef<ICVXTool>& Tool, FCVXToolCall Call, FCVXAgentProfile Profile,
		const FCVXOnToolComplete& OnComplete);
	FCVXToolExecutionResult DoExecute(ICVXTool& Tool, const FCVXToolCall& Call, const FCVXAgentProfile& Profile);
	void DispatchBackground(const ICVXTool& Tool, const FCVXToolCall& Call, const FCVXAgentProfile& Profile,
		const FCVXOnToolComplete& OnComplete);
	static void FinishBackground(const FBackgroundCall& Work);

	bool TryCacheGet(const FString& ToolName, const FString& Arguments, FCVXToolExecutionResult& OutResult);
	void CachePut(const FString& ToolName, const FString& Arguments, const FCVXToolExecutionResult& Result);
	/** Makes room for one more entry. */
	void CacheEvict();
	/** Takes the records of this executor's entries out of what all executors share. */
	void ForgetCacheKeys();

	TMap<FString, FPendingCall> PendingApprovals;
	TMap<uint32, FCacheEntry> Cache;
	/** False once the executor is gone; work on the pool holds a copy. */
	TSharedPtr<bool> AliveFlag;
};
