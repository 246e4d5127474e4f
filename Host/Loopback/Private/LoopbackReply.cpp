#include "Loopback/LoopbackReply.h"

#include <algorithm>
#include <cstdio>
#include <limits>
#include <stdexcept>
#include <utility>

namespace
{
std::string HeadText(int Status, const FHttpHeaders& Headers)
{
	std::string Text = "HTTP/1.1 " + std::to_string(Status) + " ";
	Text += ReasonPhrase(Status);
	Text += "\r\n";
	for (const auto& [Name, Value] : Headers)
	{
		Text += Name + ": " + Value + "\r\n";
	}
	return Text + "\r\n";
}

std::string ChunkText(const std::string& Data)
{
	char Size[20];
	std::snprintf(Size, sizeof(Size), "%zx\r\n", Data.size());
	return Size + Data + "\r\n";
}

FHttpHeaders With(FHttpHeaders Headers, std::string Name, std::string Value)
{
	Headers.emplace_back(std::move(Name), std::move(Value));
	return Headers;
}
}

FLoopbackReply FLoopbackReply::Head(int Status, const FHttpHeaders& Headers)
{
	FLoopbackReply Reply;
	Reply.Send(HeadText(Status, Headers));
	Reply.HeadBytes = Reply.WireSize();
	return Reply;
}

void FLoopbackReply::Send(std::string Bytes)
{
	if (!Bytes.empty())
	{
		const std::size_t Size = Bytes.size();
		Script.push_back(FSend{std::make_shared<const std::string>(std::move(Bytes)), 0, Size, 1});
	}
}

FLoopbackReply FLoopbackReply::Sized(int Status, std::string Body, FHttpHeaders Headers)
{
	FLoopbackReply Reply = Head(Status, With(std::move(Headers), "Content-Length", std::to_string(Body.size())));
	Reply.Send(std::move(Body));
	return Reply;
}

FLoopbackReply FLoopbackReply::Chunked(int Status, const std::vector<std::string>& Chunks, FHttpHeaders Headers)
{
	FLoopbackReply Reply = Head(Status, With(std::move(Headers), "Transfer-Encoding", "chunked"));
	for (const std::string& Chunk : Chunks)
	{
		Reply.Send(Chunk.empty() ? std::string() : ChunkText(Chunk));
	}
	Reply.Send("0\r\n\r\n");
	return Reply;
}

FLoopbackReply FLoopbackReply::UntilClose(int Status, std::string Body, FHttpHeaders Headers)
{
	FLoopbackReply Reply = Head(Status, With(std::move(Headers), "Connection", "close"));
	Reply.Send(std::move(Body));
	return Reply.ThenEnd();
}

FLoopbackReply FLoopbackReply::WrongLength(int Status, std::size_t Claimed, std::string Body, FHttpHeaders Headers)
{
	FLoopbackReply Reply = Head(Status, With(std::move(Headers), "Content-Length", std::to_string(Claimed)));
	Reply.Send(std::move(Body));
	return Reply.ThenEnd();
}

FLoopbackReply FLoopbackReply::Redirect(std::string Location, int Status)
{
	return Sized(Status, {}, {{"Location", std::move(Location)}});
}

FLoopbackReply FLoopbackReply::Events(const std::vector<std::string>& Events)
{
	return Chunked(200, Events, {{"Content-Type", "text/event-stream"}});
}

FLoopbackReply FLoopbackReply::PacedEvents(const std::vector<std::string>& Events, std::chrono::milliseconds Pause)
{
	FLoopbackReply Reply = FLoopbackReply::Events(Events);
	std::size_t Offset = Reply.HeadSize();
	for (const std::string& Event : Events)
	{
		if (Offset > Reply.HeadSize())
		{
			Reply.InsertAt(Offset, FPause{Pause});
		}
		Offset += Event.empty() ? 0 : ChunkText(Event).size();
	}
	return Reply;
}

FLoopbackReply FLoopbackReply::Repeated(
	std::shared_ptr<const std::string> Body, std::size_t Times, FHttpHeaders Headers)
{
	const std::size_t Size = Body->size();
	FLoopbackReply Reply = Head(200, With(std::move(Headers), "Content-Length", std::to_string(Size * Times)));
	Reply.Script.push_back(FSend{std::move(Body), 0, Size, Times});
	return Reply;
}

