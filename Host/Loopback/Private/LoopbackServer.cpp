#include "Loopback/LoopbackServer.h"

#include "Loopback/HttpRequestParser.h"
#include "LoopbackSocket.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdint>
#include <netinet/in.h>
#include <poll.h>
#include <sys/eventfd.h>
#include <sys/socket.h>
#include <system_error>
#include <type_traits>
#include <unistd.h>
#include <utility>

using EOutcome = FLoopbackSocket::EOutcome;

namespace
{
constexpr int Backlog = 128;
constexpr std::size_t ReceiveBytes = 64 * 1024;
constexpr std::size_t SendBlockBytes = 64 * 1024;

int Checked(int Result, const char* What)
{
	if (Result < 0)
	{
		throw std::system_error(errno, std::generic_category(), What);
	}
	return Result;
}

/** A small buffer goes out in blocks of many, or the system calls would cost more than all that they carry. */
EOutcome SendRepeated(FLoopbackSocket& Socket, std::string_view Bytes, std::size_t Times)
{
	const std::size_t PerBlock = std::clamp<std::size_t>(SendBlockBytes / Bytes.size(), 1, Times);
	std::string Block;
	for (std::size_t Round = 0; Round < PerBlock; ++Round)
	{
		Block += Bytes;
	}
	EOutcome Outcome = EOutcome::Done;
	for (std::size_t Left = Times; Left > 0 && Outcome == EOutcome::Done;)
	{
		const std::size_t Rounds = std::min(PerBlock, Left);
		Outcome = Socket.Send(std::string_view(Block).substr(0, Rounds * Bytes.size()));
		Left -= Rounds;
	}
	return Outcome;
}

EOutcome SendAll(FLoopbackSocket& Socket, const FLoopbackReply::FSend& Step)
{
	const std::string_view Bytes = std::string_view(*Step.Buffer).substr(Step.Offset, Step.Size);
	return Step.Times == 1 || Bytes.empty() ? Socket.Send(Bytes) : SendRepeated(Socket, Bytes, Step.Times);
}

EOutcome WaitAtGate(FLoopbackSocket& Socket, FLoopbackGate& Gate)
{
	EOutcome Outcome = EOutcome::Done;
	while (Outcome == EOutcome::Done && !Gate.TryTake())
	{
		Outcome = Socket.WaitReadable(Gate.Descriptor());
	}
	return Outcome;
}

/** Carries one step out. PeerGone also stands for an end that the step itself made. */
EOutcome CarryOut(FLoopbackSocket& Socket, const FLoopbackReply::FStep& Step)
{
	if (const auto* Send = std::get_if<FLoopbackReply::FSend>(&Step))
	{
		return SendAll(Socket, *Send);
	}
	if (const auto* Wait = std::get_if<FLoopbackReply::FWait>(&Step))
	{
		return WaitAtGate(Socket, *Wait->Gate);
	}
	if (const auto* Pause = std::get_if<FLoopbackReply::FPause>(&Step))
	{
		return Socket.Pause(Pause->For);
	}
	if (std::holds_alternative<FLoopbackReply::FFlush>(Step))
	{
		return Socket.Flush();
	}
	if (std::holds_alternative<FLoopbackReply::FStall>(Step))
	{
		return Socket.WaitForPeerToGo();
	}
	if (std::get<FLoopbackReply::FEnd>(Step).How == FLoopbackReply::EEnd::Reset)
	{
		Socket.Reset();
	}
	else
	{
		Socket.Close();
	}
	return EOutcome::PeerGone;
}
}

FLoopbackServer::FLoopbackServer(bool bInKeepRequests)
	: bKeepRequests(bInKeepRequests)
{
	StopFd = Checked(::eventfd(0, EFD_CLOEXEC), "eventfd");
	ListenFd = Checked(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0), "socket");
	Listen();
	Acceptor = std::thread([this] { AcceptLoop(); });
}

void FLoopbackServer::Listen()
{
	sockaddr_in Address = {};
	Address.sin_family = AF_INET;
	Address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
	socklen_t Size = sizeof(Address);
	Checked(::bind(ListenFd, reinterpret_cast<sockaddr*>(&Address), Size), "bind");
	Checked(::listen(ListenFd, Backlog), "listen");
	Checked(::getsockname(ListenFd, reinterpret_cast<sockaddr*>(&Address), &Size), "getsockname");
	PortNumber = ntohs(Address.sin_port);
}

FLoopbackServer::~FLoopbackServer()
{
	const std::uint64_t One = 1;
	Checked(static_cast<int>(::write(StopFd, &One, sizeof(One))), "stopping the loopback server");
	Acceptor.join();
	for (FWorker& Worker : Workers)
	{
		Worker.Thread.join();
	}
	::close(ListenFd);
	::close(StopFd);
}

std::string FLoopbackServer::Url(const std::string& Path) const
{
	return "http://127.0.0.1:" + std::to_string(PortNumber) + Path;
}

void FLoopbackServer::AcceptLoop()
{
	std::array<pollfd, 2> Polled = {pollfd{StopFd, POLLIN, 0}, pollfd{ListenFd, POLLIN, 0}};
	while (Polled[0].revents == 0)
	{
		if (::poll(Polled.data(), Polled.size(), -1) < 0 || Polled[1].revents == 0)
		{
			continue;
		}
		const int Fd = ::accept4(ListenFd, nullptr, nullptr, SOCK_CLOEXEC);
		if (Fd >= 0)
		{
			JoinFinished();
			StartConnection(Fd);
		}
	}
}

