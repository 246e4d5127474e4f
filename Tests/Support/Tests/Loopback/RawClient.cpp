#include "Support/Tests/Loopback/RawClient.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <gtest/gtest.h>
#include <limits>
#include <netinet/in.h>
#include <sys/socket.h>
#include <sys/time.h>
#include <unistd.h>

FRawClient::FRawClient(int Port)
	: Fd(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0))
{
	const timeval Limit = {10, 0};
	::setsockopt(Fd, SOL_SOCKET, SO_RCVTIMEO, &Limit, sizeof(Limit));
	sockaddr_in Address = {};
	Address.sin_family = AF_INET;
	Address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
	Address.sin_port = htons(static_cast<std::uint16_t>(Port));
	EXPECT_EQ(0, ::connect(Fd, reinterpret_cast<sockaddr*>(&Address), sizeof(Address)));
}

FRawClient::~FRawClient()
{
	::close(Fd);
}

void FRawClient::Send(std::string_view Bytes)
{
	EXPECT_EQ(static_cast<ssize_t>(Bytes.size()), ::send(Fd, Bytes.data(), Bytes.size(), MSG_NOSIGNAL));
}

std::string FRawClient::ReadPiece()
{
	std::array<char, 64 * 1024> Buffer;
	const ssize_t Size = ::recv(Fd, Buffer.data(), Buffer.size(), 0);
	if (Size > 0)
	{
		return std::string(Buffer.data(), static_cast<std::size_t>(Size));
	}
	HowEnded = Size == 0 ? EEnd::Closed : errno == ECONNRESET ? EEnd::Reset : EEnd::TimedOut;
	return {};
}

std::string FRawClient::ReadBytes(std::size_t Count)
{
	std::string All;
	while (All.size() < Count && HowEnded == EEnd::None)
	{
		All += ReadPiece();
	}
	return All;
}

std::string FRawClient::ReadToEnd()
{
	return ReadBytes(std::numeric_limits<std::size_t>::max());
}

bool FRawClient::HasUnread() const
{
	char Byte = 0;
	return ::recv(Fd, &Byte, 1, MSG_PEEK | MSG_DONTWAIT) > 0;
}
