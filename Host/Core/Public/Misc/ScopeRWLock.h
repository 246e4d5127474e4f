#pragma once

#include "HAL/CriticalSection.h"

/** Holds a lock as one of its readers to the end of the scope. */
class FReadScopeLock : private FNoncopyable
{
public:
	explicit FReadScopeLock(FRWLock& InLock)
		: Target(InLock)
	{
		Target.ReadLock();
	}
	~FReadScopeLock() { Target.ReadUnlock(); }

private:
	FRWLock& Target;
};

/** Holds a lock as its writer to the end of the scope. */
class FWriteScopeLock : private FNoncopyable
{
public:
	explicit FWriteScopeLock(FRWLock& InLock)
		: Target(InLock)
	{
		Target.WriteLock();
	}
	~FWriteScopeLock() { Target.WriteUnlock(); }

private:
	FRWLock& Target;
};

using FRWScopeReadLock = FReadScopeLock;
using FRWScopeWriteLock = FWriteScopeLock;
