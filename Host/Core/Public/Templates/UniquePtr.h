#pragma once

#include "Misc/AssertionMacros.h"
#include "Templates/TypeHash.h"
#include "Templates/UnrealTemplate.h"

#include <cstddef>

template <typename T>
struct TDefaultDelete
{
	TDefaultDelete() = default;
	template <typename OtherType>
	TDefaultDelete(const TDefaultDelete<OtherType>&)
	{
	}
	void operator()(T* Object) const { delete Object; }
};

/** Sole ownership of an object, or of none. */
template <typename T, typename DeleterType = TDefaultDelete<T>>
class TUniquePtr : private DeleterType
{
public:
	TUniquePtr() = default;
	TUniquePtr(std::nullptr_t) {}
	explicit TUniquePtr(T* InObject)
		: Object(InObject)
	{
	}
	TUniquePtr(T* InObject, DeleterType InDeleter)
		: DeleterType(MoveTemp(InDeleter))
		, Object(InObject)
	{
	}
	TUniquePtr(TUniquePtr&& Other) noexcept
		: DeleterType(MoveTemp(Other.GetDeleter()))
		, Object(Other.Release())
	{
	}
	template <typename OtherType, typename OtherDeleter>
	requires std::is_convertible_v<OtherType*, T*> TUniquePtr(TUniquePtr<OtherType, OtherDeleter>&& Other)
	noexcept
		: DeleterType(MoveTemp(Other.GetDeleter()))
		, Object(Other.Release())
	{
	}
	~TUniquePtr() { Reset(); }

	TUniquePtr& operator=(TUniquePtr&& Other) noexcept
	{
		if (this != &Other)
		{
			Reset(Other.Release());
			GetDeleter() = MoveTemp(Other.GetDeleter());
		}
		return *this;
	}
	template <typename OtherType, typename OtherDeleter>
	requires std::is_convertible_v<OtherType*, T*> TUniquePtr& operator=(
		TUniquePtr<OtherType, OtherDeleter>&& Other) noexcept
	{
		Reset(Other.Release());
		GetDeleter() = MoveTemp(Other.GetDeleter());
		return *this;
	}
	TUniquePtr& operator=(std::nullptr_t)
	{
		Reset();
		return *this;
	}

	T* Get() const { return Object; }
	T* operator->() const
	{
		check(Object != nullptr);
		return Object;
	}
	T& operator*() const
	{
		check(Object != nullptr);
		return *Object;
	}
	bool IsValid() const { return Object != nullptr; }
	explicit operator bool() const { return Object != nullptr; }
	T* Release() { return Exchange(Object, nullptr); }
	void Reset(T* InObject = nullptr)
	{
		if (T* Old = Exchange(Object, InObject))
		{
			GetDeleter()(Old);
		}
	}
	DeleterType& GetDeleter() { return *this; }

	friend bool operator==(const TUniquePtr& A, const TUniquePtr& B) { return A.Object == B.Object; }
	friend bool operator==(const TUniquePtr& A, std::nullptr_t) { return A.Object == nullptr; }
	friend uint32 GetTypeHash(const TUniquePtr& Pointer) { return GetTypeHash(Pointer.Object); }

private:
	T* Object = nullptr;
};

template <typename T, typename DeleterType>
struct TIsRelocatable<TUniquePtr<T, DeleterType>> : std::is_empty<DeleterType>
{
};

template <typename T, typename... ArgTypes>
TUniquePtr<T> MakeUnique(ArgTypes&&... Args)
{
	return TUniquePtr<T>(new T(Forward<ArgTypes>(Args)...));
}
