#pragma once

#include "Containers/Array.h"
#include "Delegates/DelegateBase.h"

template <typename SignatureType>
class TDelegate;

/**
 * A call that is bound at run time to a function, a method or a lambda, with further values if need be. Bound by a
 * shared or a weak object pointer it does nothing once the object is gone. Copies share the callable.
 */
template <typename ResultType, typename... ArgTypes>
class TDelegate<ResultType(ArgTypes...)>
{
public:
	template <typename CallableType, typename... PayloadTypes>
	static TDelegate CreateLambda(CallableType&& Callable, PayloadTypes... Payload)
	{
		return Make(Forward<CallableType>(Callable), DelegatePrivate::FUnguarded(), MoveTemp(Payload)...);
	}
	template <typename FunctionType, typename... PayloadTypes>
	static TDelegate CreateStatic(FunctionType* Function, PayloadTypes... Payload)
	{
		return Make(Function, DelegatePrivate::FUnguarded(), MoveTemp(Payload)...);
	}
	template <typename ObjectType, typename MethodType, typename... PayloadTypes>
	static TDelegate CreateRaw(ObjectType* Object, MethodType Function, PayloadTypes... Payload)
	{
		return Make(
			DelegatePrivate::Method(Object, Function), DelegatePrivate::FUnguarded{Object}, MoveTemp(Payload)...);
	}
	/** @param Object a shared reference or pointer, or an object whose class derives from `TSharedFromThis`. */
	template <typename ObjectType, typename MethodType, typename... PayloadTypes>
	static TDelegate CreateSP(ObjectType&& Object, MethodType Function, PayloadTypes... Payload)
	{
		const auto Shared = ToShared(Object);
		return Make(DelegatePrivate::Method(Shared.Get(), Function), DelegatePrivate::TSharedGuard(Shared),
			MoveTemp(Payload)...);
	}
	template <typename ObjectType, typename CallableType, typename... PayloadTypes>
	static TDelegate CreateSPLambda(ObjectType&& Object, CallableType&& Callable, PayloadTypes... Payload)
	{
		return Make(
			Forward<CallableType>(Callable), DelegatePrivate::TSharedGuard(ToShared(Object)), MoveTemp(Payload)...);
	}
	template <typename ObjectType, typename MethodType, typename... PayloadTypes>
	static TDelegate CreateUObject(ObjectType* Object, MethodType Function, PayloadTypes... Payload)
	{
		return Make(DelegatePrivate::Method(Object, Function), DelegatePrivate::TObjectGuard<ObjectType>(Object),
			MoveTemp(Payload)...);
	}
	template <typename ObjectType, typename CallableType, typename... PayloadTypes>
	static TDelegate CreateWeakLambda(ObjectType* Object, CallableType&& Callable, PayloadTypes... Payload)
	{
		return Make(
			Forward<CallableType>(Callable), DelegatePrivate::TObjectGuard<ObjectType>(Object), MoveTemp(Payload)...);
	}

	template <typename... Types>
	void BindLambda(Types&&... Args)
	{
		*this = CreateLambda(Forward<Types>(Args)...);
	}
	template <typename... Types>
	void BindStatic(Types&&... Args)
	{
		*this = CreateStatic(Forward<Types>(Args)...);
	}
	template <typename... Types>
	void BindRaw(Types&&... Args)
	{
		*this = CreateRaw(Forward<Types>(Args)...);
	}
	template <typename... Types>
	void BindSP(Types&&... Args)
	{
		*this = CreateSP(Forward<Types>(Args)...);
	}
	template <typename... Types>
	void BindSPLambda(Types&&... Args)
	{
		*this = CreateSPLambda(Forward<Types>(Args)...);
	}
	template <typename... Types>
	void BindUObject(Types&&... Args)
	{
		*this = CreateUObject(Forward<Types>(Args)...);
	}
	template <typename... Types>
	void BindWeakLambda(Types&&... Args)
	{
		*this = CreateWeakLambda(Forward<Types>(Args)...);
	}

	bool IsBound() const { return Binding.IsValid() && !Binding->IsStale(); }
	void Unbind() { Binding.Reset(); }
	bool IsBoundToObject(const void* Object) const { return Object && IsBound() && Binding->GetObject() == Object; }

	/** The delegate must be bound. It may be bound anew or destroyed during the call. */
	ResultType Execute(ArgTypes... Args) const
	{
		check(IsBound());
		const TSharedPtr<BindingType> Kept = Binding;
		return Kept->Execute(Forward<ArgTypes>(Args)...);
	}
	/** @return false when nothing is bound. */
	bool ExecuteIfBound(ArgTypes... Args) const requires std::is_void_v<ResultType>
	{
		if (!IsBound())
		{
			return false;
		}
		Execute(Forward<ArgTypes>(Args)...);
		return true;
	}

private:
	using BindingType = DelegatePrivate::IBinding<ResultType, ArgTypes...>;

