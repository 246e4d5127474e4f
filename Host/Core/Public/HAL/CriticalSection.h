#pragma once

#include "Templates/UnrealTemplate.h"

#include <mutex>
#include <shared_mutex>

/** A lock that one thread holds at a time, and may take again while it holds it. */
class FCriticalSection : private FNoncopyable
{
public:
	void Lock() { Mutex.lock(); }
	bool TryLock() { return Mutex.try_lock(); }
	void Unlock() { Mutex.unlock(); }

private:
	std::recursive_mutex Mutex;
};

/** A lock that many readers or one writer hold. Neither side may take it again while it holds it. */
class FRWLock : private FNoncopyable
{
public:
	void ReadLock() { Mutex.lock_shared(); }
	void ReadUnlock() { Mutex.unlock_shared(); }
	bool TryReadLock() { return Mutex.try_lock_shared(); }
	void WriteLock() { Mutex.lock(); }
	void WriteUnlock() { Mutex.unlock(); }
	bool TryWriteLock() { return Mutex.try_lock(); }

private:
	std::shared_mutex Mutex;
};
