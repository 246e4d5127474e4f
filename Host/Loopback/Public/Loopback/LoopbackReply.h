#pragma once

#include "Loopback/HttpMessage.h"
#include "Loopback/LoopbackGate.h"

#include <chrono>
#include <cstddef>
#include <memory>
#include <string>
#include <variant>
#include <vector>

/**
 * What the server does with one request: bytes to send, and where in them it misbehaves.
 *
 * The factories make well-behaved replies. The members behind them change one at a byte offset, counted over the
 * bytes on the wire from the first of the status line: HeadSize() is the first byte of the body, WireSize() the end.
 */
class FLoopbackReply
{
public:
	/** How a connection ends. */
	enum class EEnd
	{
		/** All that was sent arrives, then the end of the stream. */
		Close,
		/** The peer sees a reset. */
		Reset,
	};

	/** Sends `Size` bytes from `Offset` of a buffer, `Times` times over. */
	struct FSend
	{
		std::shared_ptr<const std::string> Buffer;
		std::size_t Offset = 0;
		std::size_t Size = 0;
		std::size_t Times = 1;
	};
	/** Waits until the peer has read all that was sent, so that what follows arrives in another read. */
	struct FFlush
	{
	};
	/** Waits for a permit of the gate. */
	struct FWait
	{
		std::shared_ptr<FLoopbackGate> Gate;
	};
	/** Waits a while, so that what follows arrives later, as from a far server. */
	struct FPause
	{
		std::chrono::milliseconds For;
	};
	/** Sends nothing more, and keeps the connection until the peer or the server goes. */
	struct FStall
	{
	};
	struct FEnd
	{
		EEnd How;
	};
	using FStep = std::variant<FSend, FFlush, FWait, FPause, FStall, FEnd>;

	/** A body with its Content-Length; the connection stays open. */
	static FLoopbackReply Sized(int Status, std::string Body, FHttpHeaders Headers = {});
	/** Each element is one chunk; an empty one is left out, for it would end the body. */
	static FLoopbackReply Chunked(int Status, const std::vector<std::string>& Chunks, FHttpHeaders Headers = {});
	/** No length is told: the end of the connection ends the body. */
	static FLoopbackReply UntilClose(int Status, std::string Body, FHttpHeaders Headers = {});
	/** Claims `Claimed` bytes, sends the body as it is, and closes. */
	static FLoopbackReply WrongLength(int Status, std::size_t Claimed, std::string Body, FHttpHeaders Headers = {});
	static FLoopbackReply Redirect(std::string Location, int Status = 302);
	/** 200 with event-stream chunks, one for each event text given. */
	static FLoopbackReply Events(const std::vector<std::string>& Events);
	/** The same with a pause ahead of each event but the first. */
	static FLoopbackReply PacedEvents(const std::vector<std::string>& Events, std::chrono::milliseconds Pause);
	/** 200 with a body of `Body` repeated `Times` times, kept once however long it is. */
	static FLoopbackReply Repeated(
		std::shared_ptr<const std::string> Body, std::size_t Times, FHttpHeaders Headers = {});
	/** Header lines without end, until the peer goes. */
	static FLoopbackReply EndlessHeaders();
	/** These bytes and nothing else, whatever they are; the connection then closes. */
	static FLoopbackReply Raw(std::string Bytes);
	/** Not one byte, until the peer or the server goes. */
	static FLoopbackReply Silence();

	/** At each offset, the bytes before are read by the peer before the bytes behind are sent. */
	FLoopbackReply& SplitAt(std::vector<std::size_t> Offsets);
	/** Nothing from the offset on is sent; the connection ends so. */
	FLoopbackReply& CutAt(std::size_t Offset, EEnd How = EEnd::Close);
	/** Nothing from the offset on is sent; the connection stays open in silence. */
	FLoopbackReply& StallAt(std::size_t Offset);
	/** The bytes from the offset on wait for a permit of the gate. */
	FLoopbackReply& WaitAt(std::size_t Offset, std::shared_ptr<FLoopbackGate> Gate);
	/** From the offset on, each `PieceSize` bytes wait for a permit: a slow peer that the test paces. */
	FLoopbackReply& DripFrom(std::size_t Offset, std::size_t PieceSize, const std::shared_ptr<FLoopbackGate>& Gate);
	/** Behind all bytes, the connection ends so. */
	FLoopbackReply& ThenEnd(EEnd How = EEnd::Close);

	std::size_t HeadSize() const { return HeadBytes; }
	std::size_t WireSize() const;
	const std::vector<FStep>& Steps() const { return Script; }

private:
	static FLoopbackReply Head(int Status, const FHttpHeaders& Headers);
	void Send(std::string Bytes);
	/** The index of the step that begins with the byte at the offset; a send across it becomes two. */
	std::size_t StepAt(std::size_t Offset);
	void InsertAt(std::size_t Offset, FStep Step);
	void ReplaceFrom(std::size_t Offset, FStep Step);

	std::vector<FStep> Script;
	std::size_t HeadBytes = 0;
};
