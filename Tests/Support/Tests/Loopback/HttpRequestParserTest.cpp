#include "Loopback/HttpRequestParser.h"

#include <gtest/gtest.h>

namespace
{
/** Feeds the text in two parts, cut at the offset. */
FHttpRequestParser Parsed(std::string_view Text, std::size_t Cut, std::size_t& OutTaken)
{
	FHttpRequestParser Parser;
	OutTaken = Parser.Feed(Text.substr(0, Cut));
	OutTaken += Parser.Feed(Text.substr(OutTaken));
	return Parser;
}
}

TEST(HttpRequestParser, ReadsTheSameRequestWhereverTheStreamIsCut)
{
	const std::string_view Next = "GET / HTTP/1.1\r\n";
	const struct
	{
		std::string Text;
		const char* Method;
		const char* Query;
		const char* Body;
	} Cases[] = {
		{"GET /a/b?x=1&y=%20 HTTP/1.1\r\nHost: h\r\n\r\n", "GET", "x=1&y=%20", ""},
		{"POST /a/b HTTP/1.1\r\nHost:h\r\ncontent-LENGTH:  5 \r\n\r\nab\r\nc", "POST", "", "ab\r\nc"},
		{"PUT /a/b? HTTP/1.1\nHost: h\nContent-Length: 0\n\n", "PUT", "", ""},
		{"POST /a/b HTTP/1.1\r\nHost: h\r\nTransfer-Encoding: Chunked\r\n\r\n3;x=y\r\nabc\r\nA\r\n0123456789\r\n0\r\n"
		 "Trailer: t\r\n\r\n",
			"POST", "", "abc0123456789"},
	};
	for (const auto& Case : Cases)
	{
		for (std::size_t Cut = 0; Cut <= Case.Text.size(); ++Cut)
		{
			std::size_t Taken = 0;
			FHttpRequestParser Parser = Parsed(Case.Text + std::string(Next), Cut, Taken);
			ASSERT_TRUE(Parser.IsComplete()) << Case.Text << " cut at " << Cut;
			EXPECT_EQ(Case.Text.size(), Taken) << "the next request's bytes stay where they are";
			const FHttpRequestMessage Request = Parser.Take();
			EXPECT_EQ(Case.Method, Request.Method);
			EXPECT_EQ("/a/b", Request.Path);
			EXPECT_EQ(Case.Query, Request.Query);
			EXPECT_EQ("h", Request.Header("hOST"));
			EXPECT_EQ(Case.Body, Request.Body);
			EXPECT_FALSE(Parser.IsComplete());
		}
	}
}

TEST(HttpRequestParser, RefusesWhatIsNoRequestOrTooLarge)
{
	const std::string Cases[] = {
		"nonsense\r\n",
		"GET /\r\n",
		"GET / FTP/1.0\r\n",
		"GET / HTTP/1.1\r\nno colon\r\n",
		"POST / HTTP/1.1\r\nContent-Length: many\r\n\r\n",
		"POST / HTTP/1.1\r\nContent-Length: -1\r\n\r\n",
		"POST / HTTP/1.1\r\nContent-Length: 99999999999\r\n\r\n",
		"POST / HTTP/1.1\r\nTransfer-Encoding: chunked\r\n\r\nxyz\r\n",
		"POST / HTTP/1.1\r\nTransfer-Encoding: chunked\r\n\r\n1\r\nab\r\n",
		"POST / HTTP/1.1\r\nTransfer-Encoding: chunked\r\n\r\nffffffffffffffff\r\n",
		"GET / HTTP/1.1\r\nX: " + std::string(FHttpRequestParser::MaxHeadBytes, 'x'),
	};
	for (const std::string& Text : Cases)
	{
		FHttpRequestParser Parser;
		Parser.Feed(Text);
		EXPECT_TRUE(Parser.IsMalformed()) << Text.substr(0, 80);
		EXPECT_EQ(0U, Parser.Feed("GET / HTTP/1.1\r\n\r\n")) << "nothing is read behind a fault";
	}
}

TEST(HttpRequestParser, KeepsTheConnectionAsTheVersionAndHeaderSay)
{
	const struct
	{
		const char* Text;
		bool bKeep;
	} Cases[] = {
		{"GET / HTTP/1.1\r\n\r\n", true},
		{"GET / HTTP/1.1\r\nConnection: Close\r\n\r\n", false},
		{"GET / HTTP/1.0\r\n\r\n", false},
		{"GET / HTTP/1.0\r\nConnection: keep-alive\r\n\r\n", true},
	};
	for (const auto& Case : Cases)
	{
		FHttpRequestParser Parser;
		Parser.Feed(Case.Text);
		ASSERT_TRUE(Parser.IsComplete());
		EXPECT_EQ(Case.bKeep, Parser.Message().WantsKeepAlive()) << Case.Text;
	}
}
