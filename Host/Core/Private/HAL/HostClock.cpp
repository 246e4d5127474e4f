#include "HAL/HostClock.h"

#include <atomic>
#include <cerrno>
#include <ctime>

namespace
{
/** Ticks from the year 1 to the Unix epoch. */
constexpr int64 UnixEpochTicks = 621355968000000000ll;

class FSystemClock final : public IHostClock
{
public:
	double GetSeconds() override
	{
		timespec Now;
		clock_gettime(CLOCK_MONOTONIC, &Now);
		return (double)Now.tv_sec + (double)Now.tv_nsec * 1e-9;
	}

	int64 GetUtcTicks() override
	{
		timespec Now;
		clock_gettime(CLOCK_REALTIME, &Now);
		return UnixEpochTicks + (int64)Now.tv_sec * 10000000 + Now.tv_nsec / 100;
	}

	void Sleep(double Seconds) override
	{
		timespec Rest;
		Rest.tv_sec = (time_t)Seconds;
		Rest.tv_nsec = (long)((Seconds - (double)Rest.tv_sec) * 1e9);
		while (nanosleep(&Rest, &Rest) != 0 && errno == EINTR)
		{
		}
	}
};

FSystemClock SystemClock;
std::atomic<IHostClock*> CurrentClock{&SystemClock};
} // namespace

IHostClock& FHostClock::Get()
{
	return *CurrentClock.load(std::memory_order_acquire);
}

IHostClock& FHostClock::GetSystem()
{
	return SystemClock;
}

IHostClock* FHostClock::Set(IHostClock* Clock)
{
	return CurrentClock.exchange(Clock ? Clock : &SystemClock, std::memory_order_acq_rel);
}
