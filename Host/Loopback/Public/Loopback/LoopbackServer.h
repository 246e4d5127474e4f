#pragma once

#include "Loopback/HttpMessage.h"
#include "Loopback/LoopbackReply.h"

#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <deque>
#include <functional>
#include <list>
#include <map>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

class FLoopbackSocket;

/**
 * An HTTP/1.1 server on a free port of 127.0.0.1.
 *
 * A request is answered by the next queued reply, else by the route of its path, else by 404. It listens once
 * constructed. Destruction ends every connection in whatever state and joins all threads at once.
 * All members may be called from any thread.
 */
class FLoopbackServer
{
public:
	/** Runs on a thread of the server, several at once when connections are. */
	using FHandler = std::function<FLoopbackReply(const FHttpRequestMessage&)>;

	struct FRecord
	{
		FHttpRequestMessage Request;
		/** Counts the connections from 0: equal numbers came over one kept connection. */
		std::size_t Connection = 0;
	};

	/**
	 * Throws std::system_error when no port can be had.
	 * @param bInKeepRequests without it a server may answer for days: it forgets each request that it has answered.
	 */
	explicit FLoopbackServer(bool bInKeepRequests = true);
	~FLoopbackServer();
	FLoopbackServer(const FLoopbackServer&) = delete;
	FLoopbackServer& operator=(const FLoopbackServer&) = delete;

	int Port() const { return PortNumber; }
	/** "http://127.0.0.1:<port>" and the path behind it. */
	std::string Url(const std::string& Path = "/") const;

	/** Answers one later request; replies queued first are used first. */
	void Enqueue(FLoopbackReply Reply);
	/** Answers every request of the path that finds no queued reply. */
	void Route(const std::string& Path, FHandler Handler);
	void Route(const std::string& Path, FLoopbackReply Reply);

	/** All requests read whole so far, in the order they ended. */
	std::vector<FRecord> Requests() const;
	std::size_t RequestCount() const;
	std::size_t ConnectionCount() const;
	/** Connections that have ended, by either side. */
	std::size_t EndedCount() const;
	/** Waits until so many requests have been read whole; false when the limit passes first. */
	bool WaitForRequests(std::size_t Count, std::chrono::milliseconds Limit = std::chrono::seconds(10)) const;
	/** Waits until so many connections have ended; false when the limit passes first. */
	bool WaitForEnded(std::size_t Count, std::chrono::milliseconds Limit = std::chrono::seconds(10)) const;

private:
	struct FWorker
	{
		std::thread Thread;
		bool bFinished = false;
	};

	void Listen();
	void AcceptLoop();
	void StartConnection(int Fd);
	void JoinFinished();
	void Serve(FLoopbackSocket& Socket, std::size_t Connection);
	bool ReadRequest(FLoopbackSocket& Socket, std::string& Unread, FHttpRequestMessage& OutRequest);
	bool Answer(FLoopbackSocket& Socket, const FLoopbackReply& Reply);
	FLoopbackReply ReplyTo(const FHttpRequestMessage& Request);

	const bool bKeepRequests;
	int ListenFd = -1;
	int StopFd = -1;
	int PortNumber = 0;

	mutable std::mutex Mutex;
	mutable std::condition_variable Changed;
	std::deque<FLoopbackReply> Queue;
	std::map<std::string, FHandler> Routes;
	std::vector<FRecord> Records;
	std::list<FWorker> Workers;
	std::size_t Accepted = 0;
	std::size_t Ended = 0;
	std::thread Acceptor;
};
