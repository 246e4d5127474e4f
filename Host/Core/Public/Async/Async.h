#pragma once

#include "Async/Future.h"
#include "Async/TaskGraphInterfaces.h"

enum class EAsyncExecution : uint8
{
	TaskGraph,
	TaskGraphMainThread,
	/** A thread of its own, which the engine loop's exit waits for. */
	Thread,
	ThreadIfForkSafe,
	ThreadPool,
	LargeThreadPool
};

/**
 * Runs a callable later on the thread named, in the order of posting for the game thread. What is posted to the game
 * thread while it runs tasks is run in the next tick of the engine loop. Any thread.
 */
void AsyncTask(ENamedThreads::Type Thread, TUniqueFunction<void()> Function);

namespace AsyncPrivate
{
void Dispatch(EAsyncExecution Execution, TUniqueFunction<void()>&& Task);
}

/** Runs a callable elsewhere. @param CompletionCallback called there once the result is set. @return its result. */
template <typename CallableType>
auto Async(EAsyncExecution Execution, CallableType&& Callable, TUniqueFunction<void()> CompletionCallback = nullptr)
{
	using ResultType = std::invoke_result_t<std::decay_t<CallableType>&>;
	TPromise<ResultType> Promise(MoveTemp(CompletionCallback));
	TFuture<ResultType> Future = Promise.GetFuture();
	AsyncPrivate::Dispatch(Execution,
		[Promise = MoveTemp(Promise), Call = std::decay_t<CallableType>(Forward<CallableType>(Callable))]() mutable
		{ Promise.EmplaceValue(FuturePrivate::Invoke<ResultType>(Call)); });
	return Future;
}

template <typename CallableType>
auto AsyncThread(CallableType&& Callable)
{
	return Async(EAsyncExecution::Thread, Forward<CallableType>(Callable));
}

template <typename CallableType>
auto AsyncPool(CallableType&& Callable)
{
	return Async(EAsyncExecution::ThreadPool, Forward<CallableType>(Callable));
}
