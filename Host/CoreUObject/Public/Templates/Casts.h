#pragma once

#include "UObject/Class.h"
#include "UObject/ObjectPtr.h"
#include "UObject/WeakObjectPtr.h"

/** The object as another class or as an interface it implements; null if it is neither, or null. Game thread. */
template <typename To>
To* Cast(UObject* Object)
{
	if constexpr (requires { typename To::UClassType; })
	{
		return Object ? (To*)Object->GetInterfaceAddress(To::UClassType::StaticClass()) : nullptr;
	}
	else
	{
		return Object && Object->IsA(To::StaticClass()) ? static_cast<To*>(Object) : nullptr;
	}
}
template <typename To>
const To* Cast(const UObject* Object)
{
	return Cast<To>(const_cast<UObject*>(Object));
}
template <typename To, typename From>
To* Cast(const TObjectPtr<From>& Object)
{
	return Cast<To>((UObject*)Object.Get());
}
template <typename To, typename From>
To* Cast(const TWeakObjectPtr<From>& Object)
{
	return Cast<To>((UObject*)Object.Get());
}

/** A cast that must succeed. A null passes. */
template <typename To>
To* CastChecked(UObject* Object)
{
	To* Result = Cast<To>(Object);
	check(Result || !Object);
	return Result;
}
template <typename To>
const To* CastChecked(const UObject* Object)
{
	return CastChecked<To>(const_cast<UObject*>(Object));
}

/** The object if it is of exactly this class. */
template <typename To>
To* ExactCast(UObject* Object)
{
	return Object && Object->GetClass() == To::StaticClass() ? (To*)Object : nullptr;
}
