#pragma once

#include "CoreMinimal.h"
#include "Templates/Atomic.h"

/**
 * One save of a task: made on the game thread, carried out by `Run` on any. The outcome and the abandoning may be asked
 * for and told from other threads meanwhile.
 */
class FCVXCheckpointSave
{
public:
	enum class EOutcome : uint8
	{
		Pending,
		Saved,
		Failed
	};

	/** The task's directory; made by the first file in it. */
	FString Directory;
	/** The text of the conversation; let go of by `Run`. */
	FString Json;
	/** The text of "delegations.json"; empty when that file stays as it is, and when it couldn't be written. */
	FString Delegations;
	/** Older files than so many go once the new one is there. */
	int32 MaxCheckpoints = 0;
	bool bCompress = false;
	bool bShutdown = false;

	/**
	 * Writes under the next free number, which it shares with no other program, and logs the outcome.
	 * @return that number, or INDEX_NONE without a new file.
	 */
	int32 Run();

	/** Something newer stands in for this save, or its task is gone: it mustn't make a file any more. */
	void Abandon() { bAbandoned = true; }

	EOutcome GetOutcome() const { return Outcome; }

private:
	int32 Write(FString& OutPath);
	bool SaveDelegations() const;
	void Prune() const;
	void Report(const FString& Path, bool bSaved) const;

	TAtomic<EOutcome> Outcome{EOutcome::Pending};
	TAtomic<bool> bAbandoned{false};
};
