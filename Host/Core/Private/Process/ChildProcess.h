#pragma once

#include "HAL/Platform.h"
#include "Templates/UnrealTemplate.h"

#include <atomic>
#include <sys/types.h>

/**
 * A child of ours. The system keeps its entry until the end of this object's life, so that its id, and that of its
 * group, can't come to name another process. A child that still runs then is reaped later. Any thread.
 */
class FChildProcess : private FNoncopyable
{
public:
	explicit FChildProcess(pid_t InPid)
		: Pid(InPid)
	{
	}
	~FChildProcess();

	pid_t GetPid() const { return Pid; }
	bool IsRunning();
	/** @return false while it runs. */
	bool GetReturnCode(int32& OutCode);
	void Wait();
	/** Waits up to a limit by the system's clock. @return whether the child has ended. */
	bool WaitFor(double Seconds);
	/** Ends the child, or its whole tree, and waits a moment for it to be gone. */
	void Kill(bool bTree);

private:
	bool Look(int Flags);

	static constexpr int32 Running = -1;

	pid_t Pid;
	/** `Running`, or the return code. */
	std::atomic<int32> Code{Running};
};
