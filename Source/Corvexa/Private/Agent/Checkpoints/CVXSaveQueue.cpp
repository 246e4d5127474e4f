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

void FCVXSaveQueue::RunAll()
{
	while (true)
	{
		TFunction<void()> Job;
		{
			const FScopeLock Guard(&Lock);
			if (Jobs.IsEmpty())
			{
				bRunning = false;
				Idle.Trigger();
				return;
			}
			Job = MoveTemp(Jobs[0]);
			Jobs.RemoveAt(0);
		}
		Job();
	}
}

bool FCVXSaveQueue::Drain()
{
	return Idle.Wait(MaxDrainMs);
}
