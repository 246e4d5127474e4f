#pragma once

#include "Loopback/HttpMessage.h"

#include <cstddef>
#include <string>
#include <string_view>

/** Reads HTTP/1.x requests out of a byte stream, cut anywhere. Knows nothing of sockets. */
class FHttpRequestParser
{
public:
	enum class EState
	{
		Head,
		SizedBody,
		ChunkSize,
		ChunkData,
		ChunkEnd,
		Trailers,
		Complete,
		Malformed,
	};

	static constexpr std::size_t MaxHeadBytes = 64 * 1024;
	static constexpr std::size_t MaxBodyBytes = 256 * 1024 * 1024;

	/**
	 * Takes bytes in, up to the end of the request at most.
	 * Returns how many were taken; the rest belongs to the next request. Takes none once Complete or Malformed.
	 */
	std::size_t Feed(std::string_view Bytes);

	EState State() const { return Current; }
	bool IsComplete() const { return Current == EState::Complete; }
	bool IsMalformed() const { return Current == EState::Malformed; }
	/** Whether the head has been read and the peer waits for "100 Continue" before it sends the body. */
	bool WantsContinue() const;

	/** The request read so far; whole once Complete. */
	const FHttpRequestMessage& Message() const { return Request; }
	/** Hands the request out and begins the next one. */
	FHttpRequestMessage Take();

private:
	std::size_t FeedLine(std::string_view Bytes);
	std::size_t FeedBody(std::string_view Bytes, EState WhenDone);
	void OnLine(std::string_view Text);
	void OnHeadLine(std::string_view Text);
	void OnRequestLine(std::string_view Text);
	void OnHeaderLine(std::string_view Text);
	void OnChunkSize(std::string_view Text);
	void OnHeadEnd();
	void ExpectBody(std::size_t Size, EState Kind);

	FHttpRequestMessage Request;
	EState Current = EState::Head;
	std::string Line;
	std::size_t HeadBytes = 0;
	/** Body bytes still missing of the sized body or of the current chunk. */
	std::size_t Missing = 0;
};
