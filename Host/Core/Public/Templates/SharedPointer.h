#pragma once

#include "Misc/AssertionMacros.h"
#include "Templates/SharedPointerInternals.h"
#include "Templates/TypeHash.h"

#include <cstddef>

template <typename T, ESPMode Mode = ESPMode::ThreadSafe>
class TSharedRef;
template <typename T, ESPMode Mode = ESPMode::ThreadSafe>
class TSharedPtr;
template <typename T, ESPMode Mode = ESPMode::ThreadSafe>
class TWeakPtr;
template <typename T, ESPMode Mode = ESPMode::ThreadSafe>
class TSharedFromThis;

/**
 * Shared ownership of an object, or of none. The count is changed atomically in the mode `ThreadSafe` (the default), so
 * that copies may be made and dropped on any thread; one pointer object itself is not for two threads at a time.
 */
template <typename T, ESPMode Mode>
class TSharedPtr
{
public:
	using ElementType = T;

	TSharedPtr() = default;
	TSharedPtr(std::nullptr_t) {}
	/** Takes ownership of an object made with `new`. */
	template <typename OtherType>
	requires std::is_convertible_v<OtherType*, T*>
	explicit TSharedPtr(OtherType* InObject)
		: Object(InObject)
		, Owner(InObject ? new SharedPointer::TOwnerOfPointer<OtherType>(InObject) : nullptr)
	{
		SharedPointer::EnableSharedFromThis<Mode>(InObject, Owner);
	}
	/** Takes ownership and ends the object's life with the deleter. */
	template <typename OtherType, typename DeleterType>
	requires(std::is_convertible_v<OtherType*, T*>&& std::is_invocable_v<std::decay_t<DeleterType>&, OtherType*>)
		TSharedPtr(OtherType* InObject, DeleterType&& Deleter)
		: Object(InObject)
		, Owner(new SharedPointer::TOwnerWithDeleter<OtherType, std::decay_t<DeleterType>>(
			  InObject, Forward<DeleterType>(Deleter)))
	{
		SharedPointer::EnableSharedFromThis<Mode>(InObject, Owner);
	}
	/** Shares the other's ownership and points to something that lives as long as what it owns. */
	template <typename OtherType>
	TSharedPtr(const TSharedPtr<OtherType, Mode>& Other, T* InObject)
		: Object(InObject)
		, Owner(Other.Owner)
	{
		SharedPointer::AddStrong<Mode>(Owner);
	}
	/** Takes over one strong count that the caller holds. */
	TSharedPtr(T* InObject, SharedPointer::FOwner* InOwner)
		: Object(InObject)
		, Owner(InOwner)
	{
	}
	TSharedPtr(const TSharedPtr& Other)
		: Object(Other.Object)
		, Owner(Other.Owner)
	{
		SharedPointer::AddStrong<Mode>(Owner);
	}
	TSharedPtr(TSharedPtr&& Other) noexcept
		: Object(Exchange(Other.Object, nullptr))
		, Owner(Exchange(Other.Owner, nullptr))
	{
	}
	template <typename OtherType>
	requires std::is_convertible_v<OtherType*, T*> TSharedPtr(const TSharedPtr<OtherType, Mode>& Other)
		: Object(Other.Object)
		, Owner(Other.Owner)
	{
		SharedPointer::AddStrong<Mode>(Owner);
	}
	template <typename OtherType>
	requires std::is_convertible_v<OtherType*, T*> TSharedPtr(TSharedPtr<OtherType, Mode>&& Other)
	noexcept
		: Object(Exchange(Other.Object, nullptr))
		, Owner(Exchange(Other.Owner, nullptr))
	{
	}
	template <typename OtherType>
	requires std::is_convertible_v<OtherType*, T*> TSharedPtr(const TSharedRef<OtherType, Mode>& Other)
		: TSharedPtr(Other.Pointer)
	{
	}
	~TSharedPtr() { SharedPointer::ReleaseStrong<Mode>(Owner); }

	TSharedPtr& operator=(TSharedPtr Other) noexcept
	{
		Swap(Object, Other.Object);
		Swap(Owner, Other.Owner);
		return *this;
	}

	T* Get() const { return Object; }
	T* operator->() const
	{
		check(Object != nullptr);
		return Object;
	}
	std::add_lvalue_reference_t<T> operator*() const
	{
		check(Object != nullptr);
		return *Object;
	}
	bool IsValid() const { return Object != nullptr; }
	explicit operator bool() const { return Object != nullptr; }
	void Reset() { *this = TSharedPtr(); }
	int32 GetSharedReferenceCount() const { return SharedPointer::StrongCount(Owner); }
	bool IsUnique() const { return GetSharedReferenceCount() == 1; }

	TSharedRef<T, Mode> ToSharedRef() const& { return TSharedRef<T, Mode>(*this, SharedPointer::FFromPointer()); }
	TWeakPtr<T, Mode> ToWeakPtr() const { return TWeakPtr<T, Mode>(*this); }

