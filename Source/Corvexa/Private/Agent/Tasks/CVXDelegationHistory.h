#pragma once

#include "CoreMinimal.h"

/** One finished delegation of a loop. */
struct FCVXDelegationRecord
{
	FString AgentProfile;
	FString TaskDescription;
	FString ResultSummary;
	bool bError = false;
	bool bIncomplete = false;

	/** "ERROR", "INCOMPLETE" or "SUCCESS". */
	FString GetStatus() const { return FormatStatus(bError, bIncomplete); }
	static FString FormatStatus(bool bError, bool bIncomplete);
};

/** The delegations of every loop of the process, so that a model doesn't hand out finished work again. Game thread. */
class FCVXDelegationHistory
{
public:
	/** The records kept for each loop: the newest. */
	static constexpr int32 MaxRecords = 50;
	/** From this overlap with a finished delegation on, a new one counts as its repetition. */
	static constexpr float DuplicateOverlap = 0.5f;

	static FCVXDelegationHistory& Get();

	/** Records one; the result is cut to a summary. */
	void Add(const FString& LoopId, const FString& AgentProfile, const FString& Task, const FString& Result,
		bool bError, bool bIncomplete);
	/** In order of their ends; empty for a loop without any. */
	const TArray<FCVXDelegationRecord>& GetRecords(const FString& LoopId) const;
	void Remove(const FString& LoopId) { RecordsByLoop.Remove(LoopId); }

	/** The successful record of the same profile that the task repeats, with the overlap; null when there is none. */
	const FCVXDelegationRecord* FindDuplicate(
		const FString& LoopId, const FString& AgentProfile, const FString& Task, float& OutOverlap) const;

	/** The loop's records as a file has them; empty without any. */
	FString ToText(const FString& LoopId) const;
	/** @return false without records or when the file can't be written, which is logged. */
	bool Save(const FString& LoopId, const FString& FilePath) const;
	/** Replaces the loop's records by the file's. @return false when it can't be read, which is logged. */
	bool Load(const FString& LoopId, const FString& FilePath);

	/** The share of the new task's keywords that the old one has too, 0 to 1; 0 when it has none. */
	static float GetOverlap(const FString& OldTask, const FString& NewTask);

private:
	TMap<FString, TArray<FCVXDelegationRecord>> RecordsByLoop;
};
