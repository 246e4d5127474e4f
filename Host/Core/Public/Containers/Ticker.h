#pragma once

#include "Containers/Array.h"
#include "Delegates/Delegate.h"
#include "HAL/CriticalSection.h"
#include "Templates/Function.h"

#include <condition_variable>

/** @return whether to be called again. The argument is the length of the tick in seconds. */
using FTickerDelegate = TDelegate<bool(float)>;

/**
 * Timers of the game thread. Delays are measured by the host's clock. Adding and removing are safe on any thread and
 * from inside a tick.
 */
class FTSTicker : private FNoncopyable
{
public:
	class FElement;
	using FDelegateHandle = TWeakPtr<FElement>;

	/** The ticker that the engine loop ticks. */
	static FTSTicker& GetCoreTicker();

	/**
	 * Calls the delegate in each tick, but not before InDelay has passed since it was added or since its last call,
	 * until it returns false or is removed. What is added during a tick is called from the next tick on.
	 * @param InDelay seconds, 0 or more.
	 */
	FDelegateHandle AddTicker(const FTickerDelegate& Delegate, float InDelay = 0.0f);
	FDelegateHandle AddTicker(const TCHAR* Name, float InDelay, TFunction<bool(float)> Function);

	/**
	 * Ends a timer; a handle that is stale or empty is ignored. When another thread is inside its call, this waits for
	 * the call's end, so that afterwards nothing it uses is touched.
	 */
	static void RemoveTicker(FDelegateHandle Handle);

	/** Calls what is due, in the order of adding. Game thread. @param DeltaTime seconds since the last tick. */
	void Tick(float DeltaTime);

	/** Ends all timers. */
	void Reset();

	/** Seconds until the next timer is due, 0 when one is; 1e30 without timers. Any thread. */
	double GetSecondsToNextTick() const;

private:
	void CallElement(FElement& Element, float DeltaTime);

	mutable FCriticalSection Lock;
	TArray<TSharedRef<FElement>> Elements;
};
