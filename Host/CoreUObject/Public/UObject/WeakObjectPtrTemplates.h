#pragma once

#include "CoreMinimal.h"

class UObject;

/**
 * Refers to an object without keeping it alive. It reads null once the object is marked as garbage or freed, also when
 * another object has taken its place in the object table. Game thread.
 */
struct FWeakObjectPtr
{
	FWeakObjectPtr() = default;
	FWeakObjectPtr(std::nullptr_t) {}
	FWeakObjectPtr(const UObject* Object) { *this = Object; }
	FWeakObjectPtr& operator=(const UObject* Object);

	void Reset() { *this = FWeakObjectPtr(); }
	/** @param bEvenIfGarbage give objects too that are marked but not yet freed. */
	UObject* Get(bool bEvenIfGarbage = false) const;
	bool IsValid(bool bEvenIfGarbage = false) const { return Get(bEvenIfGarbage) != nullptr; }
	/** Whether it referred to an object that is no more. */
	bool IsStale() const { return ObjectIndex != INDEX_NONE && !Get(); }
	/** Whether it was never set, or reset. */
	bool IsExplicitlyNull() const { return ObjectIndex == INDEX_NONE; }

	/** Two that read null are equal. */
	friend bool operator==(const FWeakObjectPtr& A, const FWeakObjectPtr& B);
	friend uint32 GetTypeHash(const FWeakObjectPtr& Pointer)
	{
		return HashCombine((uint32)Pointer.ObjectIndex, (uint32)Pointer.ObjectSerialNumber);
	}

private:
	int32 ObjectIndex = INDEX_NONE;
	int32 ObjectSerialNumber = 0;
};

/** A weak pointer to objects of one class. */
template <typename T>
struct TWeakObjectPtr : FWeakObjectPtr
{
	using ElementType = T;

	TWeakObjectPtr() = default;
	TWeakObjectPtr(std::nullptr_t) {}
	TWeakObjectPtr(T* Object)
		: FWeakObjectPtr((const UObject*)Object)
	{
	}
	template <typename OtherType>
	requires std::is_convertible_v<OtherType*, T*> TWeakObjectPtr(const TWeakObjectPtr<OtherType>& Other)
		: FWeakObjectPtr(Other)
	{
	}

	T* Get(bool bEvenIfGarbage = false) const { return (T*)FWeakObjectPtr::Get(bEvenIfGarbage); }
	T* Pin() const { return Get(); }
	T* operator->() const { return Get(); }
	T& operator*() const { return *Get(); }
	explicit operator bool() const { return IsValid(); }
	friend bool operator==(const TWeakObjectPtr& A, const T* B) { return A.Get() == B; }
};

template <typename T>
TWeakObjectPtr<T> MakeWeakObjectPtr(T* Object)
{
	return TWeakObjectPtr<T>(Object);
}
