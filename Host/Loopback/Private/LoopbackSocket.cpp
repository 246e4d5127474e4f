#include "LoopbackSocket.h"

#include <array>
#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <fstream>
#include <linux/sockios.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <poll.h>
#include <string>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <unistd.h>

namespace
{
/** The port of one end of the socket: its own by getsockname, the peer's by getpeername. */
unsigned PortOf(int Fd, int (*NameOf)(int, sockaddr*, socklen_t*))
{
	sockaddr_in Address = {};
	socklen_t Size = sizeof(Address);
	return NameOf(Fd, reinterpret_cast<sockaddr*>(&Address), &Size) == 0 ? ntohs(Address.sin_port) : 0;
}

/** Bytes that the peer's end of a loopback connection has received and not yet read, or 0 when it has gone. */
unsigned UnreadAtPeer(int Fd)
{
	const unsigned Own = PortOf(Fd, ::getsockname);
	const unsigned Peer = PortOf(Fd, ::getpeername);
	std::ifstream Table("/proc/net/tcp");
	std::string Line;
	while (std::getline(Table, Line))
	{
		unsigned LocalPort = 0;
		unsigned RemotePort = 0;
		unsigned Unread = 0;
		const char* Format = " %*u: %*8x:%4x %*8x:%4x %*2x %*8x:%8x";
		if (std::sscanf(Line.c_str(), Format, &LocalPort, &RemotePort, &Unread) == 3 && LocalPort == Peer &&
			RemotePort == Own)
		{
			return Unread;
		}
	}
	return 0;
}
}

FLoopbackSocket::FLoopbackSocket(int InFd, int InStopFd)
	: Fd(InFd)
	, StopFd(InStopFd)
{
	const int One = 1;
	::setsockopt(Fd, IPPROTO_TCP, TCP_NODELAY, &One, sizeof(One));
	::fcntl(Fd, F_SETFL, ::fcntl(Fd, F_GETFL) | O_NONBLOCK);
}

FLoopbackSocket::~FLoopbackSocket()
{
	Close();
}

FLoopbackSocket::EOutcome FLoopbackSocket::Wait(short Events, int OtherFd, int TimeoutMs)
{
	std::array<pollfd, 3> Polled = {
		pollfd{StopFd, POLLIN, 0},
		pollfd{Fd, static_cast<short>(Events | POLLRDHUP), 0},
		pollfd{OtherFd, POLLIN, 0},
	};
	while (::poll(Polled.data(), Polled.size(), TimeoutMs) < 0 && errno == EINTR)
	{
	}
	if (Polled[0].revents != 0)
	{
		return EOutcome::Stopped;
	}
	const bool bReady = (Polled[1].revents & Events) != 0 || Polled[2].revents != 0;
	const bool bGone = (Polled[1].revents & (POLLRDHUP | POLLHUP | POLLERR)) != 0;
	return bGone && !bReady ? EOutcome::PeerGone : EOutcome::Done;
}

FLoopbackSocket::EOutcome FLoopbackSocket::Send(std::string_view Bytes)
{
	while (!Bytes.empty())
	{
		const ssize_t Sent = ::send(Fd, Bytes.data(), Bytes.size(), MSG_NOSIGNAL);
		if (Sent > 0)
		{
			Bytes.remove_prefix(static_cast<std::size_t>(Sent));
			continue;
		}
		if (errno == EINTR)
		{
			continue;
		}
		if (errno != EAGAIN)
		{
			return EOutcome::PeerGone;
		}
		const EOutcome Outcome = Wait(POLLOUT);
		if (Outcome != EOutcome::Done)
		{
			return Outcome;
		}
	}
	// A send that never blocks must notice the stop too, or an endless reply would outlive the server.
	pollfd Stop = {StopFd, POLLIN, 0};
	return ::poll(&Stop, 1, 0) > 0 ? EOutcome::Stopped : EOutcome::Done;
}

FLoopbackSocket::EOutcome FLoopbackSocket::Receive(char* Buffer, std::size_t Capacity, std::size_t& OutSize)
{
	OutSize = 0;
	const EOutcome Outcome = Wait(POLLIN);
	if (Outcome != EOutcome::Done)
	{
		return Outcome;
	}
	const ssize_t Received = ::recv(Fd, Buffer, Capacity, 0);
	if (Received <= 0)
	{
		return EOutcome::PeerGone;
	}
	OutSize = static_cast<std::size_t>(Received);
	return EOutcome::Done;
}

bool FLoopbackSocket::PeerHasReadAll() const
{
	int Unacknowledged = 0;
	return ::ioctl(Fd, SIOCOUTQ, &Unacknowledged) != 0 || (Unacknowledged == 0 && UnreadAtPeer(Fd) == 0);
}

FLoopbackSocket::EOutcome FLoopbackSocket::Flush()
{
	// The kernel tells no one when the other end reads, so the queues are looked at again every millisecond.
	while (!PeerHasReadAll())
	{
		const EOutcome Outcome = Wait(0, -1, 1);
		if (Outcome != EOutcome::Done)
		{
			return Outcome;
		}
	}
	return EOutcome::Done;
}

FLoopbackSocket::EOutcome FLoopbackSocket::WaitReadable(int OtherFd)
{
	return Wait(0, OtherFd);
}

FLoopbackSocket::EOutcome FLoopbackSocket::Pause(std::chrono::milliseconds For)
{
	return Wait(0, -1, static_cast<int>(For.count()));
}

FLoopbackSocket::EOutcome FLoopbackSocket::WaitForPeerToGo()
{
	EOutcome Outcome = EOutcome::Done;
	while (Outcome == EOutcome::Done)
	{
		Outcome = Wait(0);
	}
	return Outcome;
}

void FLoopbackSocket::Close()
{
	if (Fd >= 0)
	{
		::shutdown(Fd, SHUT_WR);
		::close(Fd);
		Fd = -1;
	}
}

void FLoopbackSocket::Reset()
{
	const linger Immediately = {1, 0};
	::setsockopt(Fd, SOL_SOCKET, SO_LINGER, &Immediately, sizeof(Immediately));
	::close(Fd);
	Fd = -1;
}
