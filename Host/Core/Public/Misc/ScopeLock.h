#pragma once

#include "HAL/CriticalSection.h"

/** Holds a lock to the end of the scope, or until `Unlock`. */
class FScopeLock : private FNoncopyable
{
public:
	/** @param InLock outlives the guard; null locks nothing. */
	explicit FScopeLock(FCriticalSection* InLock)
		: Target(InLock)
	{
		if (Target)
		{
			Target->Lock();
		}
	}
	~FScopeLock() { Unlock(); }
	void Unlock()
	{
		if (Target)
		{
			Exchange(Target, nullptr)->Unlock();
		}
	}

private:
	FCriticalSection* Target;
};

/** Gives up a lock that the thread holds, to the end of the scope. */
class FScopeUnlock : private FNoncopyable
{
public:
	explicit FScopeUnlock(FCriticalSection* InLock)
		: Target(InLock)
	{
		if (Target)
		{
			Target->Unlock();
		}
	}
	~FScopeUnlock()
	{
		if (Target)
		{
			Target->Lock();
		}
	}

private:
	FCriticalSection* Target;
};