void FLoopbackServer::StartConnection(int Fd)
{
	const std::lock_guard Lock(Mutex);
	const std::size_t Connection = Accepted++;
	FWorker& Worker = Workers.emplace_back();
	Worker.Thread = std::thread(
		[this, Fd, Connection, &Worker]
		{
			{
				FLoopbackSocket Socket(Fd, StopFd);
				Serve(Socket, Connection);
			}
			const std::lock_guard WorkerLock(Mutex);
			++Ended;
			Worker.bFinished = true;
			Changed.notify_all();
		});
	Changed.notify_all();
}

void FLoopbackServer::JoinFinished()
{
	std::list<FWorker> Finished;
	{
		const std::lock_guard Lock(Mutex);
		for (auto Worker = Workers.begin(); Worker != Workers.end();)
		{
			const auto Next = std::next(Worker);
			if (Worker->bFinished)
			{
				Finished.splice(Finished.end(), Workers, Worker);
			}
			Worker = Next;
		}
	}
	for (FWorker& Worker : Finished)
	{
		Worker.Thread.join();
	}
}

void FLoopbackServer::Serve(FLoopbackSocket& Socket, std::size_t Connection)
{
	std::string Unread;
	FHttpRequestMessage Request;
	while (ReadRequest(Socket, Unread, Request))
	{
		const bool bKeep = Request.WantsKeepAlive();
		FLoopbackReply Reply = ReplyTo(Request);
		if (bKeepRequests)
		{
			const std::lock_guard Lock(Mutex);
			Records.push_back({std::move(Request), Connection});
			Changed.notify_all();
		}
		if (!Answer(Socket, Reply) || !bKeep)
		{
			return;
		}
	}
}

bool FLoopbackServer::ReadRequest(FLoopbackSocket& Socket, std::string& Unread, FHttpRequestMessage& OutRequest)
{
	FHttpRequestParser Parser;
	std::vector<char> Buffer(ReceiveBytes);
	bool bContinueSent = false;
	Unread.erase(0, Parser.Feed(Unread));
	while (!Parser.IsComplete())
	{
		if (Parser.IsMalformed())
		{
			Answer(Socket, FLoopbackReply::Sized(400, "malformed request").ThenEnd());
			return false;
		}
		if (Parser.WantsContinue() && !std::exchange(bContinueSent, true))
		{
			Socket.Send("HTTP/1.1 100 Continue\r\n\r\n");
		}
		std::size_t Size = 0;
		if (Socket.Receive(Buffer.data(), Buffer.size(), Size) != EOutcome::Done)
		{
			return false;
		}
		const std::string_view Received(Buffer.data(), Size);
		Unread = Received.substr(Parser.Feed(Received));
	}
	OutRequest = Parser.Take();
	return true;
}

bool FLoopbackServer::Answer(FLoopbackSocket& Socket, const FLoopbackReply& Reply)
{
	for (const FLoopbackReply::FStep& Step : Reply.Steps())
	{
		if (CarryOut(Socket, Step) != EOutcome::Done)
		{
			return false;
		}
	}
	return true;
}

FLoopbackReply FLoopbackServer::ReplyTo(const FHttpRequestMessage& Request)
{
	FHandler Handler;
	{
		const std::lock_guard Lock(Mutex);
		if (!Queue.empty())
		{
			FLoopbackReply Reply = std::move(Queue.front());
			Queue.pop_front();
			return Reply;
		}
		const auto Found = Routes.find(Request.Path);
		if (Found != Routes.end())
		{
			Handler = Found->second;
		}
	}
	return Handler ? Handler(Request) : FLoopbackReply::Sized(404, "no route " + Request.Path);
}

void FLoopbackServer::Enqueue(FLoopbackReply Reply)
{
	const std::lock_guard Lock(Mutex);
	Queue.push_back(std::move(Reply));
}

void FLoopbackServer::Route(const std::string& Path, FHandler Handler)
{
	const std::lock_guard Lock(Mutex);
	Routes[Path] = std::move(Handler);
}

void FLoopbackServer::Route(const std::string& Path, FLoopbackReply Reply)
{
	Route(Path, [Reply = std::move(Reply)](const FHttpRequestMessage&) { return Reply; });
}

std::vector<FLoopbackServer::FRecord> FLoopbackServer::Requests() const
{
	const std::lock_guard Lock(Mutex);
	return Records;
}

std::size_t FLoopbackServer::RequestCount() const
{
	const std::lock_guard Lock(Mutex);
	return Records.size();
}

std::size_t FLoopbackServer::ConnectionCount() const
{
	const std::lock_guard Lock(Mutex);
	return Accepted;
}

std::size_t FLoopbackServer::EndedCount() const
{
	const std::lock_guard Lock(Mutex);
	return Ended;
}

bool FLoopbackServer::WaitForRequests(std::size_t Count, std::chrono::milliseconds Limit) const
{
	std::unique_lock Lock(Mutex);
	return Changed.wait_for(Lock, Limit, [&] { return Records.size() >= Count; });
}

bool FLoopbackServer::WaitForEnded(std::size_t Count, std::chrono::milliseconds Limit) const
{
	std::unique_lock Lock(Mutex);
	return Changed.wait_for(Lock, Limit, [&] { return Ended >= Count; });
}
