#pragma once

#include "UObject/ObjectMacros.h"
#include "UObject/WeakObjectPtr.h"

/** One object's reflected function, bound by name, so that it can be stored as text and called from scripts. Game
 * thread. */
class FScriptDelegate
{
public:
	FScriptDelegate() = default;

	void BindUFunction(UObject* InObject, FName InFunctionName);
	void Unbind() { *this = FScriptDelegate(); }
	void Clear() { Unbind(); }
	/** Whether the object lives and has the function. */
	bool IsBound() const;
	bool IsBoundToObject(const void* Other) const { return (const void*)GetUObject() == Other; }
	UObject* GetUObject() const { return Object.Get(); }
	FName GetFunctionName() const { return FunctionName; }

	/** Calls with a frame of the function. @return false, with nothing called, if it isn't bound. */
	bool ProcessDelegate(void* Parms) const;

	/** `/Path.Object.Function`, or `None`. */
	FString ToString() const;
	friend bool operator==(const FScriptDelegate&, const FScriptDelegate&) = default;

private:
	FWeakObjectPtr Object;
	FName FunctionName;
};

/** Any number of bindings, called in the order of binding. Game thread. */
class FMulticastScriptDelegate
{
public:
	void Add(const FScriptDelegate& Delegate) { Bindings.Add(Delegate); }
	void AddUnique(const FScriptDelegate& Delegate) { Bindings.AddUnique(Delegate); }
	void Remove(const FScriptDelegate& Delegate) { Bindings.Remove(Delegate); }
	void Remove(const UObject* Object, FName FunctionName);
	void RemoveAll(const UObject* Object);
	void Clear() { Bindings.Reset(); }
	bool IsBound() const;
	bool Contains(const UObject* Object, FName FunctionName) const;
	const TArray<FScriptDelegate>& GetBindings() const { return Bindings; }

	/** Calls every binding whose object lives. Bindings made or removed meanwhile count from the next call on. */
	void ProcessMulticastDelegate(void* Parms) const;

	FString ToString() const;
	friend bool operator==(const FMulticastScriptDelegate&, const FMulticastScriptDelegate&) = default;

private:
	TArray<FScriptDelegate> Bindings;
};

namespace Reflection
{
/** The frame of a delegate's signature: values side by side, each at the next offset that suits it, the result last. */
template <typename... Types>
class TDelegateFrame
{
public:
	template <typename... ArgTypes>
	explicit TDelegateFrame(ArgTypes&&... Args)
	{
		int32 Offset = 0;
		(Place<Types>(Offset, Forward<ArgTypes>(Args)), ...);
	}
	~TDelegateFrame()
	{
		int32 Offset = 0;
		(Take<Types>(Offset)->~Types(), ...);
	}
	TDelegateFrame(const TDelegateFrame&) = delete;
	TDelegateFrame& operator=(const TDelegateFrame&) = delete;

	void* GetMemory() { return Memory; }
	/** The value of the last type. */
	auto& Last()
	{
		int32 Offset = 0;
		void* Address = nullptr;
		((Address = Take<Types>(Offset)), ...);
		return *(std::tuple_element_t<sizeof...(Types) - 1, std::tuple<Types...>>*)Address;
	}

private:
	static constexpr SIZE_T Bytes = ((sizeof(Types) + alignof(Types)) + ... + 1);

	template <typename T>
	T* Take(int32& Offset)
	{
		const int32 Start = (Offset + (int32)alignof(T) - 1) & ~((int32)alignof(T) - 1);
		Offset = Start + (int32)sizeof(T);
		return (T*)(Memory + Start);
	}
	template <typename T, typename ArgType>
	void Place(int32& Offset, ArgType&& Arg)
	{
		::new ((void*)Take<T>(Offset)) T(Forward<ArgType>(Arg));
	}

	alignas(16) uint8 Memory[Bytes];
};
} // namespace Reflection

/** The class behind DECLARE_DYNAMIC_DELEGATE. */
template <typename ReturnType, typename... ParamTypes>
class TBaseDynamicDelegate : public FScriptDelegate
{
public:
	/** Aborts when unbound and a result is due; does nothing when unbound and none is. */
	ReturnType Execute(ParamTypes... Params) const
	{
		if constexpr (std::is_void_v<ReturnType>)
		{
			Reflection::TDelegateFrame<std::decay_t<ParamTypes>...> Frame(Params...);
			ProcessDelegate(Frame.GetMemory());
		}
		else
		{
			Reflection::TDelegateFrame<std::decay_t<ParamTypes>..., ReturnType> Frame(Params..., ReturnType());
			const bool bCalled = ProcessDelegate(Frame.GetMemory());
			check(bCalled);
			return Frame.Last();
		}
	}
	/** @return whether something was called. */
	bool ExecuteIfBound(ParamTypes... Params) const requires std::is_void_v<ReturnType>
	{
		Reflection::TDelegateFrame<std::decay_t<ParamTypes>...> Frame(Params...);
		return ProcessDelegate(Frame.GetMemory());
	}
};

