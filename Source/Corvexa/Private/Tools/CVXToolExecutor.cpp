#include "Tools/CVXToolExecutor.h"

#include "Agent/CVXApprovalManager.h"
#include "Async/Async.h"
#include "Core/CVXSettings.h"
#include "CoreGlobals.h"
#include "Diagnostics/CVXPerformanceMonitor.h"
#include "Logging/LogMacros.h"
#include "Tools/CVXToolRegistry.h"
#include "Tools/CVXToolRun.h"

DEFINE_LOG_CATEGORY_STATIC(LogCVXToolExecutor, Log, All);

namespace
{
FCVXToolExecutionResult NotFound(const FString& Name)
{
	return FCVXToolExecutionResult::MakeError(FString::Printf(TEXT("Tool '%s' not found."), *Name));
}

bool IsCacheable(const ICVXTool& Tool, const FString& Name)
{
	static const TSet<FString> NeverCached = {TEXT("capture_viewport")};
	return Tool.IsReadOnly() && !NeverCached.Contains(Name);
}

FCVXApprovalRequest MakeRequest(const ICVXTool& Tool, const FCVXToolCall& Call)
{
	FCVXApprovalRequest Request = Tool.BuildApprovalRequest(Call.Arguments);
	Request.bIsReadOnly = Tool.IsReadOnly();
	Request.bIsDestructive = Tool.IsDestructive();
	Request.ToolUseId = Call.Id;
	return Request;
}

void ReportCacheHit(const FCVXToolCall& Call, const FCVXToolExecutionResult& Result)
{
	FCVXPerformanceMonitor& Monitor = FCVXPerformanceMonitor::Get();
	const int32 MonitorId = Monitor.OnToolStart(Call.Name, Call.Arguments, false);
	Monitor.OnToolEnd(MonitorId, Call.Name, Result.Output.Len(), Result.bIsError, true, false);
}
} // namespace

/** A call on its way to the pool and back. */
struct FCVXToolExecutor::FBackgroundCall
{
	FCVXToolCall Call;
	FCVXAgentProfile Profile;
	FCVXOnToolComplete OnComplete;
	FCVXToolExecutionResult Result;
	bool bIsReadOnly = false;
	int32 MonitorId = 0;
	TSharedPtr<bool> AliveFlag;
	/** Only to be touched on the game thread while AliveFlag is true. */
	FCVXToolExecutor* Executor = nullptr;
};

FCVXToolExecutor::FCVXToolExecutor()
	: AliveFlag(MakeShared<bool>(true))
{
}

FCVXToolExecutor::~FCVXToolExecutor()
{
	*AliveFlag = false;
	ForgetCacheKeys();
}

void FCVXToolExecutor::ExecuteToolCall(const FCVXToolCall& Call, const FCVXAgentProfile& Profile,
	FCVXOnToolComplete OnComplete, FCVXOnToolApprovalNeeded OnApprovalNeeded)
{
	check(IsInGameThread());
	const TSharedPtr<ICVXTool> Tool = FCVXToolRegistry::Get().FindToolShared(Call.Name);
	if (!Tool.IsValid())
	{
		UE_LOG(
			LogCVXToolExecutor, Warning, TEXT("Tool '%s' not found in registry (ToolUseId=%s)"), *Call.Name, *Call.Id);
		OnComplete.ExecuteIfBound(Call.Id, NotFound(Call.Name));
		return;
	}
	const FCVXApprovalRequest Request = MakeRequest(*Tool, Call);
	switch (FCVXApprovalManager::Get().CheckAutoRules(Request, Profile))
	{
	case ECVXApprovalState::Approved:
		Run(Tool.ToSharedRef(), Call, Profile, OnComplete);
		break;
	case ECVXApprovalState::Denied:
		OnComplete.ExecuteIfBound(Call.Id,
			FCVXToolExecutionResult::MakeError(
				FString::Printf(TEXT("Tool '%s' was denied by auto-approval rules."), *Call.Name)));
		break;
	default:
		PendingApprovals.Add(Call.Id, FPendingCall{Call, Profile, MoveTemp(OnComplete)});
		OnApprovalNeeded.ExecuteIfBound(Call.Id, Request);
		break;
	}
}

void FCVXToolExecutor::ResolveApproval(const FString& ToolUseId, ECVXApprovalState Decision, bool bRemember)
{
	check(IsInGameThread());
	FPendingCall Pending;
	if (!PendingApprovals.RemoveAndCopyValue(ToolUseId, Pending))
	{
		return;
	}
	const UCVXSettings* Settings = UCVXSettings::Get();
	const FCVXAgentProfile* Fresh = Settings ? Settings->FindAgentProfile(Pending.Profile.ProfileName) : nullptr;
	// An agent that is gone from the settings finds another one's profile there.
	if (Fresh && Fresh->ProfileName == Pending.Profile.ProfileName)
	{
		// The decision runs under the settings of this moment.
		Pending.Profile = *Fresh;
	}
	const FCVXToolCall& Call = Pending.ToolCall;
	FCVXApprovalManager::Get().RecordUserDecision(Call.Name, FString(), Decision, bRemember);
	if (Decision != ECVXApprovalState::Approved && Decision != ECVXApprovalState::AlwaysAllow)
	{
		Pending.OnComplete.ExecuteIfBound(
			Call.Id, FCVXToolExecutionResult::MakeError(TEXT("Tool execution was denied by user.")));
		return;
	}
	const TSharedPtr<ICVXTool> Tool = FCVXToolRegistry::Get().FindToolShared(Call.Name);
	if (!Tool.IsValid())
	{
		Pending.OnComplete.ExecuteIfBound(
			Call.Id, FCVXToolExecutionResult::MakeError(TEXT("Tool no longer available.")));
		return;
	}
	Run(Tool.ToSharedRef(), Call, Pending.Profile, Pending.OnComplete);
}

