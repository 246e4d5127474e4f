#pragma once

#include "Templates/SharedPointer.h"
#include "Templates/TypeHash.h"
#include "Templates/UnrealTemplate.h"

#include <tuple>

template <typename T>
struct TWeakObjectPtr;

/** Names one binding of a multicast delegate, unique in the process. */
class FDelegateHandle
{
public:
	enum EGenerateNewHandleType
	{
		GenerateNewHandle
	};

	FDelegateHandle() = default;
	explicit FDelegateHandle(EGenerateNewHandleType);

	bool IsValid() const { return Id != 0; }
	void Reset() { Id = 0; }
	friend bool operator==(FDelegateHandle A, FDelegateHandle B) { return A.Id == B.Id; }
	friend uint32 GetTypeHash(FDelegateHandle Handle) { return ::GetTypeHash(Handle.Id); }

private:
	uint64 Id = 0;
};

namespace DelegatePrivate
{
/** What a delegate calls. Bound to an object that is gone, it is stale and never called. */
template <typename ResultType, typename... ArgTypes>
class IBinding
{
public:
	virtual ~IBinding() = default;
	virtual ResultType Execute(ArgTypes... Args) = 0;
	virtual bool IsStale() const = 0;
	virtual const void* GetObject() const = 0;
};

/** Objects whose life the caller vouches for. */
struct FUnguarded
{
	const void* Object = nullptr;

	bool IsStale() const { return false; }
	const void* Get() const { return Object; }
};

/** Objects owned by shared pointers. */
template <typename T, ESPMode Mode>
struct TSharedGuard
{
	TWeakPtr<T, Mode> Weak;
	const void* Object;

	explicit TSharedGuard(const TSharedPtr<T, Mode>& Owner)
		: Weak(Owner)
		, Object(Owner.Get())
	{
	}
	bool IsStale() const { return !Weak.IsValid(); }
	const void* Get() const { return Object; }
};

/** Reflected objects. */
template <typename T>
struct TObjectGuard
{
	TWeakObjectPtr<T> Weak;

	explicit TObjectGuard(T* Object)
		: Weak(Object)
	{
	}
	bool IsStale() const { return Weak.Get() == nullptr; }
	const void* Get() const { return Weak.Get(); }
};

template <typename CallableType, typename GuardType, typename SignatureType>
class TBinding;

template <typename CallableType, typename GuardType, typename ResultType, typename... ArgTypes>
class TBinding<CallableType, GuardType, ResultType(ArgTypes...)> final : public IBinding<ResultType, ArgTypes...>
{
public:
	TBinding(CallableType InCallable, GuardType InGuard)
		: Callable(MoveTemp(InCallable))
		, Guard(MoveTemp(InGuard))
	{
	}
	ResultType Execute(ArgTypes... Args) override { return (ResultType)Callable(Forward<ArgTypes>(Args)...); }
	bool IsStale() const override { return Guard.IsStale(); }
	const void* GetObject() const override { return Guard.Get(); }

private:
	CallableType Callable;
	GuardType Guard;
};

/** A callable that gets further values behind the arguments of each call. */
template <typename CallableType, typename... PayloadTypes>
auto WithPayload(CallableType Callable, PayloadTypes... Payload)
{
	return [Callable = MoveTemp(Callable), Values = std::tuple<PayloadTypes...>(MoveTemp(Payload)...)](
			   auto&&... Args) mutable -> decltype(auto)
	{
		return std::apply([&](auto&... Each) -> decltype(auto)
			{ return Callable(std::forward<decltype(Args)>(Args)..., Each...); },
			Values);
	};
}

/** A call of a member function; Object is a plain pointer. */
template <typename ObjectType, typename MethodType>
auto Method(ObjectType* Object, MethodType Function)
{
	return [Object, Function](auto&&... Args) -> decltype(auto)
	{ return (Object->*Function)(std::forward<decltype(Args)>(Args)...); };
}
} // namespace DelegatePrivate
