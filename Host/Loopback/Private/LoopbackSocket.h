#pragma once

#include <chrono>
#include <cstddef>
#include <string_view>

/** One accepted connection. Each wait in it ends at once when the server stops. One thread at a time. */
class FLoopbackSocket
{
public:
	enum class EOutcome
	{
		Done,
		/** The peer closed, reset or shut its side. */
		PeerGone,
		/** The server is stopping. */
		Stopped,
	};

	/** Takes over the descriptor `InFd`. `InStopFd` becomes readable, and stays so, when the server stops. */
	FLoopbackSocket(int InFd, int InStopFd);
	~FLoopbackSocket();
	FLoopbackSocket(const FLoopbackSocket&) = delete;
	FLoopbackSocket& operator=(const FLoopbackSocket&) = delete;

	EOutcome Send(std::string_view Bytes);
	/** Waits for bytes and reads what is there, `Capacity` at most. `OutSize` is above 0 exactly on Done. */
	EOutcome Receive(char* Buffer, std::size_t Capacity, std::size_t& OutSize);
	/** Waits until the peer has read all that was sent. */
	EOutcome Flush();
	/** Waits until the descriptor is readable. */
	EOutcome WaitReadable(int OtherFd);
	/** Lets that much time pass. */
	EOutcome Pause(std::chrono::milliseconds For);
	/** Waits until the peer is gone; never Done. */
	EOutcome WaitForPeerToGo();
	/** Ends the stream behind all that was sent. */
	void Close();
	/** Ends the connection with a reset. */
	void Reset();

private:
	/** Waits for events of the socket (0: only that the peer goes), of the other descriptor, or the stop. */
	EOutcome Wait(short Events, int OtherFd = -1, int TimeoutMs = -1);
	bool PeerHasReadAll() const;

	int Fd;
	int StopFd;
};
