#pragma once

#include "UObject/SoftObjectPath.h"
#include "UObject/WeakObjectPtr.h"

/** Refers to an object by its path and finds it when asked. It doesn't keep the object alive. Game thread. */
struct FSoftObjectPtr
{
	FSoftObjectPtr() = default;
	FSoftObjectPtr(std::nullptr_t) {}
	FSoftObjectPtr(const FSoftObjectPath& InPath)
		: Path(InPath)
	{
	}
	FSoftObjectPtr(const UObject* Object)
		: Path(Object)
		, Cached(Object)
	{
	}

	/** The object if it is in memory, else null. */
	UObject* Get() const;
	UObject* LoadSynchronous() const;
	bool IsValid() const { return Get() != nullptr; }
	bool IsNull() const { return Path.IsNull(); }
	/** Whether the path is set but its object isn't in memory. */
	bool IsPending() const { return !Path.IsNull() && !Get(); }
	void Reset() { *this = FSoftObjectPtr(); }

	const FSoftObjectPath& ToSoftObjectPath() const { return Path; }
	FString ToString() const { return Path.ToString(); }
	FString GetLongPackageName() const { return Path.GetLongPackageName(); }
	FString GetAssetName() const { return Path.GetAssetName(); }

	friend bool operator==(const FSoftObjectPtr& A, const FSoftObjectPtr& B) { return A.Path == B.Path; }
	friend uint32 GetTypeHash(const FSoftObjectPtr& Pointer) { return GetTypeHash(Pointer.Path); }

private:
	FSoftObjectPath Path;
	mutable FWeakObjectPtr Cached;
};

template <typename T>
struct TSoftObjectPtr : FSoftObjectPtr
{
	TSoftObjectPtr() = default;
	TSoftObjectPtr(std::nullptr_t) {}
	TSoftObjectPtr(T* Object)
		: FSoftObjectPtr((const UObject*)Object)
	{
	}
	explicit TSoftObjectPtr(const FSoftObjectPath& InPath)
		: FSoftObjectPtr(InPath)
	{
	}
	T* Get() const { return (T*)FSoftObjectPtr::Get(); }
	T* LoadSynchronous() const { return (T*)FSoftObjectPtr::LoadSynchronous(); }
	T* operator->() const { return Get(); }
	explicit operator bool() const { return IsValid(); }
};

template <typename T>
struct TSoftClassPtr : FSoftObjectPtr
{
	TSoftClassPtr() = default;
	TSoftClassPtr(std::nullptr_t) {}
	TSoftClassPtr(const UClass* Class)
		: FSoftObjectPtr((const UObject*)Class)
	{
	}
	explicit TSoftClassPtr(const FSoftObjectPath& InPath)
		: FSoftObjectPtr(InPath)
	{
	}
	UClass* Get() const { return (UClass*)FSoftObjectPtr::Get(); }
	UClass* LoadSynchronous() const { return (UClass*)FSoftObjectPtr::LoadSynchronous(); }
	explicit operator bool() const { return IsValid(); }
};
