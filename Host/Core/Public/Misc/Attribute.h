#pragma once

#include "Delegates/Delegate.h"
#include "Misc/Optional.h"
#include "Templates/Function.h"

/** A value that is given once or asked for at each use. */
template <typename T>
class TAttribute
{
public:
	using FGetter = TDelegate<T()>;

	TAttribute() = default;
	TAttribute(const T& InValue)
		: Value(InValue)
		, bSet(true)
	{
	}
	template <typename OtherType>
	requires(std::is_convertible_v<const OtherType&, T> && !std::is_same_v<OtherType, T>)
		TAttribute(const OtherType& InValue)
		: Value((T)InValue)
		, bSet(true)
	{
	}
	TAttribute(const FGetter& InGetter)
		: Getter(InGetter)
		, bSet(true)
	{
	}
	template <typename ObjectType, typename MethodType>
	TAttribute(ObjectType* Object, MethodType Function)
		: Getter(FGetter::CreateSP(Object, Function))
		, bSet(true)
	{
	}
	static TAttribute Create(const FGetter& Getter) { return TAttribute(Getter); }
	static TAttribute CreateLambda(TFunction<T()> Function)
	{
		return TAttribute(FGetter::CreateLambda(MoveTemp(Function)));
	}

	/** The value now; a getter whose object is gone leaves the last value. */
	const T& Get() const
	{
		if (Getter.IsBound())
		{
			Value = Getter.Execute();
		}
		return Value;
	}
	T Get(const T& Default) const { return bSet ? Get() : Default; }
	void Set(const T& InValue)
	{
		Getter.Unbind();
		Value = InValue;
		bSet = true;
	}
	void Bind(const FGetter& InGetter)
	{
		Getter = InGetter;
		bSet = true;
	}
	bool IsSet() const { return bSet; }
	bool IsBound() const { return Getter.IsBound(); }

private:
	mutable T Value{};
	FGetter Getter;
	bool bSet = false;
};
