#pragma once

#include <cstddef>
#include <string>
#include <string_view>

/** A TCP client that shows each read as it is. A read that gets nothing for 10 seconds counts as TimedOut. */
class FRawClient
{
public:
	enum class EEnd
	{
		None,
		Closed,
		Reset,
		TimedOut,
	};

	explicit FRawClient(int Port);
	~FRawClient();
	FRawClient(const FRawClient&) = delete;
	FRawClient& operator=(const FRawClient&) = delete;

	void Send(std::string_view Bytes);
	/** The bytes of one read; empty when the stream has ended, see End(). */
	std::string ReadPiece();
	/** Reads until so many bytes are there or the stream ends. */
	std::string ReadBytes(std::size_t Count);
	std::string ReadToEnd();
	/** Whether a byte waits to be read at this moment. */
	bool HasUnread() const;
	EEnd End() const { return HowEnded; }

private:
	int Fd;
	EEnd HowEnded = EEnd::None;
};
