#include "HAL/Event.h"

#include "Containers/Array.h"
#include "Templates/UniquePtr.h"

#include <algorithm>
#include <chrono>

void FEvent::Trigger()
{
	const std::lock_guard Guard(Mutex);
	bTriggered = true;
	// Notified under the lock: a waiter may end the event's life as soon as it wakes.
	Mode == EEventMode::ManualReset ? Changed.notify_all() : Changed.notify_one();
}

void FEvent::Reset()
{
	const std::lock_guard Guard(Mutex);
	bTriggered = false;
}

bool FEvent::Wait(uint32 Milliseconds)
{
	if (Milliseconds != MAX_uint32)
	{
		return Wait(FTimespan((int64)Milliseconds * ETimespan::TicksPerMillisecond));
	}
	std::unique_lock Guard(Mutex);
	Changed.wait(Guard, [this] { return bTriggered; });
	return Consume();
}

bool FEvent::Wait(FTimespan Limit)
{
	// The system's clock counts nanoseconds in 64 bits; a century is as good as no limit.
	constexpr int64 Century = 36525 * ETimespan::TicksPerDay;
	const int64 Ticks = std::clamp<int64>(Limit.GetTicks(), 0, Century);
	const auto Deadline =
		std::chrono::steady_clock::now() + std::chrono::microseconds(Ticks / ETimespan::TicksPerMicrosecond);
	std::unique_lock Guard(Mutex);
	return Changed.wait_until(Guard, Deadline, [this] { return bTriggered; }) && Consume();
}

bool FEvent::Consume()
{
	bTriggered = Mode == EEventMode::ManualReset;
	return true;
}

FEventRef::FEventRef(EEventMode Mode)
	: Event(FEventPool::Take(Mode))
{
}

FEventRef::~FEventRef()
{
	FEventPool::GiveBack(Event);
}

namespace
{
struct FPool
{
	/** Events beyond this number aren't kept. */
	static constexpr int32 MaxKept = 64;

	std::mutex Mutex;
	TArray<TUniquePtr<FEvent>> Free[2];
};

FPool& Pool()
{
	static FPool Instance;
	return Instance;
}
} // namespace

FEvent* FEventPool::Take(EEventMode Mode)
{
	const std::lock_guard Guard(Pool().Mutex);
	TArray<TUniquePtr<FEvent>>& Free = Pool().Free[(int32)Mode];
	return Free.IsEmpty() ? new FEvent(Mode) : Free.Pop().Release();
}

void FEventPool::GiveBack(FEvent* Event)
{
	if (!Event)
	{
		return;
	}
	TUniquePtr<FEvent> Owned(Event);
	Event->Reset();
	const std::lock_guard Guard(Pool().Mutex);
	TArray<TUniquePtr<FEvent>>& Free = Pool().Free[Event->IsManualReset() ? 1 : 0];
	if (Free.Num() < FPool::MaxKept)
	{
		Free.Add(MoveTemp(Owned));
	}
}
