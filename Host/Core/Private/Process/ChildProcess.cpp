#include "ChildProcess.h"

#include "ChildReaper.h"
#include "HAL/HostClock.h"
#include "ProcessTree.h"

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <sys/wait.h>

namespace
{
/** How long a killed child may take to vanish before it is left to itself. */
constexpr double KillGraceSeconds = 2.0;

int32 ReturnCodeOf(const siginfo_t& Info)
{
	return Info.si_code == CLD_EXITED ? Info.si_status : 128 + Info.si_status;
}
} // namespace

FChildProcess::~FChildProcess()
{
	FChildReaper::Get().Adopt(Pid);
}

bool FChildProcess::Look(int Flags)
{
	if (Code != Running)
	{
		return false;
	}
	siginfo_t Info = {};
	int Result = 0;
	do
	{
		// Leaves the entry in place: it is what keeps the id from being given to another process.
		Result = ::waitid(P_PID, (id_t)Pid, &Info, WEXITED | WNOWAIT | Flags);
	} while (Result != 0 && errno == EINTR);
	if (Result == 0 && Info.si_pid == 0)
	{
		return true;
	}
	// Without an entry, which only foreign code in this process can bring about, how the child ended is unknown.
	Code = Result == 0 ? ReturnCodeOf(Info) : 255;
	return false;
}

bool FChildProcess::IsRunning()
{
	return Look(WNOHANG);
}

bool FChildProcess::GetReturnCode(int32& OutCode)
{
	if (IsRunning())
	{
		return false;
	}
	OutCode = Code;
	return true;
}

void FChildProcess::Wait()
{
	(void)Look(0);
}

bool FChildProcess::WaitFor(double Seconds)
{
	IHostClock& Clock = FHostClock::GetSystem();
	const double Deadline = Clock.GetSeconds() + Seconds;
	for (double Pause = 0.0001; IsRunning(); Pause = std::min(Pause * 2, 0.01))
	{
		if (Clock.GetSeconds() >= Deadline)
		{
			return false;
		}
		Clock.Sleep(Pause);
	}
	return true;
}

void FChildProcess::Kill(bool bTree)
{
	if (bTree)
	{
		KillProcessTree(Pid);
	}
	else if (IsRunning())
	{
		(void)::kill(Pid, SIGKILL);
	}
	(void)WaitFor(KillGraceSeconds);
}
