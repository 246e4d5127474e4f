#include "ChildReaper.h"

#include <cerrno>
#include <sys/wait.h>

namespace
{
/** @return false while it runs. */
bool Reap(pid_t Pid)
{
	pid_t Result = 0;
	do
	{
		Result = ::waitpid(Pid, nullptr, WNOHANG);
	} while (Result < 0 && errno == EINTR);
	return Result != 0;
}
} // namespace

FChildReaper& FChildReaper::Get()
{
	// Never destroyed: handles of static life give their children up after the end of main.
	static FChildReaper& Reaper = *new FChildReaper;
	return Reaper;
}

void FChildReaper::Adopt(pid_t Pid)
{
	{
		const std::lock_guard Guard(Mutex);
		Adopted.Add(Pid);
	}
	Sweep();
}

void FChildReaper::Sweep()
{
	const std::lock_guard Guard(Mutex);
	Adopted.RemoveAll(Reap);
}
