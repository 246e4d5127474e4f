#pragma once

#include "CoreMinimal.h"
#include "HAL/CriticalSection.h"

#include <atomic>

/** What one tool has cost so far. */
struct FCVXToolStats
{
	int32 Calls = 0;
	double TotalSeconds = 0.0;
	double MaxSeconds = 0.0;
	int32 CacheHits = 0;
	int32 Errors = 0;
	int64 TotalOutputChars = 0;
	int32 Truncations = 0;
};

/** A tool call that runs now. */
struct FCVXActiveToolCall
{
	double StartTime = 0.0;
	bool bBackground = false;
};

/** One finished turn of the agent loop. */
struct FCVXTurnRecord
{
	int32 Turn = 0;
	double StreamSeconds = 0.0;
	double FirstTokenSeconds = 0.0;
	int32 ToolCount = 0;
	double ToolSeconds = 0.0;
	int32 InputTokens = 0;
	int32 OutputTokens = 0;
};

/** Logs a warning at the end of its life when that lasted longer than the threshold. Any thread. */
class FCVXScopeTimer
{
public:
	FCVXScopeTimer(const FString& InLabel, double InThresholdMs);
	~FCVXScopeTimer();
	FCVXScopeTimer(const FCVXScopeTimer&) = delete;
	FCVXScopeTimer& operator=(const FCVXScopeTimer&) = delete;

private:
	FString Label;
	double ThresholdMs;
	double StartTime;
};

/**
 * Counters of the agent's hot paths: turns, tool calls, scoped timers. Kept in memory alone; slow work is logged, and
 * `DumpStats` tells the rest. Any thread.
 */
class FCVXPerformanceMonitor
{
public:
	/** The turns kept: the newest ones. */
	static constexpr int32 MaxTurnRecords = 50;

	/** Made at the first call and kept to the end of the process. */
	static FCVXPerformanceMonitor& Get();

	/** A tool call longer than this many seconds is logged. */
	double SlowToolThresholdSecs = 1.0;
	/** The limit in milliseconds that callers pass to `ScopeTimer`. */
	double SlowScopeThresholdMs = 50.0;

	void OnTurnStart(int32 Turn);
	void OnStreamStart();
	/** The first call of a turn counts, later ones do nothing. */
	void OnFirstToken();
	void OnStreamEnd(int32 InputTokens, int32 OutputTokens);
	/** @param ToolSeconds the time that the turn's tools took together. */
	void OnTurnEnd(int32 ToolCount, double ToolSeconds);

	/** @return the id to end the call with; ids run on for the life of the process. */
	int32 OnToolStart(const FString& Name, const FString& Arguments, bool bBackground);
	/** A call without a start counts as one of 0 seconds. */
	void OnToolEnd(int32 Id, const FString& Name, int32 OutputChars, bool bIsError, bool bCacheHit, bool bTruncated);

	FCVXScopeTimer ScopeTimer(const FString& Label, double ThresholdMs) const;

	/** The summary that the console command shows. */
	FString DumpStats() const;
	void ResetStats();

private:
	FCVXPerformanceMonitor() = default;

	void ClearCurrentTurn();
	void AddTurnRecord(const FCVXTurnRecord& Record);
	void AppendToolLines(FString& Out) const;
	void AppendTurnLines(FString& Out) const;

	mutable FCriticalSection Lock;
	TMap<FString, FCVXToolStats> ToolStats;
	TMap<int32, FCVXActiveToolCall> ActiveTools;
	std::atomic<int32> NextToolCallId{0};
	TArray<FCVXTurnRecord> TurnRecords;
	int32 TurnRingIndex = 0;
	bool bTurnRingFull = false;
	double StreamStartTime = 0.0;
	double FirstTokenTime = 0.0;
	bool bFirstTokenSeen = false;
	int32 CurrentTurn = 0;
	int32 CurrentInputTokens = 0;
	int32 CurrentOutputTokens = 0;
};
