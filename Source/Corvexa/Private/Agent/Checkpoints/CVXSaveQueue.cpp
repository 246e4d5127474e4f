#include "Agent/Checkpoints/CVXSaveQueue.h"

#include "Async/Async.h"
#include "Misc/ScopeLock.h"

void FCVXSaveQueue::Add(TFunction<void()> Job)
{
	const FScopeLock Guard(&Lock);
	Jobs.Add(MoveTemp(Job));
	if (!bRunning)
	{
		bRunning = true;
		Idle.Reset();
		AsyncTask(ENamedThreads::AnyBackgroundThreadNormalTask, [this] { RunAll(); });
	}
}

TArray<TFunction<void()>> FCVXSaveQueue::TakeJobs()
{
	const FScopeLock Guard(&Lock);
	if (Jobs.IsEmpty())
	{
		bRunning = false;
		Idle.Trigger();
	}
	return MoveTemp(Jobs);
}

void FCVXSaveQueue::RunAll()
{
	for (TArray<TFunction<void()>> Taken = TakeJobs(); !Taken.IsEmpty(); Taken = TakeJobs())
	{
		for (TFunction<void()>& Job : Taken)
		{
			Job();
			// What the job holds, such as a whole conversation, goes with it and not with the last of them.
			Job = nullptr;
		}
	}
}

bool FCVXSaveQueue::Drain(uint32 LimitMs)
{
	const bool bIdle = Idle.Wait(LimitMs);
	// The thread that told of its rest may still hold the lock. Behind that it is done with the queue.
	const FScopeLock Guard(&Lock);
	return bIdle;
}
