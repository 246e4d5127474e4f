#pragma once

#include "Containers/UnrealString.h"

#include <thread>

class FRunnable;

enum EThreadPriority
{
	TPri_Normal,
	TPri_AboveNormal,
	TPri_BelowNormal,
	TPri_Highest,
	TPri_Lowest,
	TPri_SlightlyBelowNormal,
	TPri_TimeCritical
};

/** A thread that runs one `FRunnable`. Destroying it asks the runnable to stop and waits for the thread's end. */
class FRunnableThread : private FNoncopyable
{
public:
	/**
	 * Starts a thread. @param Runnable outlives the thread. @param Name shown by debuggers, cut at 15 bytes.
	 * @param StackSize and Priority are left to the system. @return null when the system has no thread to give.
	 */
	static FRunnableThread* Create(
		FRunnable* Runnable, const TCHAR* Name, uint32 StackSize = 0, EThreadPriority Priority = TPri_Normal);
	~FRunnableThread();

	/** Asks the runnable to stop, and waits for the thread's end on demand. @return true. */
	bool Kill(bool bShouldWait = true);
	void WaitForCompletion();
	const FString& GetThreadName() const { return Name; }

private:
	FRunnableThread(FRunnable* InRunnable, const TCHAR* InName);
	void Main();

	FRunnable* Runnable;
	FString Name;
	std::thread Thread;
};