	template <typename OtherType>
	bool operator==(const TSharedPtr<OtherType, Mode>& Other) const
	{
		return Object == Other.Get();
	}
	bool operator==(std::nullptr_t) const { return Object == nullptr; }
	friend uint32 GetTypeHash(const TSharedPtr& Pointer) { return GetTypeHash(Pointer.Object); }

private:
	T* Object = nullptr;
	SharedPointer::FOwner* Owner = nullptr;

	template <typename OtherType, ESPMode OtherMode>
	friend class TSharedPtr;
	template <typename OtherType, ESPMode OtherMode>
	friend class TWeakPtr;
};

/** Shared ownership of an object that is always there. */
template <typename T, ESPMode Mode>
class TSharedRef
{
public:
	using ElementType = T;

	/** @param Object made with `new`, never null. */
	template <typename OtherType>
	requires std::is_convertible_v<OtherType*, T*>
	explicit TSharedRef(OtherType* Object)
		: Pointer(Object)
	{
		check(Object != nullptr);
	}
	template <typename OtherType>
	requires std::is_convertible_v<OtherType*, T*> TSharedRef(const TSharedRef<OtherType, Mode>& Other)
		: Pointer(Other.Pointer)
	{
	}
	TSharedRef(const TSharedRef& Other) = default;
	TSharedRef& operator=(const TSharedRef& Other) = default;
	TSharedRef(const TSharedPtr<T, Mode>& InPointer, SharedPointer::FFromPointer)
		: Pointer(InPointer)
	{
		check(Pointer.IsValid());
	}

	T& Get() const { return *Pointer; }
	T& operator*() const { return *Pointer; }
	T* operator->() const { return Pointer.Get(); }
	TSharedPtr<T, Mode> ToSharedPtr() const { return Pointer; }
	TWeakPtr<T, Mode> ToWeakPtr() const { return TWeakPtr<T, Mode>(Pointer); }
	int32 GetSharedReferenceCount() const { return Pointer.GetSharedReferenceCount(); }
	bool IsUnique() const { return Pointer.IsUnique(); }

	template <typename OtherType>
	bool operator==(const TSharedRef<OtherType, Mode>& Other) const
	{
		return Pointer.Get() == &Other.Get();
	}
	template <typename OtherType>
	bool operator==(const TSharedPtr<OtherType, Mode>& Other) const
	{
		return Pointer.Get() == Other.Get();
	}
	friend uint32 GetTypeHash(const TSharedRef& Ref) { return GetTypeHash(Ref.Pointer); }

private:
	TSharedPtr<T, Mode> Pointer;

	template <typename OtherType, ESPMode OtherMode>
	friend class TSharedPtr;
	template <typename OtherType, ESPMode OtherMode>
	friend class TSharedRef;
};

/** Watches a shared object without keeping it. */
template <typename T, ESPMode Mode>
class TWeakPtr
{
public:
	using ElementType = T;

	TWeakPtr() = default;
	TWeakPtr(std::nullptr_t) {}
	template <typename OtherType>
	requires std::is_convertible_v<OtherType*, T*> TWeakPtr(const TSharedPtr<OtherType, Mode>& Other)
		: Object(Other.Get())
		, Owner(Other.Owner)
	{
		SharedPointer::AddWeak<Mode>(Owner);
	}
	template <typename OtherType>
	requires std::is_convertible_v<OtherType*, T*> TWeakPtr(const TSharedRef<OtherType, Mode>& Other)
		: TWeakPtr(Other.ToSharedPtr())
	{
	}
	TWeakPtr(const TWeakPtr& Other)
		: Object(Other.Object)
		, Owner(Other.Owner)
	{
		SharedPointer::AddWeak<Mode>(Owner);
	}
	template <typename OtherType>
	requires std::is_convertible_v<OtherType*, T*> TWeakPtr(const TWeakPtr<OtherType, Mode>& Other)
		: Object(Other.Object)
		, Owner(Other.Owner)
	{
		SharedPointer::AddWeak<Mode>(Owner);
	}
	TWeakPtr(TWeakPtr&& Other) noexcept
		: Object(Exchange(Other.Object, nullptr))
		, Owner(Exchange(Other.Owner, nullptr))
	{
	}
	~TWeakPtr() { SharedPointer::ReleaseWeak<Mode>(Owner); }
	TWeakPtr& operator=(TWeakPtr Other) noexcept
	{
		Swap(Object, Other.Object);
		Swap(Owner, Other.Owner);
		return *this;
	}

	/** The object, kept alive by the result, or null when it is gone. */
	TSharedPtr<T, Mode> Pin() const
	{
		return SharedPointer::TryAddStrong<Mode>(Owner) ? TSharedPtr<T, Mode>(Object, Owner) : TSharedPtr<T, Mode>();
	}
	bool IsValid() const { return SharedPointer::StrongCount(Owner) > 0; }
	void Reset() { *this = TWeakPtr(); }
	/** Whether this watches that object, alive or not. */
	bool HasSameObject(const void* Other) const { return IsValid() && (const void*)Object == Other; }

