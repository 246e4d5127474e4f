#include "Diagnostics/CVXPerformanceMonitor.h"

#include "Diagnostics/CVXPerformanceLog.h"
#include "HAL/PlatformTime.h"
#include "Logging/LogMacros.h"
#include "Misc/ScopeLock.h"

DEFINE_LOG_CATEGORY(LogCVXPerf);

namespace
{
/** "999", then "1K" from a thousand on, in whole thousands. */
FString FormatAverageChars(int64 Chars)
{
	return Chars < 1000 ? FString::Printf(TEXT("%lld"), Chars) : FString::Printf(TEXT("%lldK"), Chars / 1000);
}

FString FormatTokenTotal(int64 Tokens)
{
	if (Tokens >= 1000000)
	{
		return FString::Printf(TEXT("%.1fM"), (double)Tokens * 0.000001);
	}
	return Tokens >= 1000 ? FString::Printf(TEXT("%.1fK"), (double)Tokens * 0.001)
						  : FString::Printf(TEXT("%lld"), Tokens);
}

FString FormatToolLine(const FString& Name, const FCVXToolStats& Stats)
{
	const int32 CachePercent = FMath::RoundToInt(Stats.CacheHits * 100.0 / Stats.Calls);
	return FString::Printf(
		TEXT("  %-24s %d calls, total %.1fs, avg %.2fs, max %.1fs, cache %d%%, errors %d, output avg %s chars\n"),
		*Name, Stats.Calls, Stats.TotalSeconds, Stats.TotalSeconds / Stats.Calls, Stats.MaxSeconds, CachePercent,
		Stats.Errors, *FormatAverageChars(Stats.TotalOutputChars / Stats.Calls));
}
} // namespace

FCVXScopeTimer::FCVXScopeTimer(const FString& InLabel, double InThresholdMs)
	: Label(InLabel)
	, ThresholdMs(InThresholdMs)
	, StartTime(FPlatformTime::Seconds())
{
}

FCVXScopeTimer::~FCVXScopeTimer()
{
	const double ElapsedMs = (FPlatformTime::Seconds() - StartTime) * 1000.0;
	if (ElapsedMs > ThresholdMs)
	{
		UE_LOG(LogCVXPerf, Warning, TEXT("[%s] took %.0fms (threshold: %.0fms)"), *Label, ElapsedMs, ThresholdMs);
	}
}

FCVXPerformanceMonitor& FCVXPerformanceMonitor::Get()
{
	static FCVXPerformanceMonitor Monitor;
	return Monitor;
}

void FCVXPerformanceMonitor::OnTurnStart(int32 Turn)
{
	FScopeLock ScopeLock(&Lock);
	ClearCurrentTurn();
	CurrentTurn = Turn;
}

void FCVXPerformanceMonitor::OnStreamStart()
{
	FScopeLock ScopeLock(&Lock);
	StreamStartTime = FPlatformTime::Seconds();
	bFirstTokenSeen = false;
}

void FCVXPerformanceMonitor::OnFirstToken()
{
	FScopeLock ScopeLock(&Lock);
	if (!bFirstTokenSeen)
	{
		FirstTokenTime = FPlatformTime::Seconds();
		bFirstTokenSeen = true;
	}
}

void FCVXPerformanceMonitor::OnStreamEnd(int32 InputTokens, int32 OutputTokens)
{
	FScopeLock ScopeLock(&Lock);
	CurrentInputTokens = InputTokens;
	CurrentOutputTokens = OutputTokens;
}

void FCVXPerformanceMonitor::OnTurnEnd(int32 ToolCount, double ToolSeconds)
{
	FScopeLock ScopeLock(&Lock);
	const bool bStreamed = StreamStartTime > 0.0;
	FCVXTurnRecord Record;
	Record.Turn = CurrentTurn;
	Record.StreamSeconds = bStreamed ? FPlatformTime::Seconds() - StreamStartTime : 0.0;
	Record.FirstTokenSeconds = bStreamed && bFirstTokenSeen ? FirstTokenTime - StreamStartTime : 0.0;
	Record.ToolCount = ToolCount;
	Record.ToolSeconds = ToolSeconds;
	Record.InputTokens = CurrentInputTokens;
	Record.OutputTokens = CurrentOutputTokens;
	AddTurnRecord(Record);
	UE_LOG(LogCVXPerf, Log, TEXT("Turn %d: stream %.1fs (first token %.1fs), %d tools (%.1fs total), %d->%d tokens"),
		Record.Turn, Record.StreamSeconds, Record.FirstTokenSeconds, Record.ToolCount, Record.ToolSeconds,
		Record.InputTokens, Record.OutputTokens);
}

void FCVXPerformanceMonitor::AddTurnRecord(const FCVXTurnRecord& Record)
{
	if (bTurnRingFull)
	{
		TurnRecords[TurnRingIndex] = Record;
		TurnRingIndex = (TurnRingIndex + 1) % MaxTurnRecords;
		return;
	}
	TurnRecords.Add(Record);
	bTurnRingFull = TurnRecords.Num() == MaxTurnRecords;
	TurnRingIndex = bTurnRingFull ? 0 : TurnRecords.Num();
}

