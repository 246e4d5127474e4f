#pragma once

#include "Misc/AssertionMacros.h"
#include "Templates/UnrealTemplate.h"

#include <cstddef>
#include <new>

namespace FunctionPrivate
{
/** Callables up to this many bytes live inside the function object. */
constexpr SIZE_T InlineBytes = 32;

enum class EOperation
{
	Destroy,
	Copy,
	Move
};

using FManage = void (*)(EOperation Operation, void* Self, void* Other);

template <typename CallableType>
constexpr bool bFitsInline = sizeof(CallableType) <= InlineBytes &&
	alignof(CallableType) <= alignof(std::max_align_t) && std::is_nothrow_move_constructible_v<CallableType>;

template <typename CallableType>
CallableType* Target(void* Storage)
{
	if constexpr (bFitsInline<CallableType>)
	{
		return (CallableType*)Storage;
	}
	else
	{
		return *(CallableType**)Storage;
	}
}

template <typename CallableType, typename ArgType>
void Construct(void* Storage, ArgType&& Arg)
{
	if constexpr (bFitsInline<CallableType>)
	{
		new (Storage) CallableType(Forward<ArgType>(Arg));
	}
	else
	{
		*(CallableType**)Storage = new CallableType(Forward<ArgType>(Arg));
	}
}

template <typename CallableType, bool bCopyable>
void Manage(EOperation Operation, void* Self, void* Other)
{
	switch (Operation)
	{
	case EOperation::Copy:
		if constexpr (bCopyable)
		{
			Construct<CallableType>(Self, *Target<CallableType>(Other));
		}
		return;
	case EOperation::Move:
		if constexpr (bFitsInline<CallableType>)
		{
			new (Self) CallableType(MoveTemp(*(CallableType*)Other));
			((CallableType*)Other)->~CallableType();
		}
		else
		{
			*(CallableType**)Self = *(CallableType**)Other;
		}
		return;
	case EOperation::Destroy:
		if constexpr (bFitsInline<CallableType>)
		{
			((CallableType*)Self)->~CallableType();
		}
		else
		{
			delete *(CallableType**)Self;
		}
	}
}

template <typename SignatureType, bool bCopyable>
class TFunctionBase;

template <typename ResultType, typename... ArgTypes, bool bCopyable>
class TFunctionBase<ResultType(ArgTypes...), bCopyable>
{
public:
	TFunctionBase() = default;
	TFunctionBase(TFunctionBase&& Other) noexcept { TakeFrom(Other); }
	TFunctionBase(const TFunctionBase& Other) requires bCopyable { CopyFrom(Other); }
	~TFunctionBase() { Reset(); }
	TFunctionBase& operator=(TFunctionBase&& Other) noexcept
	{
		if (this != &Other)
		{
			Reset();
			TakeFrom(Other);
		}
		return *this;
	}
	TFunctionBase& operator=(const TFunctionBase& Other) requires bCopyable
	{
		if (this != &Other)
		{
			Reset();
			CopyFrom(Other);
		}
		return *this;
	}

	template <typename CallableType>
	void Bind(CallableType&& Callable)
	{
		using Type = std::decay_t<CallableType>;
		if constexpr (std::is_pointer_v<Type>)
		{
			if (!Callable)
			{
				return;
			}
		}
		Construct<Type>(Storage, Forward<CallableType>(Callable));
		Manager = &Manage<Type, bCopyable>;
		Invoker = [](void* Self, ArgTypes&&... Args) -> ResultType
		{ return (ResultType)(*Target<Type>(Self))(Forward<ArgTypes>(Args)...); };
	}

	ResultType Call(ArgTypes... Args) const
	{
		check(Invoker != nullptr);
		return Invoker(Storage, Forward<ArgTypes>(Args)...);
	}
	bool IsSet() const { return Invoker != nullptr; }
	void Reset()
	{
		if (Invoker)
		{
			Invoker = nullptr;
			Manager(EOperation::Destroy, Storage, nullptr);
		}
	}

private:
	void TakeFrom(TFunctionBase& Other)
	{
		if (Other.Invoker)
		{
			Other.Manager(EOperation::Move, Storage, Other.Storage);
			Manager = Other.Manager;
			Invoker = Exchange(Other.Invoker, nullptr);
		}
	}
	void CopyFrom(const TFunctionBase& Other)
	{
		if (Other.Invoker)
		{
			Other.Manager(EOperation::Copy, Storage, Other.Storage);
			Manager = Other.Manager;
			Invoker = Other.Invoker;
		}
	}