bool FCVXToolExecutor::CanExecuteOnBackgroundThread(const FCVXToolCall& Call, const FCVXAgentProfile& Profile) const
{
	const TSharedPtr<ICVXTool> Tool = FCVXToolRegistry::Get().FindToolShared(Call.Name);
	return Tool.IsValid() && Tool->IsReadOnly() && Tool->IsThreadSafe() &&
		FCVXApprovalManager::Get().CheckAutoRules(MakeRequest(*Tool, Call), Profile) == ECVXApprovalState::Approved;
}

FCVXToolExecutionResult FCVXToolExecutor::ExecuteToolDirect(const FCVXToolCall& Call, const FCVXAgentProfile& Profile)
{
	const TSharedPtr<ICVXTool> Tool = FCVXToolRegistry::Get().FindToolShared(Call.Name);
	if (!Tool.IsValid())
	{
		return NotFound(Call.Name);
	}
	UE_LOG(LogCVXToolExecutor, Log, TEXT("Executing tool '%s' (background)"), *Call.Name);
	return CVXToolRun::RunMonitored(*Tool, Call, Profile, true);
}

void FCVXToolExecutor::Run(
	const TSharedRef<ICVXTool>& Tool, FCVXToolCall Call, FCVXAgentProfile Profile, const FCVXOnToolComplete& OnComplete)
{
	if (Tool->IsThreadSafe())
	{
		DispatchBackground(*Tool, Call, Profile, OnComplete);
		return;
	}
	const TSharedPtr<bool> Alive = AliveFlag;
	const FCVXOnToolComplete KeptOnComplete = OnComplete;
	const FCVXToolExecutionResult Result = DoExecute(*Tool, Call, Profile);
	if (*Alive)
	{
		KeptOnComplete.ExecuteIfBound(Call.Id, Result);
	}
}

FCVXToolExecutionResult FCVXToolExecutor::DoExecute(
	ICVXTool& Tool, const FCVXToolCall& Call, const FCVXAgentProfile& Profile)
{
	const bool bCacheable = IsCacheable(Tool, Call.Name);
	FCVXToolExecutionResult Result;
	if (bCacheable && TryCacheGet(Call.Name, Call.Arguments, Result))
	{
		UE_LOG(LogCVXToolExecutor, Log, TEXT("Cache hit for tool '%s'"), *Call.Name);
		ReportCacheHit(Call, Result);
		return Result;
	}
	const TSharedPtr<bool> Alive = AliveFlag;
	UE_LOG(LogCVXToolExecutor, Log, TEXT("Executing tool '%s'"), *Call.Name);
	Result = CVXToolRun::RunMonitored(Tool, Call, Profile, false);
	if (!*Alive)
	{
		return Result;
	}
	if (bCacheable && !Result.bIsError)
	{
		CachePut(Call.Name, Call.Arguments, Result);
	}
	if (!Tool.IsReadOnly())
	{
		InvalidateCache();
	}
	return Result;
}

void FCVXToolExecutor::DispatchBackground(const ICVXTool& Tool, const FCVXToolCall& Call,
	const FCVXAgentProfile& Profile, const FCVXOnToolComplete& OnComplete)
{
	FCVXToolExecutionResult Cached;
	if (Tool.IsReadOnly() && TryCacheGet(Call.Name, Call.Arguments, Cached))
	{
		UE_LOG(LogCVXToolExecutor, Log, TEXT("Cache hit for tool '%s' (bg path)"), *Call.Name);
		ReportCacheHit(Call, Cached);
		const FCVXOnToolComplete KeptOnComplete = OnComplete;
		KeptOnComplete.ExecuteIfBound(Call.Id, Cached);
		return;
	}
	const TSharedRef<FBackgroundCall> Work = MakeShared<FBackgroundCall>();
	Work->Call = Call;
	Work->Profile = Profile;
	Work->OnComplete = OnComplete;
	Work->bIsReadOnly = Tool.IsReadOnly();
	Work->AliveFlag = AliveFlag;
	Work->Executor = this;
	UE_LOG(LogCVXToolExecutor, Log, TEXT("Dispatching '%s' to background thread"), *Call.Name);
	Work->MonitorId = FCVXPerformanceMonitor::Get().OnToolStart(Call.Name, Call.Arguments, true);
	Async(EAsyncExecution::ThreadPool,
		[Work = Work.ToSharedPtr()]() mutable
		{
			Work->Result = CVXToolRun::RunOnPool(Work->Call, Work->Profile);
			// Moved on, so that what the delegate holds is let go on the game thread.
			AsyncTask(ENamedThreads::GameThread, [Work = MoveTemp(Work)] { FinishBackground(*Work); });
		});
}

void FCVXToolExecutor::FinishBackground(const FBackgroundCall& Work)
{
	if (!*Work.AliveFlag)
	{
		return;
	}
	FCVXPerformanceMonitor::Get().OnToolEnd(
		Work.MonitorId, Work.Call.Name, Work.Result.Output.Len(), Work.Result.bIsError, false, false);
	if (!Work.bIsReadOnly)
	{
		Work.Executor->InvalidateCache();
	}
	else if (!Work.Result.bIsError)
	{
		Work.Executor->CachePut(Work.Call.Name, Work.Call.Arguments, Work.Result);
	}
	Work.OnComplete.ExecuteIfBound(Work.Call.Id, Work.Result);
}
