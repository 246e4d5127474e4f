#include "Loopback/HttpMessage.h"

#include <algorithm>
#include <cctype>

bool EqualsIgnoreCase(std::string_view Left, std::string_view Right)
{
	return std::equal(Left.begin(), Left.end(), Right.begin(), Right.end(),
		[](unsigned char A, unsigned char B) { return std::tolower(A) == std::tolower(B); });
}

std::string FHttpRequestMessage::Header(std::string_view Name) const
{
	for (const auto& [Key, Value] : Headers)
	{
		if (EqualsIgnoreCase(Key, Name))
		{
			return Value;
		}
	}
	return {};
}

bool FHttpRequestMessage::HasHeader(std::string_view Name) const
{
	return std::any_of(
		Headers.begin(), Headers.end(), [Name](const auto& Pair) { return EqualsIgnoreCase(Pair.first, Name); });
}

bool FHttpRequestMessage::WantsKeepAlive() const
{
	const std::string Connection = Header("Connection");
	if (Version == "HTTP/1.0")
	{
		return EqualsIgnoreCase(Connection, "keep-alive");
	}
	return !EqualsIgnoreCase(Connection, "close");
}

std::string_view ReasonPhrase(int Status)
{
	static constexpr std::pair<int, std::string_view> Phrases[] = {
		{200, "OK"},
		{204, "No Content"},
		{301, "Moved Permanently"},
		{302, "Found"},
		{307, "Temporary Redirect"},
		{400, "Bad Request"},
		{401, "Unauthorized"},
		{403, "Forbidden"},
		{404, "Not Found"},
		{408, "Request Timeout"},
		{413, "Content Too Large"},
		{429, "Too Many Requests"},
		{500, "Internal Server Error"},
		{502, "Bad Gateway"},
		{503, "Service Unavailable"},
		{529, "Overloaded"},
	};
	for (const auto& [Code, Phrase] : Phrases)
	{
		if (Code == Status)
		{
			return Phrase;
		}
	}
	return "Status";
}