	using FInvoke = ResultType (*)(void* Self, ArgTypes&&... Args);

	FInvoke Invoker = nullptr;
	FManage Manager = nullptr;
	alignas(std::max_align_t) mutable uint8 Storage[InlineBytes];
};
} // namespace FunctionPrivate

template <typename SignatureType>
class TFunction;
template <typename SignatureType>
class TUniqueFunction;
template <typename SignatureType>
class TFunctionRef;

/** Holds any callable of this signature, or none. Calling an unset one is a programmer's mistake. */
template <typename ResultType, typename... ArgTypes>
class TFunction<ResultType(ArgTypes...)>
{
public:
	TFunction() = default;
	TFunction(std::nullptr_t) {}
	template <typename CallableType>
	requires(!std::is_same_v<std::decay_t<CallableType>, TFunction> &&
		std::is_invocable_r_v<ResultType, std::decay_t<CallableType>&, ArgTypes...>) TFunction(CallableType&& Callable)
	{
		Base.Bind(Forward<CallableType>(Callable));
	}

	ResultType operator()(ArgTypes... Args) const { return Base.Call(Forward<ArgTypes>(Args)...); }
	explicit operator bool() const { return Base.IsSet(); }
	bool IsSet() const { return Base.IsSet(); }
	void Reset() { Base.Reset(); }
	friend bool operator==(const TFunction& Function, std::nullptr_t) { return !Function.IsSet(); }

private:
	FunctionPrivate::TFunctionBase<ResultType(ArgTypes...), true> Base;
};

/** As `TFunction`, for callables that can only be moved. */
template <typename ResultType, typename... ArgTypes>
class TUniqueFunction<ResultType(ArgTypes...)>
{
public:
	TUniqueFunction() = default;
	TUniqueFunction(std::nullptr_t) {}
	template <typename CallableType>
	requires(!std::is_same_v<std::decay_t<CallableType>, TUniqueFunction> &&
		std::is_invocable_r_v<ResultType, std::decay_t<CallableType>&, ArgTypes...>)
		TUniqueFunction(CallableType&& Callable)
	{
		Base.Bind(Forward<CallableType>(Callable));
	}
	TUniqueFunction(TUniqueFunction&&) noexcept = default;
	TUniqueFunction& operator=(TUniqueFunction&&) noexcept = default;
	TUniqueFunction(const TUniqueFunction&) = delete;
	TUniqueFunction& operator=(const TUniqueFunction&) = delete;

	ResultType operator()(ArgTypes... Args) const { return Base.Call(Forward<ArgTypes>(Args)...); }
	explicit operator bool() const { return Base.IsSet(); }
	bool IsSet() const { return Base.IsSet(); }
	void Reset() { Base.Reset(); }

private:
	FunctionPrivate::TFunctionBase<ResultType(ArgTypes...), false> Base;
};

/** Refers to a callable for the time of a call; the callable must outlive it. */
template <typename ResultType, typename... ArgTypes>
class TFunctionRef<ResultType(ArgTypes...)>
{
public:
	template <typename CallableType>
	requires(!std::is_same_v<std::decay_t<CallableType>, TFunctionRef> &&
		std::is_invocable_r_v<ResultType, CallableType&, ArgTypes...>) TFunctionRef(CallableType&& Callable)
		: Object((void*)std::addressof(Callable))
		, Invoker([](void* Self, ArgTypes&&... Args) -> ResultType
			  { return (ResultType)(*(std::remove_reference_t<CallableType>*)Self)(Forward<ArgTypes>(Args)...); })
	{
	}
	ResultType operator()(ArgTypes... Args) const { return Invoker(Object, Forward<ArgTypes>(Args)...); }

private:
	void* Object;
	ResultType (*Invoker)(void* Self, ArgTypes&&... Args);
};

template <typename SignatureType>
struct TIsRelocatable<TFunction<SignatureType>> : std::false_type
{
};