	template <typename CallableType, typename GuardType, typename... PayloadTypes>
	static TDelegate Make(CallableType&& Callable, GuardType Guard, PayloadTypes... Payload)
	{
		TDelegate Result;
		if constexpr (sizeof...(PayloadTypes) == 0)
		{
			using Type = DelegatePrivate::TBinding<std::decay_t<CallableType>, GuardType, ResultType(ArgTypes...)>;
			Result.Binding = MakeShared<Type>(Forward<CallableType>(Callable), MoveTemp(Guard)).ToSharedPtr();
		}
		else
		{
			Result = Make(DelegatePrivate::WithPayload(
							  std::decay_t<CallableType>(Forward<CallableType>(Callable)), MoveTemp(Payload)...),
				MoveTemp(Guard));
		}
		return Result;
	}

	template <typename T, ESPMode Mode>
	static TSharedPtr<T, Mode> ToShared(const TSharedPtr<T, Mode>& Object)
	{
		return Object;
	}
	template <typename T, ESPMode Mode>
	static TSharedPtr<T, Mode> ToShared(const TSharedRef<T, Mode>& Object)
	{
		return Object;
	}
	template <typename T>
	static auto ToShared(T* Object)
	{
		return StaticCastSharedRef<T>(Object->AsShared()).ToSharedPtr();
	}

	TSharedPtr<BindingType> Binding;
};

template <typename SignatureType>
class TMulticastDelegate;

/**
 * A list of calls. A broadcast runs the last bound first. During a broadcast, handlers may be added (they don't run in
 * it) and removed (they don't run any more), broadcasts may nest, and the delegate itself may be destroyed, which ends
 * the broadcast. One thread at a time.
 */
template <typename... ArgTypes>
class TMulticastDelegate<void(ArgTypes...)>
{
public:
	using FDelegate = TDelegate<void(ArgTypes...)>;

	TMulticastDelegate() = default;
	TMulticastDelegate(const TMulticastDelegate& Other) { *this = Other; }
	TMulticastDelegate& operator=(const TMulticastDelegate& Other)
	{
		if (this != &Other)
		{
			Clear();
			for (const FEntry& Entry : Other.List ? Other.List->Entries : TArray<FEntry>())
			{
				Add(Entry.Delegate);
			}
		}
		return *this;
	}
	~TMulticastDelegate() { Clear(); }

	FDelegateHandle Add(const FDelegate& Delegate)
	{
		if (!List)
		{
			List = MakeShared<FList>();
		}
		const FDelegateHandle Handle(FDelegateHandle::GenerateNewHandle);
		List->Entries.Add(FEntry{Delegate, Handle});
		return Handle;
	}
	template <typename... Types>
	FDelegateHandle AddLambda(Types&&... Args)
	{
		return Add(FDelegate::CreateLambda(Forward<Types>(Args)...));
	}
	template <typename... Types>
	FDelegateHandle AddStatic(Types&&... Args)
	{
		return Add(FDelegate::CreateStatic(Forward<Types>(Args)...));
	}
	template <typename... Types>
	FDelegateHandle AddRaw(Types&&... Args)
	{
		return Add(FDelegate::CreateRaw(Forward<Types>(Args)...));
	}
	template <typename... Types>
	FDelegateHandle AddSP(Types&&... Args)
	{
		return Add(FDelegate::CreateSP(Forward<Types>(Args)...));
	}
	template <typename... Types>
	FDelegateHandle AddSPLambda(Types&&... Args)
	{
		return Add(FDelegate::CreateSPLambda(Forward<Types>(Args)...));
	}
	template <typename... Types>
	FDelegateHandle AddUObject(Types&&... Args)
	{
		return Add(FDelegate::CreateUObject(Forward<Types>(Args)...));
	}
	template <typename... Types>
	FDelegateHandle AddWeakLambda(Types&&... Args)
	{
		return Add(FDelegate::CreateWeakLambda(Forward<Types>(Args)...));
	}

	/** @return false when there is no such binding. */
	bool Remove(FDelegateHandle Handle)
	{
		return Handle.IsValid() && RemoveIf([Handle](const FEntry& Entry) { return Entry.Handle == Handle; }) > 0;
	}
	/** Removes all bindings to the object. @return their number. */
	int32 RemoveAll(const void* Object)
	{
		return RemoveIf([Object](const FEntry& Entry) { return Entry.Delegate.IsBoundToObject(Object); });
	}
	void Clear()
	{
		RemoveIf([](const FEntry&) { return true; });
	}
	bool IsBound() const
	{
		return List && List->Entries.ContainsByPredicate([](const FEntry& Each) { return Each.Delegate.IsBound(); });
	}
	bool IsBoundToObject(const void* Object) const
	{
		return List &&
			List->Entries.ContainsByPredicate(
				[Object](const FEntry& Each) { return Each.Delegate.IsBoundToObject(Object); });
	}