	friend bool operator==(const TWeakPtr& A, const TWeakPtr& B) { return A.Pin().Get() == B.Pin().Get(); }
	friend bool operator==(const TWeakPtr& A, std::nullptr_t) { return !A.IsValid(); }
	friend uint32 GetTypeHash(const TWeakPtr& Pointer) { return GetTypeHash(Pointer.Object); }

private:
	T* Object = nullptr;
	SharedPointer::FOwner* Owner = nullptr;

	template <typename OtherType, ESPMode OtherMode>
	friend class TWeakPtr;
};

/** Base of classes whose objects can hand out shared pointers to themselves once a shared pointer owns them. */
template <typename T, ESPMode Mode>
class TSharedFromThis
{
public:
	TSharedRef<T, Mode> AsShared() { return Self.Pin().ToSharedRef(); }
	TSharedRef<const T, Mode> AsShared() const { return TSharedPtr<const T, Mode>(Self.Pin()).ToSharedRef(); }
	TWeakPtr<T, Mode> AsWeak() { return Self; }
	TWeakPtr<const T, Mode> AsWeak() const { return Self; }
	bool DoesSharedInstanceExist() const { return Self.IsValid(); }

protected:
	TSharedFromThis() = default;
	TSharedFromThis(const TSharedFromThis&) {}
	TSharedFromThis& operator=(const TSharedFromThis&) { return *this; }
	~TSharedFromThis() = default;

	template <typename OtherType>
	static TSharedRef<OtherType, Mode> SharedThis(OtherType* This)
	{
		return StaticCastSharedRef<OtherType>(This->AsShared());
	}

private:
	/** Set once, by the first shared pointer that owns the object. */
	TWeakPtr<T, Mode> Self;

	template <ESPMode OtherMode, typename ObjectType>
	friend void SharedPointer::EnableSharedFromThis(ObjectType* Object, SharedPointer::FOwner* Owner);
	template <typename ObjectType, typename FromType, ESPMode OtherMode>
	friend void SharedPointer::SetSelf(ObjectType*, TSharedFromThis<FromType, OtherMode>*, SharedPointer::FOwner*);
};

template <ESPMode Mode, typename ObjectType>
void SharedPointer::EnableSharedFromThis(ObjectType* Object, FOwner* Owner)
{
	if constexpr (requires { SetSelf(Object, Object, Owner); })
	{
		if (Object)
		{
			SetSelf(Object, Object, Owner);
		}
	}
}

template <typename ObjectType, typename FromType, ESPMode Mode>
void SharedPointer::SetSelf(ObjectType* Object, TSharedFromThis<FromType, Mode>* From, FOwner* Owner)
{
	if (!From->Self.IsValid())
	{
		AddStrong<Mode>(Owner);
		From->Self = TSharedPtr<FromType, Mode>(const_cast<std::remove_const_t<ObjectType>*>(Object), Owner);
	}
}

/** Makes an object and its count in one allocation. */
template <typename T, ESPMode Mode = ESPMode::ThreadSafe, typename... ArgTypes>
TSharedRef<T, Mode> MakeShared(ArgTypes&&... Args)
{
	auto* Owner = new SharedPointer::TOwnerInPlace<T>(Forward<ArgTypes>(Args)...);
	const TSharedPtr<T, Mode> Pointer(Owner->Get(), Owner);
	SharedPointer::EnableSharedFromThis<Mode>(Owner->Get(), (SharedPointer::FOwner*)Owner);
	return Pointer.ToSharedRef();
}

template <typename T>
TSharedPtr<T> MakeShareable(T* Object)
{
	return TSharedPtr<T>(Object);
}
template <typename T, typename DeleterType>
TSharedPtr<T> MakeShareable(T* Object, DeleterType&& Deleter)
{
	return TSharedPtr<T>(Object, Forward<DeleterType>(Deleter));
}

template <typename To, typename From, ESPMode Mode>
TSharedPtr<To, Mode> StaticCastSharedPtr(const TSharedPtr<From, Mode>& Pointer)
{
	return TSharedPtr<To, Mode>(Pointer, static_cast<To*>(Pointer.Get()));
}
template <typename To, typename From, ESPMode Mode>
TSharedRef<To, Mode> StaticCastSharedRef(const TSharedRef<From, Mode>& Ref)
{
	return StaticCastSharedPtr<To>(Ref.ToSharedPtr()).ToSharedRef();
}
template <typename To, typename From, ESPMode Mode>
TWeakPtr<To, Mode> StaticCastWeakPtr(const TWeakPtr<From, Mode>& Pointer)
{
	return StaticCastSharedPtr<To>(Pointer.Pin());
}
template <typename To, typename From, ESPMode Mode>
TSharedPtr<To, Mode> ConstCastSharedPtr(const TSharedPtr<From, Mode>& Pointer)
{
	return TSharedPtr<To, Mode>(Pointer, const_cast<To*>(Pointer.Get()));
}

template <typename T, ESPMode Mode>
struct TIsRelocatable<TSharedPtr<T, Mode>> : std::true_type
{
};
template <typename T, ESPMode Mode>
struct TIsRelocatable<TSharedRef<T, Mode>> : std::true_type
{
};
template <typename T, ESPMode Mode>
struct TIsRelocatable<TWeakPtr<T, Mode>> : std::true_type
{
};
