#include "Loopback/LoopbackServer.h"

#include "Support/Tests/Loopback/RawClient.h"

#include <gtest/gtest.h>
#include <memory>

namespace
{
using EEnd = FLoopbackReply::EEnd;

constexpr const char* Get = "GET /x HTTP/1.1\r\nHost: h\r\n\r\n";

/** All bytes that the reply puts on the wire, up to the end of the connection. */
std::string Fetched(FLoopbackServer& Server, FLoopbackReply Reply, FRawClient::EEnd& OutEnd)
{
	Server.Enqueue(std::move(Reply));
	FRawClient Client(Server.Port());
	Client.Send(Get);
	std::string All = Client.ReadToEnd();
	OutEnd = Client.End();
	return All;
}

std::string Fetched(FLoopbackServer& Server, FLoopbackReply Reply)
{
	FRawClient::EEnd End = FRawClient::EEnd::None;
	return Fetched(Server, std::move(Reply.ThenEnd()), End);
}
}

TEST(LoopbackServer, AnswersManyRequestsOverOneConnectionAndRecordsThem)
{
	FLoopbackServer Server;
	Server.Route("/x",
		[](const FHttpRequestMessage& Request) {
			return FLoopbackReply::Sized(200, Request.Method + Request.Body, {{"X-Own", "v"}});
		});
	Server.Enqueue(FLoopbackReply::Sized(429, "", {{"Retry-After", "3"}}));

	FRawClient Client(Server.Port());
	Client.Send(Get);
	const std::string First = "HTTP/1.1 429 Too Many Requests\r\nRetry-After: 3\r\nContent-Length: 0\r\n\r\n";
	EXPECT_EQ(First, Client.ReadBytes(First.size()));
	Client.Send("POST /x?q HTTP/1.1\r\nContent-Length: 3\r\n\r\nabcGET /none HTTP/1.1\r\nConnection: close\r\n\r\n");
	EXPECT_EQ("HTTP/1.1 200 OK\r\nX-Own: v\r\nContent-Length: 7\r\n\r\nPOSTabc"
			  "HTTP/1.1 404 Not Found\r\nContent-Length: 14\r\n\r\nno route /none",
		Client.ReadToEnd());
	EXPECT_EQ(FRawClient::EEnd::Closed, Client.End());

	const std::vector<FLoopbackServer::FRecord> Records = Server.Requests();
	ASSERT_EQ(3U, Records.size());
	EXPECT_EQ("/x?q", Records[1].Request.Target);
	EXPECT_EQ("abc", Records[1].Request.Body);
	EXPECT_EQ(Records[0].Connection, Records[2].Connection);
}

TEST(LoopbackServer, FramesBodiesAsAsked)
{
	FLoopbackServer Server;
	EXPECT_EQ("HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n3\r\nabc\r\n10\r\n0123456789abcdef\r\n0\r\n\r\n",
		Fetched(Server, FLoopbackReply::Chunked(200, {"abc", "", "0123456789abcdef"})));
	EXPECT_EQ("HTTP/1.1 500 Internal Server Error\r\nConnection: close\r\n\r\nbody",
		Fetched(Server, FLoopbackReply::UntilClose(500, "body")));
	EXPECT_EQ("HTTP/1.1 200 OK\r\nContent-Length: 9\r\n\r\nabcabcabc",
		Fetched(Server, FLoopbackReply::Repeated(std::make_shared<const std::string>("abc"), 3)));
	EXPECT_EQ("HTTP/1.1 200 OK\r\nContent-Length: 99\r\n\r\nabc",
		Fetched(Server, FLoopbackReply::WrongLength(200, 99, "abc")));
	EXPECT_EQ("HTTP/1.1 302 Found\r\nLocation: /y\r\nContent-Length: 0\r\n\r\n",
		Fetched(Server, FLoopbackReply::Redirect("/y")));
	EXPECT_EQ("garbage", Fetched(Server, FLoopbackReply::Raw("garbage")));
}

TEST(LoopbackServer, StreamsALargeBodyFromOneBuffer)
{
	FLoopbackServer Server;
	const auto Block = std::make_shared<const std::string>(std::string(1 << 20, 'b'));
	const std::string All = Fetched(Server, FLoopbackReply::Repeated(Block, 16));
	EXPECT_EQ(std::string(16 << 20, 'b'), All.substr(All.find("\r\n\r\n") + 4));
}

TEST(LoopbackServer, CutsAReplyAtEveryByte)
{
	FLoopbackServer Server;
	const FLoopbackReply Whole = FLoopbackReply::Chunked(200, {"abc", "de"});
	const std::string All = Fetched(Server, Whole);
	ASSERT_EQ(Whole.WireSize(), All.size());
	for (std::size_t Offset = 0; Offset <= All.size(); ++Offset)
	{
		FRawClient::EEnd End = FRawClient::EEnd::None;
		EXPECT_EQ(All.substr(0, Offset), Fetched(Server, FLoopbackReply(Whole).CutAt(Offset), End));
		EXPECT_EQ(FRawClient::EEnd::Closed, End);
		EXPECT_EQ(All.substr(0, Offset), Fetched(Server, FLoopbackReply(Whole).CutAt(Offset, EEnd::Reset), End));
		EXPECT_EQ(FRawClient::EEnd::Reset, End);
	}
}

