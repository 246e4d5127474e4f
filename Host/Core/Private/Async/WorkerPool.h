#pragma once

#include "Containers/Array.h"
#include "TaskList.h"

#include <condition_variable>
#include <mutex>
#include <thread>

/**
 * The process's background threads. They start with the first task and end with `Stop`; a task that comes later starts
 * them again. Tools that wait for children or for the network sit on these threads, so there are never fewer than four.
 */
class FWorkerPool : private FNoncopyable
{
public:
	static FWorkerPool& Get();
	~FWorkerPool();

	/** Any thread. */
	void Post(TUniqueFunction<void()>&& Task);

	/** Runs the callable on a thread of its own, which `Stop` waits for; in the pool when there is none to have. */
	void RunOnOwnThread(TUniqueFunction<void()>&& Task);

	/**
	 * Runs all tasks to their end and joins every thread. @param Pump called again and again meanwhile, since a task
	 * may wait for the calling thread.
	 */
	void Stop(const TFunction<void()>& Pump);

	static int32 NumThreads();

private:
	struct FOwnThread
	{
		std::thread Thread;
		TUniqueFunction<void()> Task;
		bool bDone = false;
	};

	void StartThreads();
	void Work();
	void WorkOnOwnThread(FOwnThread* Own);
	bool IsIdle() const;
	void ReapOwnThreads(bool bAll);

	std::mutex Mutex;
	std::condition_variable Changed;
	FTaskList Tasks;
	TArray<std::thread> Threads;
	TArray<FOwnThread*> OwnThreads;
	int32 Busy = 0;
	bool bStopping = false;
};