	void Broadcast(ArgTypes... Args) const
	{
		if (!List)
		{
			return;
		}
		const TSharedPtr<FList> Kept = List;
		++Kept->Depth;
		for (int32 Index = Kept->Entries.Num() - 1; Index >= 0; --Index)
		{
			const FDelegate Delegate = Kept->Entries[Index].Delegate;
			if (Delegate.IsBound())
			{
				Delegate.Execute(Args...);
			}
		}
		--Kept->Depth;
		Kept->RemoveUnbound();
	}

private:
	struct FEntry
	{
		FDelegate Delegate;
		FDelegateHandle Handle;
	};
	struct FList
	{
		TArray<FEntry> Entries;
		int32 Depth = 0;

		/** A broadcast walks by index, so entries leave the list only when none runs. */
		void RemoveUnbound()
		{
			if (Depth == 0)
			{
				// The callables end outside the array: their destructors may come back here.
				TArray<FEntry> Gone;
				Entries.RemoveAll(
					[&Gone](FEntry& Entry)
					{
						if (!Entry.Delegate.IsBound())
						{
							Gone.Add(MoveTemp(Entry));
							return true;
						}
						return false;
					});
			}
		}
	};

	template <typename PredicateType>
	int32 RemoveIf(const PredicateType& Predicate)
	{
		if (!List)
		{
			return 0;
		}
		const TSharedPtr<FList> Kept = List;
		TArray<FDelegate> Gone;
		for (FEntry& Entry : Kept->Entries)
		{
			if (Entry.Handle.IsValid() && Predicate(Entry))
			{
				Gone.Add(MoveTemp(Entry.Delegate));
				Entry.Delegate.Unbind();
				Entry.Handle.Reset();
			}
		}
		Kept->RemoveUnbound();
		return Gone.Num();
	}

	TSharedPtr<FList> List;
};

using FSimpleDelegate = TDelegate<void()>;
using FSimpleMulticastDelegate = TMulticastDelegate<void()>;

#define DECLARE_DELEGATE(Name) using Name = TDelegate<void()>;
#define DECLARE_DELEGATE_OneParam(Name, ...) using Name = TDelegate<void(__VA_ARGS__)>;
#define DECLARE_DELEGATE_TwoParams(Name, ...) using Name = TDelegate<void(__VA_ARGS__)>;
#define DECLARE_DELEGATE_ThreeParams(Name, ...) using Name = TDelegate<void(__VA_ARGS__)>;
#define DECLARE_DELEGATE_FourParams(Name, ...) using Name = TDelegate<void(__VA_ARGS__)>;
#define DECLARE_DELEGATE_FiveParams(Name, ...) using Name = TDelegate<void(__VA_ARGS__)>;
#define DECLARE_DELEGATE_RetVal(ResultType, Name) using Name = TDelegate<ResultType()>;
#define DECLARE_DELEGATE_RetVal_OneParam(ResultType, Name, ...) using Name = TDelegate<ResultType(__VA_ARGS__)>;
#define DECLARE_DELEGATE_RetVal_TwoParams(ResultType, Name, ...) using Name = TDelegate<ResultType(__VA_ARGS__)>;
#define DECLARE_DELEGATE_RetVal_ThreeParams(ResultType, Name, ...) using Name = TDelegate<ResultType(__VA_ARGS__)>;
#define DECLARE_MULTICAST_DELEGATE(Name) using Name = TMulticastDelegate<void()>;
#define DECLARE_MULTICAST_DELEGATE_OneParam(Name, ...) using Name = TMulticastDelegate<void(__VA_ARGS__)>;
#define DECLARE_MULTICAST_DELEGATE_TwoParams(Name, ...) using Name = TMulticastDelegate<void(__VA_ARGS__)>;
#define DECLARE_MULTICAST_DELEGATE_ThreeParams(Name, ...) using Name = TMulticastDelegate<void(__VA_ARGS__)>;
#define DECLARE_MULTICAST_DELEGATE_FourParams(Name, ...) using Name = TMulticastDelegate<void(__VA_ARGS__)>;
#define DECLARE_MULTICAST_DELEGATE_FiveParams(Name, ...) using Name = TMulticastDelegate<void(__VA_ARGS__)>;
