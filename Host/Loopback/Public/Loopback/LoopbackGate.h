#pragma once

#include <cstdint>
#include <memory>

/**
 * Holds a reply back until the test lets it on. Each place in a reply that waits for the gate uses one permit.
 * Any thread may release; shared by the test and the replies.
 */
class FLoopbackGate
{
public:
	static std::shared_ptr<FLoopbackGate> Create();
	~FLoopbackGate();
	FLoopbackGate(const FLoopbackGate&) = delete;
	FLoopbackGate& operator=(const FLoopbackGate&) = delete;

	/** Lets the next `Permits` waits pass. */
	void Release(std::uint32_t Permits = 1);
	/** Lets all waits pass from now on. */
	void Open() { Release(1U << 30); }

	/** Readable while a permit is there. For the server. */
	int Descriptor() const { return Fd; }
	/** Uses a permit up; false when another wait was quicker. For the server. */
	bool TryTake();

private:
	explicit FLoopbackGate(int InFd)
		: Fd(InFd)
	{
	}

	int Fd;
};
