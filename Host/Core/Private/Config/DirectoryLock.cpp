#include "DirectoryLock.h"

#include "Containers/StringConv.h"
#include "HAL/FaultInjection.h"

#include <fcntl.h>
#include <sys/file.h>
#include <thread>
#include <unistd.h>

FDirectoryLock::FDirectoryLock(const FString& Directory, double LimitSeconds)
	: Descriptor(
		  FailsByPlan(EHostFault::File) ? -1 : open(TCHAR_TO_UTF8(*Directory), O_RDONLY | O_DIRECTORY | O_CLOEXEC))
{
	const auto End = std::chrono::steady_clock::now() + std::chrono::duration<double>(LimitSeconds);
	while (Descriptor >= 0 && flock(Descriptor, LOCK_EX | LOCK_NB) != 0)
	{
		if (std::chrono::steady_clock::now() >= End)
		{
			close(Descriptor);
			Descriptor = -1;
			return;
		}
		std::this_thread::sleep_for(std::chrono::milliseconds(5));
	}
}

FDirectoryLock::~FDirectoryLock()
{
	if (Descriptor >= 0)
	{
		close(Descriptor);
	}
}
