#include "OutputCapture.h"

#include "HAL/FaultInjection.h"
#include "HAL/HostClock.h"
#include "HAL/PlatformProcess.h"
#include "PipeEnd.h"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

namespace
{
/** How long, at most, the end of a child stays unnoticed while something else holds its pipes. */
constexpr int PollMilliseconds = 10;

/** Reads at most this much between two looks at the time and at the other stream. */
constexpr int32 MaxBlocksPerDrain = 64;
} // namespace

bool FOutputStream::Open()
{
	return FPipeEnd::Create(ReadEnd, WriteEnd) && ::fcntl(ReadEnd.Get(), F_SETFL, O_NONBLOCK) == 0;
}

void FOutputStream::Drain()
{
	uint8 Block[16 * 1024];
	for (int32 Count = 0; Count < MaxBlocksPerDrain && !bEnded; ++Count)
	{
		const int64 Got = FailsByPlan(EHostFault::Process) ? -1 : ::read(ReadEnd.Get(), Block, sizeof(Block));
		if (Got < 0 && (errno == EAGAIN || errno == EINTR))
		{
			return;
		}
		bFailed = Got < 0;
		bEnded = Got <= 0;
		const int64 Room = FPlatformProcess::MaxCapturedBytes - Bytes.Num();
		Bytes.Append(Block, (int32)std::clamp<int64>(Got, 0, Room));
	}
}

bool CaptureUntilEnd(FChildProcess& Child, FOutputStream& Output, FOutputStream& Errors, double LimitSeconds)
{
	IHostClock& Clock = FHostClock::GetSystem();
	const double Deadline = Clock.GetSeconds() + LimitSeconds;
	for (bool bRunning = true; bRunning && Clock.GetSeconds() < Deadline;)
	{
		// Asked before the last reading, so that nothing written until the end is missed.
		bRunning = Child.IsRunning();
		pollfd Polls[] = {{Output.GetReadEnd(), POLLIN, 0}, {Errors.GetReadEnd(), POLLIN, 0}};
		if (Output.HasEnded() && Errors.HasEnded())
		{
			bRunning = !Child.WaitFor(Deadline - Clock.GetSeconds());
		}
		else if (bRunning && ::poll(Polls, 2, PollMilliseconds) < 0 && errno != EINTR)
		{
			return false;
		}
		Output.Drain();
		Errors.Drain();
		if (Output.HasFailed() || Errors.HasFailed())
		{
			return false;
		}
	}
	return !Child.IsRunning();
}
