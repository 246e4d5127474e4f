#pragma once

#include "HAL/Event.h"
#include "Misc/Optional.h"
#include "Templates/Function.h"
#include "Templates/SharedPointer.h"

#include <type_traits>

template <typename ResultType>
class TFuture;

namespace FuturePrivate
{
struct FVoid
{
};

template <typename ResultType>
using TStored = std::conditional_t<std::is_void_v<ResultType>, FVoid, ResultType>;

/** What a promise and its future share. */
template <typename ResultType>
class TState
{
public:
	void Set(TStored<ResultType>&& Value)
	{
		TUniqueFunction<void()> Call;
		{
			const std::lock_guard Guard(Mutex);
			check(!Result.IsSet());
			Result.Emplace(MoveTemp(Value));
			Call = MoveTemp(Continuation);
		}
		Ready.Trigger();
		if (Call)
		{
			Call();
		}
	}

	/** Calls the continuation once the value is there, at once if it is there already. One continuation a state. */
	void Continue(TUniqueFunction<void()>&& Call)
	{
		{
			const std::lock_guard Guard(Mutex);
			check(!Continuation.IsSet());
			if (!Result.IsSet())
			{
				Continuation = MoveTemp(Call);
				return;
			}
		}
		Call();
	}

	bool IsReady() const
	{
		const std::lock_guard Guard(Mutex);
		return Result.IsSet();
	}

	mutable std::mutex Mutex;
	TOptional<TStored<ResultType>> Result;
	TUniqueFunction<void()> Continuation;
	FEvent Ready{EEventMode::ManualReset};
};

template <typename ResultType, typename CallableType, typename... ArgTypes>
TStored<ResultType> Invoke(CallableType& Callable, ArgTypes&&... Args)
{
	if constexpr (std::is_void_v<ResultType>)
	{
		Callable(Forward<ArgTypes>(Args)...);
		return FVoid();
	}
	else
	{
		return Callable(Forward<ArgTypes>(Args)...);
	}
}
} // namespace FuturePrivate

/** The place where a result appears once. Waits run by the system's clock. Any thread, one at a time. */
template <typename ResultType>
class TFuture
{
public:
	using FState = FuturePrivate::TState<ResultType>;

	TFuture() = default;
	explicit TFuture(const TSharedPtr<FState>& InState)
		: State(InState)
	{
	}
	TFuture(TFuture&&) noexcept = default;
	TFuture& operator=(TFuture&&) noexcept = default;
	TFuture(const TFuture&) = delete;
	TFuture& operator=(const TFuture&) = delete;

	bool IsValid() const { return State.IsValid(); }
	bool IsReady() const { return State.IsValid() && State->IsReady(); }
	void Wait() const { State->Ready.Wait(); }
	/** @return whether the result is there. */
	bool WaitFor(FTimespan Limit) const { return State->Ready.Wait(Limit); }

	/** Waits without limit. The result stays in the future. */
	std::add_lvalue_reference_t<const ResultType> Get() const
	{
		Wait();
		if constexpr (!std::is_void_v<ResultType>)
		{
			return State->Result.GetValue();
		}
	}
	/** Waits without limit and takes the result out; the future is then invalid. */
	ResultType Consume()
	{
		Wait();
		const TSharedPtr<FState> Taken = MoveTemp(State);
		if constexpr (!std::is_void_v<ResultType>)
		{
			return MoveTemp(Taken->Result.GetValue());
		}
	}

	/** Calls `Callable(TFuture)` when the result is there, on the thread that sets it; this future is then invalid. */
	template <typename CallableType>
	auto Then(CallableType&& Callable)
	{
		using NextType = std::invoke_result_t<std::decay_t<CallableType>&, TFuture>;
		const auto Next = MakeShared<FuturePrivate::TState<NextType>>();
		const TSharedPtr<FState> Source = MoveTemp(State);
		Source->Continue([Next, Source, Call = std::decay_t<CallableType>(Forward<CallableType>(Callable))]() mutable
			{ Next->Set(FuturePrivate::Invoke<NextType>(Call, TFuture(Source))); });
		return TFuture<NextType>(Next);
	}
	/** As `Then`, with the result itself (or nothing, for a future of void). */
	template <typename CallableType>
	auto Next(CallableType&& Callable)
	{
		return Then(
			[Call = std::decay_t<CallableType>(Forward<CallableType>(Callable))](TFuture Self) mutable
			{
				if constexpr (std::is_void_v<ResultType>)
				{
					return Call();
				}
				else
				{
					return Call(Self.Consume());
				}
			});
	}

private:
	TSharedPtr<FState> State;
};

/** Sets the result of a future, exactly once. Any thread. */
template <typename ResultType>
class TPromise
{
public:
	TPromise()
		: State(MakeShared<FuturePrivate::TState<ResultType>>())
	{
	}
	/** @param InCompletion called after the result is set, on the thread that sets it. */
	explicit TPromise(TUniqueFunction<void()>&& InCompletion)
		: TPromise()
	{
		Completion = MoveTemp(InCompletion);
	}
	TPromise(TPromise&&) noexcept = default;
	TPromise& operator=(TPromise&&) noexcept = default;

	TFuture<ResultType> GetFuture() const { return TFuture<ResultType>(State); }

	template <typename... ArgTypes>
	void SetValue(ArgTypes&&... Args)
	{
		EmplaceValue(FuturePrivate::TStored<ResultType>(Forward<ArgTypes>(Args)...));
	}
	void EmplaceValue(FuturePrivate::TStored<ResultType> Value)
	{
		State->Set(MoveTemp(Value));
		if (Completion)
		{
			Completion();
		}
	}

private:
	TSharedPtr<FuturePrivate::TState<ResultType>> State;
	TUniqueFunction<void()> Completion;
};