/** The class behind DECLARE_DYNAMIC_MULTICAST_DELEGATE. */
template <typename... ParamTypes>
class TBaseDynamicMulticastDelegate : public FMulticastScriptDelegate
{
public:
	void Broadcast(ParamTypes... Params) const
	{
		Reflection::TDelegateFrame<std::decay_t<ParamTypes>...> Frame(Params...);
		ProcessMulticastDelegate(Frame.GetMemory());
	}
	/** Binds a member function of a reflected class; the name is `&UFoo::Bar`, from which the macro takes `Bar`. */
	void __Internal_AddDynamic(UObject* Object, FName FunctionName)
	{
		FScriptDelegate Delegate;
		Delegate.BindUFunction(Object, FunctionName);
		Add(Delegate);
	}
	void __Internal_AddUniqueDynamic(UObject* Object, FName FunctionName)
	{
		FScriptDelegate Delegate;
		Delegate.BindUFunction(Object, FunctionName);
		AddUnique(Delegate);
	}
	void __Internal_RemoveDynamic(UObject* Object, FName FunctionName) { Remove(Object, FunctionName); }
};

namespace Reflection
{
/** `Bar` of `&UFoo::Bar`. */
FName FunctionNameOf(const TCHAR* MemberPointerText);
} // namespace Reflection

#define BindDynamic(Object, Function) BindUFunction(Object, Reflection::FunctionNameOf(TEXT(#Function)))
#define AddDynamic(Object, Function) __Internal_AddDynamic(Object, Reflection::FunctionNameOf(TEXT(#Function)))
#define AddUniqueDynamic(Object, Function) \
	__Internal_AddUniqueDynamic(Object, Reflection::FunctionNameOf(TEXT(#Function)))
#define RemoveDynamic(Object, Function) __Internal_RemoveDynamic(Object, Reflection::FunctionNameOf(TEXT(#Function)))

#define DECLARE_DYNAMIC_DELEGATE(Name)             \
	class Name : public TBaseDynamicDelegate<void> \
	{                                              \
	}
#define DECLARE_DYNAMIC_DELEGATE_OneParam(Name, T1, N1) \
	class Name : public TBaseDynamicDelegate<void, T1>  \
	{                                                   \
	}
#define DECLARE_DYNAMIC_DELEGATE_TwoParams(Name, T1, N1, T2, N2) \
	class Name : public TBaseDynamicDelegate<void, T1, T2>       \
	{                                                            \
	}
#define DECLARE_DYNAMIC_DELEGATE_ThreeParams(Name, T1, N1, T2, N2, T3, N3) \
	class Name : public TBaseDynamicDelegate<void, T1, T2, T3>             \
	{                                                                      \
	}
#define DECLARE_DYNAMIC_DELEGATE_RetVal(R, Name) \
	class Name : public TBaseDynamicDelegate<R>  \
	{                                            \
	}
#define DECLARE_DYNAMIC_DELEGATE_RetVal_OneParam(R, Name, T1, N1) \
	class Name : public TBaseDynamicDelegate<R, T1>               \
	{                                                             \
	}
#define DECLARE_DYNAMIC_DELEGATE_RetVal_TwoParams(R, Name, T1, N1, T2, N2) \
	class Name : public TBaseDynamicDelegate<R, T1, T2>                    \
	{                                                                      \
	}
#define DECLARE_DYNAMIC_MULTICAST_DELEGATE(Name)        \
	class Name : public TBaseDynamicMulticastDelegate<> \
	{                                                   \
	}
#define DECLARE_DYNAMIC_MULTICAST_DELEGATE_OneParam(Name, T1, N1) \
	class Name : public TBaseDynamicMulticastDelegate<T1>         \
	{                                                             \
	}
#define DECLARE_DYNAMIC_MULTICAST_DELEGATE_TwoParams(Name, T1, N1, T2, N2) \
	class Name : public TBaseDynamicMulticastDelegate<T1, T2>              \
	{                                                                      \
	}
#define DECLARE_DYNAMIC_MULTICAST_DELEGATE_ThreeParams(Name, T1, N1, T2, N2, T3, N3) \
	class Name : public TBaseDynamicMulticastDelegate<T1, T2, T3>                    \
	{                                                                                \
	}
#define DECLARE_DYNAMIC_MULTICAST_DELEGATE_FourParams(Name, T1, N1, T2, N2, T3, N3, T4, N4) \
	class Name : public TBaseDynamicMulticastDelegate<T1, T2, T3, T4>                       \
	{                                                                                       \
	}