FLoopbackReply FLoopbackReply::EndlessHeaders()
{
	FLoopbackReply Reply;
	Reply.Send("HTTP/1.1 200 OK\r\n");
	const auto Filler = std::make_shared<const std::string>("X-Filler: " + std::string(1000, 'x') + "\r\n");
	Reply.Script.push_back(FSend{Filler, 0, Filler->size(), std::numeric_limits<std::size_t>::max()});
	return Reply;
}

FLoopbackReply FLoopbackReply::Raw(std::string Bytes)
{
	FLoopbackReply Reply;
	Reply.Send(std::move(Bytes));
	return Reply.ThenEnd();
}

FLoopbackReply FLoopbackReply::Silence()
{
	FLoopbackReply Reply;
	Reply.Script.push_back(FStall{});
	return Reply;
}

FLoopbackReply& FLoopbackReply::SplitAt(std::vector<std::size_t> Offsets)
{
	for (const std::size_t Offset : Offsets)
	{
		InsertAt(Offset, FFlush{});
	}
	return *this;
}

FLoopbackReply& FLoopbackReply::CutAt(std::size_t Offset, EEnd How)
{
	ReplaceFrom(Offset, FEnd{How});
	if (How == EEnd::Reset)
	{
		// A reset throws away what the peer hasn't received; what stands before the cut is to arrive.
		Script.insert(Script.end() - 1, FFlush{});
	}
	return *this;
}

FLoopbackReply& FLoopbackReply::StallAt(std::size_t Offset)
{
	ReplaceFrom(Offset, FStall{});
	return *this;
}

FLoopbackReply& FLoopbackReply::WaitAt(std::size_t Offset, std::shared_ptr<FLoopbackGate> Gate)
{
	InsertAt(Offset, FWait{std::move(Gate)});
	return *this;
}

FLoopbackReply& FLoopbackReply::DripFrom(
	std::size_t Offset, std::size_t PieceSize, const std::shared_ptr<FLoopbackGate>& Gate)
{
	const std::size_t End = WireSize();
	for (std::size_t At = Offset; At < End; At += PieceSize)
	{
		WaitAt(At, Gate);
	}
	return *this;
}

FLoopbackReply& FLoopbackReply::ThenEnd(EEnd How)
{
	Script.push_back(FEnd{How});
	return *this;
}

std::size_t FLoopbackReply::WireSize() const
{
	std::size_t Size = 0;
	for (const FStep& Step : Script)
	{
		if (const FSend* Send = std::get_if<FSend>(&Step))
		{
			Size += Send->Size * Send->Times;
		}
	}
	return Size;
}

std::size_t FLoopbackReply::StepAt(std::size_t Offset)
{
	std::size_t Passed = 0;
	for (std::size_t Index = 0; Index < Script.size(); ++Index)
	{
		FSend* Send = std::get_if<FSend>(&Script[Index]);
		if (Send == nullptr)
		{
			continue;
		}
		if (Offset == Passed)
		{
			return Index;
		}
		if (Send->Times == 1 && Offset < Passed + Send->Size)
		{
			FSend Tail = *Send;
			Send->Size = Offset - Passed;
			Tail.Offset += Send->Size;
			Tail.Size -= Send->Size;
			Script.insert(Script.begin() + static_cast<std::ptrdiff_t>(Index) + 1, std::move(Tail));
			return Index + 1;
		}
		Passed += Send->Size * Send->Times;
	}
	if (Offset != Passed)
	{
		throw std::out_of_range("an offset behind the reply, or inside a repeated buffer");
	}
	const auto IsEnd = [](const FStep& Step) { return std::holds_alternative<FEnd>(Step); };
	return static_cast<std::size_t>(std::find_if(Script.begin(), Script.end(), IsEnd) - Script.begin());
}

void FLoopbackReply::InsertAt(std::size_t Offset, FStep Step)
{
	const std::size_t Index = StepAt(Offset);
	Script.insert(Script.begin() + static_cast<std::ptrdiff_t>(Index), std::move(Step));
}

void FLoopbackReply::ReplaceFrom(std::size_t Offset, FStep Step)
{
	Script.resize(StepAt(Offset));
	Script.push_back(std::move(Step));
}
