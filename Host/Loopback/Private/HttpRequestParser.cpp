#include "Loopback/HttpRequestParser.h"

#include <algorithm>
#include <charconv>
#include <utility>

namespace
{
std::string_view Trimmed(std::string_view Text)
{
	const std::size_t First = Text.find_first_not_of(" \t");
	if (First == std::string_view::npos)
	{
		return {};
	}
	return Text.substr(First, Text.find_last_not_of(" \t") - First + 1);
}

bool ParseSize(std::string_view Text, int Base, std::size_t& OutSize)
{
	const auto [End, Error] = std::from_chars(Text.data(), Text.data() + Text.size(), OutSize, Base);
	return Error == std::errc() && End == Text.data() + Text.size();
}
}

std::size_t FHttpRequestParser::Feed(std::string_view Bytes)
{
	std::size_t Taken = 0;
	while (Taken < Bytes.size() && !IsComplete() && !IsMalformed())
	{
		const std::string_view Rest = Bytes.substr(Taken);
		if (Current == EState::SizedBody)
		{
			Taken += FeedBody(Rest, EState::Complete);
		}
		else if (Current == EState::ChunkData)
		{
			Taken += FeedBody(Rest, EState::ChunkEnd);
		}
		else
		{
			Taken += FeedLine(Rest);
		}
	}
	return Taken;
}

std::size_t FHttpRequestParser::FeedLine(std::string_view Bytes)
{
	const std::size_t End = Bytes.find('\n');
	const std::size_t Taken = End == std::string_view::npos ? Bytes.size() : End + 1;
	HeadBytes += Taken;
	if (HeadBytes > MaxHeadBytes)
	{
		Current = EState::Malformed;
		return Taken;
	}
	Line.append(Bytes.substr(0, Taken));
	if (End != std::string_view::npos)
	{
		const std::string Whole = std::exchange(Line, {});
		const std::size_t Ending = Whole.size() > 1 && Whole[Whole.size() - 2] == '\r' ? 2 : 1;
		OnLine(std::string_view(Whole).substr(0, Whole.size() - Ending));
	}
	return Taken;
}

std::size_t FHttpRequestParser::FeedBody(std::string_view Bytes, EState WhenDone)
{
	const std::size_t Taken = std::min(Missing, Bytes.size());
	Request.Body.append(Bytes.substr(0, Taken));
	Missing -= Taken;
	if (Missing == 0)
	{
		Current = WhenDone;
	}
	return Taken;
}

void FHttpRequestParser::OnLine(std::string_view Text)
{
	switch (Current)
	{
	case EState::ChunkSize:
		OnChunkSize(Text);
		break;
	case EState::ChunkEnd:
		Current = Text.empty() ? EState::ChunkSize : EState::Malformed;
		break;
	case EState::Trailers:
		Current = Text.empty() ? EState::Complete : EState::Trailers;
		break;
	default:
		OnHeadLine(Text);
		break;
	}
}

void FHttpRequestParser::OnHeadLine(std::string_view Text)
{
	if (Request.Method.empty())
	{
		OnRequestLine(Text);
	}
	else if (Text.empty())
	{
		OnHeadEnd();
	}
	else
	{
		OnHeaderLine(Text);
	}
}

void FHttpRequestParser::OnRequestLine(std::string_view Text)
{
	if (Text.empty())
	{
		return; // An empty line before a request is to be passed over.
	}
	const std::size_t First = Text.find(' ');
	const std::size_t Last = Text.rfind(' ');
	if (First == 0 || First == std::string_view::npos || Last == First || Text.substr(Last + 1, 7) != "HTTP/1.")
	{
		Current = EState::Malformed;
		return;
	}
	Request.Method = Text.substr(0, First);
	Request.Target = Text.substr(First + 1, Last - First - 1);
	Request.Version = Text.substr(Last + 1);
	const std::size_t Mark = Request.Target.find('?');
	Request.Path = Request.Target.substr(0, Mark);
	Request.Query = Mark == std::string::npos ? std::string() : Request.Target.substr(Mark + 1);
}

void FHttpRequestParser::OnHeaderLine(std::string_view Text)
{
	const std::size_t Colon = Text.find(':');
	if (Colon == 0 || Colon == std::string_view::npos)
	{
		Current = EState::Malformed;
		return;
	}
	Request.Headers.emplace_back(Text.substr(0, Colon), Trimmed(Text.substr(Colon + 1)));
}

void FHttpRequestParser::OnHeadEnd()
{
	if (EqualsIgnoreCase(Request.Header("Transfer-Encoding"), "chunked"))
	{
		Current = EState::ChunkSize;
		return;
	}
	std::size_t Size = 0;
	if (Request.HasHeader("Content-Length") && !ParseSize(Request.Header("Content-Length"), 10, Size))
	{
		Current = EState::Malformed;
		return;
	}
	ExpectBody(Size, EState::SizedBody);
	if (Size == 0)
	{
		Current = EState::Complete;
	}
}

void FHttpRequestParser::OnChunkSize(std::string_view Text)
{
	std::size_t Size = 0;
	if (!ParseSize(Trimmed(Text.substr(0, Text.find(';'))), 16, Size))
	{
		Current = EState::Malformed;
		return;
	}
	// Chunk framing isn't part of the head's bound; each line of it is bounded alone.
	HeadBytes = 0;
	ExpectBody(Size, EState::ChunkData);
	if (Size == 0)
	{
		Current = EState::Trailers;
	}
}

void FHttpRequestParser::ExpectBody(std::size_t Size, EState Kind)
{
	const bool bFits = Size <= MaxBodyBytes && Request.Body.size() <= MaxBodyBytes - Size;
	Current = bFits ? Kind : EState::Malformed;
	Missing = Size;
}

bool FHttpRequestParser::WantsContinue() const
{
	const bool bBodyIsNext = Current == EState::SizedBody || Current == EState::ChunkSize;
	return bBodyIsNext && Request.Body.empty() && EqualsIgnoreCase(Request.Header("Expect"), "100-continue");
}

FHttpRequestMessage FHttpRequestParser::Take()
{
	FHttpRequestMessage Taken = std::move(Request);
	*this = FHttpRequestParser();
	return Taken;
}
