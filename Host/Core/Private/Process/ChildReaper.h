#pragma once

#include "Containers/Array.h"

#include <mutex>
#include <sys/types.h>

/** Takes the entries of ended children, whose handles are given up, off the system. Any thread. */
class FChildReaper : private FNoncopyable
{
public:
	static FChildReaper& Get();

	/** Reaps the child as soon as it has ended: now, or in a later call. */
	void Adopt(pid_t Pid);
	/** Reaps the adopted children that have ended since. */
	void Sweep();

private:
	std::mutex Mutex;
	TArray<pid_t> Adopted;
};
