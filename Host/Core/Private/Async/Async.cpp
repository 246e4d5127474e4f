#include "Async/Async.h"

#include "GameThreadQueue.h"
#include "WorkerPool.h"

void AsyncTask(ENamedThreads::Type Thread, TUniqueFunction<void()> Function)
{
	check(Function.IsSet());
	if (Thread == ENamedThreads::GameThread)
	{
		FGameThreadQueue::Get().Post(MoveTemp(Function));
		return;
	}
	FWorkerPool::Get().Post(MoveTemp(Function));
}

void AsyncPrivate::Dispatch(EAsyncExecution Execution, TUniqueFunction<void()>&& Task)
{
	switch (Execution)
	{
	case EAsyncExecution::TaskGraphMainThread:
		FGameThreadQueue::Get().Post(MoveTemp(Task));
		return;
	case EAsyncExecution::Thread:
	case EAsyncExecution::ThreadIfForkSafe:
		FWorkerPool::Get().RunOnOwnThread(MoveTemp(Task));
		return;
	default:
		FWorkerPool::Get().Post(MoveTemp(Task));
	}
}
