#pragma once

#include "Misc/Timespan.h"

#include <condition_variable>
#include <mutex>

enum class EEventMode : uint8
{
	/** One trigger lets one waiting thread go on. */
	AutoReset,
	/** A trigger lets all threads go on until the event is reset. */
	ManualReset
};

/** Lets threads wait for each other. Time-outs run by the system's clock. Any thread. */
class FEvent : private FNoncopyable
{
public:
	explicit FEvent(EEventMode InMode = EEventMode::AutoReset)
		: Mode(InMode)
	{
	}

	void Trigger();
	void Reset();
	bool IsManualReset() const { return Mode == EEventMode::ManualReset; }

	/** @param Milliseconds MAX_uint32 waits without limit. @return whether the event was triggered in time. */
	bool Wait(uint32 Milliseconds);
	bool Wait(FTimespan Limit);
	void Wait() { Wait(MAX_uint32); }

private:
	bool Consume();

	EEventMode Mode;
	bool bTriggered = false;
	std::mutex Mutex;
	std::condition_variable Changed;
};

/** An event from the process's pool, given back at the end of the scope. */
class FEventRef : private FNoncopyable
{
public:
	explicit FEventRef(EEventMode Mode = EEventMode::AutoReset);
	~FEventRef();
	FEvent* Get() const { return Event; }
	FEvent* operator->() const { return Event; }

private:
	FEvent* Event;
};

/** Keeps events for use again. Any thread. */
struct FEventPool
{
	static FEvent* Take(EEventMode Mode);
	/** @param Event from `Take`, with no thread waiting on it; null is allowed. */
	static void GiveBack(FEvent* Event);
};
