#pragma once

#include "Templates/UnrealTemplate.h"

#include <atomic>
#include <new>

/** Whether reference counts are changed atomically. */
enum class ESPMode : uint8
{
	NotThreadSafe = 0,
	ThreadSafe = 1
};

template <typename T, ESPMode Mode>
class TSharedFromThis;

namespace SharedPointer
{
/** Marks the constructor of a reference from a pointer that isn't null. */
struct FFromPointer
{
};

/**
 * The counts of one shared object. All strong pointers together hold one weak count, so the owner outlives the object
 * as long as somebody watches it.
 */
class FOwner
{
public:
	std::atomic<int32> Strong{1};
	std::atomic<int32> Weak{1};

	virtual ~FOwner() = default;
	virtual void DestroyObject() = 0;
	/** Ends the owner itself when nobody watches any more. */
	virtual void DestroyOwner() { delete this; }
};

template <typename T>
class TOwnerOfPointer final : public FOwner
{
public:
	explicit TOwnerOfPointer(T* InObject)
		: Object(InObject)
	{
	}
	void DestroyObject() override { delete Object; }

private:
	T* Object;
};

template <typename T, typename DeleterType>
class TOwnerWithDeleter final : public FOwner
{
public:
	template <typename ArgType>
	TOwnerWithDeleter(T* InObject, ArgType&& InDeleter)
		: Object(InObject)
		, Deleter(Forward<ArgType>(InDeleter))
	{
	}
	void DestroyObject() override { Deleter(Object); }

private:
	T* Object;
	DeleterType Deleter;
};

template <typename T>
class TOwnerInPlace final : public FOwner
{
public:
	template <typename... ArgTypes>
	explicit TOwnerInPlace(ArgTypes&&... Args)
	{
		new ((void*)Memory) T(Forward<ArgTypes>(Args)...);
	}
	T* Get() { return (T*)Memory; }
	void DestroyObject() override { Get()->~T(); }

private:
	alignas(T) uint8 Memory[sizeof(T)];
};

/** Adds to a count. @return the value before. */
template <ESPMode Mode>
int32 Change(std::atomic<int32>& Count, int32 Delta, std::memory_order Order)
{
	if constexpr (Mode == ESPMode::ThreadSafe)
	{
		return Count.fetch_add(Delta, Order);
	}
	else
	{
		const int32 Old = Count.load(std::memory_order_relaxed);
		Count.store(Old + Delta, std::memory_order_relaxed);
		return Old;
	}
}

inline int32 StrongCount(const FOwner* Owner)
{
	return Owner ? Owner->Strong.load(std::memory_order_relaxed) : 0;
}

template <ESPMode Mode>
void AddStrong(FOwner* Owner)
{
	if (Owner)
	{
		Change<Mode>(Owner->Strong, 1, std::memory_order_relaxed);
	}
}

template <ESPMode Mode>
bool TryAddStrong(FOwner* Owner)
{
	int32 Count = StrongCount(Owner);
	while (Count > 0)
	{
		if (Owner->Strong.compare_exchange_weak(Count, Count + 1, std::memory_order_acq_rel, std::memory_order_relaxed))
		{
			return true;
		}
	}
	return false;
}

template <ESPMode Mode>
void AddWeak(FOwner* Owner)
{
	if (Owner)
	{
		Change<Mode>(Owner->Weak, 1, std::memory_order_relaxed);
	}
}

template <ESPMode Mode>
void ReleaseWeak(FOwner* Owner)
{
	// Whoever holds the only count left needs no atomic change: nobody else can reach the owner to take another.
	if (Owner &&
		(Owner->Weak.load(std::memory_order_acquire) == 1 ||
			Change<Mode>(Owner->Weak, -1, std::memory_order_acq_rel) == 1))
	{
		Owner->DestroyOwner();
	}
}

template <ESPMode Mode>
void ReleaseStrong(FOwner* Owner)
{
	if (Owner && Change<Mode>(Owner->Strong, -1, std::memory_order_acq_rel) == 1)
	{
		Owner->DestroyObject();
		ReleaseWeak<Mode>(Owner);
	}
}

/** Gives an object that can hand out pointers to itself its owner; does nothing for others. */
template <ESPMode Mode, typename ObjectType>
void EnableSharedFromThis(ObjectType* Object, FOwner* Owner);

template <typename ObjectType, typename FromType, ESPMode Mode>
void SetSelf(ObjectType* Object, TSharedFromThis<FromType, Mode>* From, FOwner* Owner);
} // namespace SharedPointer
