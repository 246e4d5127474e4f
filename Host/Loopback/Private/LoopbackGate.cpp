#include "Loopback/LoopbackGate.h"

#include <cerrno>
#include <sys/eventfd.h>
#include <system_error>
#include <unistd.h>

std::shared_ptr<FLoopbackGate> FLoopbackGate::Create()
{
	const int Fd = ::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK | EFD_SEMAPHORE);
	if (Fd < 0)
	{
		throw std::system_error(errno, std::generic_category(), "eventfd");
	}
	return std::shared_ptr<FLoopbackGate>(new FLoopbackGate(Fd));
}

FLoopbackGate::~FLoopbackGate()
{
	::close(Fd);
}

void FLoopbackGate::Release(std::uint32_t Permits)
{
	const std::uint64_t Count = Permits;
	if (::write(Fd, &Count, sizeof(Count)) != sizeof(Count))
	{
		throw std::system_error(errno, std::generic_category(), "releasing a gate");
	}
}

bool FLoopbackGate::TryTake()
{
	std::uint64_t One = 0;
	return ::read(Fd, &One, sizeof(One)) == sizeof(One);
}
