#include "Async/ParallelFor.h"

#include "HAL/PlatformMisc.h"
#include "Templates/SharedPointer.h"
#include "WorkerPool.h"

#include <algorithm>
#include <atomic>

namespace
{
/** What the threads of one loop share. It outlives the loop until the last helper has seen that nothing is left. */
struct FLoop
{
	FLoop(int32 InNum, TFunctionRef<void(int32)> InBody)
		: Body(InBody)
		, Num(InNum)
	{
	}

	/** Takes calls until none is left. The body isn't touched without one. */
	void Work()
	{
		for (int32 Index = Next.fetch_add(1); Index < Num; Index = Next.fetch_add(1))
		{
			Body(Index);
			if (Done.fetch_add(1) + 1 == Num)
			{
				Done.notify_all();
			}
		}
	}

	/** Waits for the calls that others have taken. */
	void WaitForOthers()
	{
		for (int32 Seen = Done.load(); Seen < Num; Seen = Done.load())
		{
			Done.wait(Seen);
		}
	}

	TFunctionRef<void(int32)> Body;
	const int32 Num;
	std::atomic<int32> Next{0};
	std::atomic<int32> Done{0};
};
} // namespace

void ParallelFor(int32 Num, TFunctionRef<void(int32)> Body, EParallelForFlags Flags)
{
	if (Num <= 0)
	{
		return;
	}
	const int32 Helpers =
		Flags == EParallelForFlags::ForceSingleThread ? 0 : std::min(Num, FPlatformMisc::NumberOfCores()) - 1;
	const TSharedRef<FLoop> Loop = MakeShared<FLoop>(Num, Body);
	for (int32 Helper = 0; Helper < Helpers; ++Helper)
	{
		FWorkerPool::Get().Post([Loop] { Loop->Work(); });
	}
	Loop->Work();
	Loop->WaitForOthers();
}
