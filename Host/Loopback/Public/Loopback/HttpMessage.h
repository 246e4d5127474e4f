#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

using FHttpHeaders = std::vector<std::pair<std::string, std::string>>;

/** One request as it arrived. */
struct FHttpRequestMessage
{
	std::string Method;
	/** The path and query as sent, undecoded. */
	std::string Target;
	/** The target without its query. */
	std::string Path;
	/** What stands behind '?', or empty. */
	std::string Query;
	/** "HTTP/1.1" or "HTTP/1.0". */
	std::string Version;
	/** In the order received, names in the case received. */
	FHttpHeaders Headers;
	/** Decoded: without chunk framing. */
	std::string Body;

	/** The value of the first header of that name, ignoring case, or empty. */
	std::string Header(std::string_view Name) const;
	bool HasHeader(std::string_view Name) const;
	/** Whether the peer expects the connection to stay open behind the reply. */
	bool WantsKeepAlive() const;
};

/** Compares ASCII text ignoring case. */
bool EqualsIgnoreCase(std::string_view Left, std::string_view Right);

/** The usual reason phrase of a status, "Status" for an unusual one. */
std::string_view ReasonPhrase(int Status);
