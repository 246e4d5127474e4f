#pragma once

#include "Containers/UnrealString.h"

/**
 * Keeps other processes that take the same lock out of a directory while the object lives. The lock is the system's
 * advisory lock on the directory itself: it leaves no file behind and ends with its process.
 */
class FDirectoryLock
{
public:
	/** @param LimitSeconds how long to wait for another holder, by the system's clock. */
	FDirectoryLock(const FString& Directory, double LimitSeconds);
	~FDirectoryLock();
	FDirectoryLock(const FDirectoryLock&) = delete;
	FDirectoryLock& operator=(const FDirectoryLock&) = delete;

	bool IsHeld() const { return Descriptor >= 0; }

private:
	int32 Descriptor;
};
