#include "Tools/CVXToolRun.h"

#include "CoreGlobals.h"
#include "Diagnostics/CVXPerformanceMonitor.h"
#include "Tools/CVXToolExecutor.h"
#include "Tools/CVXToolRegistry.h"

#include <exception>

namespace
{
const TCHAR* const TruncationSuffix =
	TEXT("\n\n[Output truncated — refine your query (use filters, smaller paths, or pagination) to see more.]");

/** Keeps modal dialogs from blocking while it lives. Only the game thread opens them and may touch the flag. */
class FUnattendedScope : private FNoncopyable
{
public:
	explicit FUnattendedScope(bool bInActive)
		: bActive(bInActive && IsInGameThread())
		, bBefore(bActive && GIsRunningUnattendedScript)
	{
		if (bActive)
		{
			GIsRunningUnattendedScript = true;
		}
	}
	~FUnattendedScope()
	{
		if (bActive)
		{
			GIsRunningUnattendedScript = bBefore;
		}
	}

private:
	const bool bActive;
	const bool bBefore;
};

/** @param Prefix stands before an exception's words. @param Unknown is all there is to say of one without any. */
FCVXToolExecutionResult RunCaught(ICVXTool& Tool, const FCVXToolCall& Call, const FCVXAgentProfile& Profile,
	const TCHAR* Prefix, const TCHAR* Unknown)
{
	try
	{
		return Tool.Execute(Call.Arguments, Profile);
	}
	catch (const std::exception& Exception)
	{
		return FCVXToolExecutionResult::MakeError(Prefix + FString(UTF8_TO_TCHAR(Exception.what())));
	}
	catch (...)
	{
		return FCVXToolExecutionResult::MakeError(Unknown);
	}
}

/** @return whether the output was too long. */
bool Truncate(FString& Output)
{
	if (Output.Len() <= FCVXToolExecutor::MaxOutputChars)
	{
		return false;
	}
	Output.LeftInline(FCVXToolExecutor::MaxOutputChars);
	Output += TruncationSuffix;
	return true;
}
} // namespace

FCVXToolExecutionResult CVXToolRun::RunMonitored(
	ICVXTool& Tool, const FCVXToolCall& Call, const FCVXAgentProfile& Profile, bool bBackground)
{
	FCVXPerformanceMonitor& Monitor = FCVXPerformanceMonitor::Get();
	const int32 MonitorId = Monitor.OnToolStart(Call.Name, Call.Arguments, bBackground);
	FCVXToolExecutionResult Result;
	{
		// Scripts may have dialogs of their own to show.
		const FUnattendedScope Unattended(!Call.Name.Equals(TEXT("execute_python"), ESearchCase::IgnoreCase));
		Result = RunCaught(Tool, Call, Profile, TEXT("Tool threw exception: "), TEXT("Tool threw unknown exception."));
	}
	const bool bTruncated = Truncate(Result.Output);
	Monitor.OnToolEnd(MonitorId, Call.Name, Result.Output.Len(), Result.bIsError, false, bTruncated);
	return Result;
}

FCVXToolExecutionResult CVXToolRun::RunOnPool(const FCVXToolCall& Call, const FCVXAgentProfile& Profile)
{
	TSharedPtr<ICVXTool> Tool = FCVXToolRegistry::Get().FindToolShared(Call.Name);
	if (!Tool.IsValid())
	{
		return FCVXToolExecutionResult::MakeError(FString::Printf(TEXT("Tool '%s' no longer available."), *Call.Name));
	}
	FCVXToolExecutionResult Result = RunCaught(*Tool, Call, Profile, TEXT("Background execution exception: "),
		TEXT("Unknown background execution exception."));
	Tool.Reset();
	Truncate(Result.Output);
	return Result;
}
