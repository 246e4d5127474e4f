#include "WorkerPool.h"

#include "HAL/ThreadName.h"
#include "Templates/UniquePtr.h"

#include <chrono>
#include <system_error>

FWorkerPool& FWorkerPool::Get()
{
	static FWorkerPool Pool;
	return Pool;
}

FWorkerPool::~FWorkerPool()
{
	Stop([] {});
}

int32 FWorkerPool::NumThreads()
{
	return std::max(4, (int32)std::thread::hardware_concurrency());
}

void FWorkerPool::Post(TUniqueFunction<void()>&& Task)
{
	FTaskNode* Node = new FTaskNode{MoveTemp(Task)};
	const std::lock_guard Guard(Mutex);
	Tasks.Append(Node);
	// Threads that are being ended would be taken for live ones; `Stop` starts new ones for what came meanwhile.
	if (!bStopping)
	{
		StartThreads();
	}
	Changed.notify_one();
}

void FWorkerPool::StartThreads()
{
	try
	{
		while (Threads.Num() < NumThreads())
		{
			Threads.Add(std::thread(&FWorkerPool::Work, this));
		}
	}
	catch (const std::system_error&)
	{
		check(!Threads.IsEmpty());
	}
}

void FWorkerPool::Work()
{
	SetCurrentThreadName(TEXT("PoolThread"));
	std::unique_lock Guard(Mutex);
	for (;;)
	{
		Changed.wait(Guard, [this] { return bStopping || !Tasks.IsEmpty(); });
		TUniquePtr<FTaskNode> Node(Tasks.TakeFirst());
		if (!Node)
		{
			return;
		}
		++Busy;
		Guard.unlock();
		Node->Function();
		// The task ends outside the lock: its destructor may post another.
		Node.Reset();
		Guard.lock();
		--Busy;
	}
}

void FWorkerPool::RunOnOwnThread(TUniqueFunction<void()>&& Task)
{
	ReapOwnThreads(false);
	TUniquePtr<FOwnThread> Own(new FOwnThread);
	Own->Task = MoveTemp(Task);
	std::unique_lock Guard(Mutex);
	try
	{
		Own->Thread = std::thread(&FWorkerPool::WorkOnOwnThread, this, Own.Get());
	}
	catch (const std::system_error&)
	{
		Guard.unlock();
		Post(MoveTemp(Own->Task));
		return;
	}
	OwnThreads.Add(Own.Release());
}

void FWorkerPool::WorkOnOwnThread(FOwnThread* Own)
{
	SetCurrentThreadName(TEXT("AsyncThread"));
	Own->Task();
	Own->Task.Reset();
	const std::lock_guard Guard(Mutex);
	Own->bDone = true;
}

void FWorkerPool::ReapOwnThreads(bool bAll)
{
	TArray<TUniquePtr<FOwnThread>> Ended;
	{
		const std::lock_guard Guard(Mutex);
		OwnThreads.RemoveAll(
			[&](FOwnThread* Own)
			{
				const bool bTake = bAll || Own->bDone;
				if (bTake)
				{
					Ended.Emplace(Own);
				}
				return bTake;
			});
	}
	for (const TUniquePtr<FOwnThread>& Own : Ended)
	{
		Own->Thread.join();
	}
}

bool FWorkerPool::IsIdle() const
{
	const bool bOwnRunning = OwnThreads.ContainsByPredicate([](const FOwnThread* Own) { return !Own->bDone; });
	return Tasks.IsEmpty() && Busy == 0 && !bOwnRunning;
}

void FWorkerPool::Stop(const TFunction<void()>& Pump)
{
	TArray<std::thread> Ended;
	for (;;)
	{
		Pump();
		std::unique_lock Guard(Mutex);
		if (IsIdle())
		{
			bStopping = true;
			Ended = MoveTemp(Threads);
			Changed.notify_all();
			break;
		}
		Guard.unlock();
		std::this_thread::sleep_for(std::chrono::milliseconds(1));
	}
	for (std::thread& Thread : Ended)
	{
		Thread.join();
	}
	ReapOwnThreads(true);
	const std::lock_guard Guard(Mutex);
	bStopping = false;
	if (!Tasks.IsEmpty())
	{
		StartThreads();
	}
}