int32 FCVXPerformanceMonitor::OnToolStart(const FString& /*Name*/, const FString& /*Arguments*/, bool bBackground)
{
	const int32 Id = NextToolCallId++;
	FScopeLock ScopeLock(&Lock);
	ActiveTools.Add(Id, FCVXActiveToolCall{FPlatformTime::Seconds(), bBackground});
	return Id;
}

void FCVXPerformanceMonitor::OnToolEnd(
	int32 Id, const FString& Name, int32 OutputChars, bool bIsError, bool bCacheHit, bool bTruncated)
{
	FScopeLock ScopeLock(&Lock);
	FCVXActiveToolCall Call;
	const bool bStarted = ActiveTools.RemoveAndCopyValue(Id, Call);
	const double Seconds = bStarted ? FPlatformTime::Seconds() - Call.StartTime : 0.0;

	FCVXToolStats& Stats = ToolStats.FindOrAdd(Name);
	Stats.Calls += 1;
	Stats.TotalSeconds += Seconds;
	Stats.MaxSeconds = FMath::Max(Stats.MaxSeconds, Seconds);
	Stats.TotalOutputChars += OutputChars;
	Stats.CacheHits += bCacheHit ? 1 : 0;
	Stats.Errors += bIsError ? 1 : 0;
	Stats.Truncations += bTruncated ? 1 : 0;

	if (Seconds > SlowToolThresholdSecs)
	{
		UE_LOG(LogCVXPerf, Warning, TEXT("Tool '%s' took %.2fs (output: %d chars, cache: %s, thread: %s)"), *Name,
			Seconds, OutputChars, bCacheHit ? TEXT("hit") : TEXT("miss"), Call.bBackground ? TEXT("BG") : TEXT("GT"));
	}
}

FCVXScopeTimer FCVXPerformanceMonitor::ScopeTimer(const FString& Label, double ThresholdMs) const
{
	return FCVXScopeTimer(Label, ThresholdMs);
}

FString FCVXPerformanceMonitor::DumpStats() const
{
	FScopeLock ScopeLock(&Lock);
	FString Out = TEXT("=== CVX Performance Summary ===\n");
	AppendToolLines(Out);
	AppendTurnLines(Out);
	return Out;
}

void FCVXPerformanceMonitor::AppendToolLines(FString& Out) const
{
	if (ToolStats.IsEmpty())
	{
		Out += TEXT("  (no tool calls recorded)\n");
		return;
	}
	Out += TEXT("Tools (by total time):\n");
	TMap<FString, FCVXToolStats> Sorted = ToolStats;
	Sorted.ValueStableSort(
		[](const FCVXToolStats& A, const FCVXToolStats& B) { return A.TotalSeconds > B.TotalSeconds; });
	for (const auto& [Name, Stats] : Sorted)
	{
		Out += FormatToolLine(Name, Stats);
	}
}

void FCVXPerformanceMonitor::AppendTurnLines(FString& Out) const
{
	if (TurnRecords.IsEmpty())
	{
		Out += TEXT("  (no turns recorded)\n");
		return;
	}
	double StreamSeconds = 0.0;
	double FirstTokenSeconds = 0.0;
	int64 Tools = 0;
	int64 InputTokens = 0;
	int64 OutputTokens = 0;
	for (const FCVXTurnRecord& Record : TurnRecords)
	{
		StreamSeconds += Record.StreamSeconds;
		FirstTokenSeconds += Record.FirstTokenSeconds;
		Tools += Record.ToolCount;
		InputTokens += Record.InputTokens;
		OutputTokens += Record.OutputTokens;
	}
	const double Count = TurnRecords.Num();
	Out.Appendf(TEXT("Turns (last %d):\n"), TurnRecords.Num());
	Out.Appendf(TEXT("  avg stream: %.1fs, first token: %.1fs, tools/turn: %.1f\n"), StreamSeconds / Count,
		FirstTokenSeconds / Count, (double)Tools / Count);
	Out.Appendf(
		TEXT("  total: %s in / %s out tokens\n"), *FormatTokenTotal(InputTokens), *FormatTokenTotal(OutputTokens));
}

void FCVXPerformanceMonitor::ResetStats()
{
	FScopeLock ScopeLock(&Lock);
	ToolStats.Empty();
	ActiveTools.Empty();
	TurnRecords.Empty();
	TurnRingIndex = 0;
	bTurnRingFull = false;
	ClearCurrentTurn();
	CurrentTurn = 0;
	UE_LOG(LogCVXPerf, Log, TEXT("Performance counters reset."));
}

void FCVXPerformanceMonitor::ClearCurrentTurn()
{
	StreamStartTime = 0.0;
	FirstTokenTime = 0.0;
	bFirstTokenSeen = false;
	CurrentInputTokens = 0;
	CurrentOutputTokens = 0;
}