TEST(LoopbackServer, SplitsACharacterOverTwoReads)
{
	FLoopbackServer Server;
	FLoopbackReply Reply = FLoopbackReply::Sized(200, "\xE2\x82\xAC!");
	const std::size_t Body = Reply.HeadSize();
	Server.Enqueue(Reply.SplitAt({Body, Body + 1, Body + 2}));
	FRawClient Client(Server.Port());
	Client.Send(Get);
	EXPECT_EQ(Body, Client.ReadPiece().size());
	EXPECT_EQ("\xE2", Client.ReadPiece());
	EXPECT_EQ("\x82", Client.ReadPiece());
	EXPECT_EQ("\xAC!", Client.ReadPiece());
}

TEST(LoopbackServer, DripsNoFasterThanTheTestAllows)
{
	FLoopbackServer Server;
	const std::shared_ptr<FLoopbackGate> Gate = FLoopbackGate::Create();
	FLoopbackReply Reply = FLoopbackReply::UntilClose(200, "0123456789");
	const std::size_t Head = Reply.HeadSize();
	Server.Enqueue(Reply.DripFrom(Head, 4, Gate));
	FRawClient Client(Server.Port());
	Client.Send(Get);
	EXPECT_EQ(Head, Client.ReadBytes(Head).size());
	EXPECT_FALSE(Client.HasUnread());
	Gate->Release();
	EXPECT_EQ("0123", Client.ReadBytes(4));
	EXPECT_FALSE(Client.HasUnread());
	Gate->Open();
	EXPECT_EQ("456789", Client.ReadToEnd());
}

TEST(LoopbackServer, EndsEveryConnectionAtOnceWhenDestroyed)
{
	const std::shared_ptr<FLoopbackGate> Gate = FLoopbackGate::Create();
	const FLoopbackReply Replies[] = {
		FLoopbackReply::Silence(),
		FLoopbackReply::Sized(200, "abc").StallAt(5),
		FLoopbackReply::Sized(200, "abc").WaitAt(0, Gate),
		FLoopbackReply::Sized(200, "abc"),
		FLoopbackReply::EndlessHeaders(),
		FLoopbackReply::Repeated(std::make_shared<const std::string>(1 << 20, 'x'), 1000),
	};
	for (const FLoopbackReply& Reply : Replies)
	{
		auto Server = std::make_unique<FLoopbackServer>();
		Server->Enqueue(Reply);
		FRawClient Idle(Server->Port());
		FRawClient HalfARequest(Server->Port());
		HalfARequest.Send("GET /half HTT");
		FRawClient Client(Server->Port());
		Client.Send(Get);
		ASSERT_TRUE(Server->WaitForRequests(1));
		Server.reset();
		Client.ReadToEnd();
		EXPECT_NE(FRawClient::EEnd::TimedOut, Client.End());
		Idle.ReadToEnd();
		EXPECT_NE(FRawClient::EEnd::TimedOut, Idle.End());
	}
}

TEST(LoopbackServer, NoticesThatTheClientWent)
{
	FLoopbackServer Server;
	std::size_t Clients = 0;
	for (const FLoopbackReply& Reply : {FLoopbackReply::Silence(), FLoopbackReply::EndlessHeaders()})
	{
		Server.Enqueue(Reply);
		++Clients;
		{
			FRawClient Client(Server.Port());
			Client.Send(Get);
			ASSERT_TRUE(Server.WaitForRequests(Clients));
			EXPECT_EQ(Clients - 1, Server.EndedCount());
		}
		EXPECT_TRUE(Server.WaitForEnded(Clients));
	}
}

TEST(LoopbackServer, RefusesWhatIsNoRequestAndInvitesALargeBody)
{
	FLoopbackServer Server;
	FRawClient Confused(Server.Port());
	Confused.Send("hello\r\n");
	EXPECT_EQ("HTTP/1.1 400 Bad Request", Confused.ReadToEnd().substr(0, 24));

	Server.Route("/x", FLoopbackReply::Sized(204, ""));
	FRawClient Careful(Server.Port());
	Careful.Send("PUT /x HTTP/1.1\r\nContent-Length: 2\r\nExpect: 100-continue\r\n\r\n");
	EXPECT_EQ("HTTP/1.1 100 Continue\r\n\r\n", Careful.ReadBytes(25));
	Careful.Send("ab");
	EXPECT_EQ("HTTP/1.1 204 No Content", Careful.ReadBytes(23).substr(0, 23));
}
