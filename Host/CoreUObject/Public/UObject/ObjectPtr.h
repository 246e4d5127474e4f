#pragma once

#include "Templates/TypeHash.h"

#include <cstddef>
#include <type_traits>

class UObject;

/** A member's reference to an object; it lies in memory as a plain pointer does. It keeps the object alive where it is
 * reflected. */
template <typename T>
struct TObjectPtr
{
	using ElementType = T;

	TObjectPtr() = default;
	TObjectPtr(std::nullptr_t) {}
	TObjectPtr(T* Object)
		: Pointer(Object)
	{
	}
	template <typename OtherType>
	requires std::is_convertible_v<OtherType*, T*> TObjectPtr(const TObjectPtr<OtherType>& Other)
		: Pointer(Other.Get())
	{
	}
	TObjectPtr& operator=(std::nullptr_t)
	{
		Pointer = nullptr;
		return *this;
	}

	T* Get() const { return Pointer; }
	operator T*() const { return Pointer; }
	T* operator->() const { return Pointer; }
	T& operator*() const { return *Pointer; }
	bool IsNull() const { return Pointer == nullptr; }
	explicit operator bool() const { return Pointer != nullptr; }

	friend uint32 GetTypeHash(const TObjectPtr& Object) { return GetTypeHash((const void*)Object.Pointer); }

private:
	T* Pointer = nullptr;
};

template <typename T>
T* ToRawPtr(const TObjectPtr<T>& Object)
{
	return Object.Get();
}
template <typename T>
TObjectPtr<T> ObjectPtrWrap(T* Object)
{
	return TObjectPtr<T>(Object);
}
