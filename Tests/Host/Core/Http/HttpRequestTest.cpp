#include "Async/Async.h"
#include "CoreGlobals.h"
#include "HttpModule.h"
#include "Loopback/LoopbackServer.h"
#include "Serialization/Archive.h"
#include "Support/FaultPlan.h"
#include "Support/HostTypePrinting.h"
#include "Support/LogCapture.h"
#include "Support/LoopPump.h"
#include "Support/TestClock.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <mutex>
#include <thread>

namespace
{
/** Takes a body on the HTTP thread. */
class FBodyStream final : public FArchive
{
public:
	void Serialize(void* Data, int64 Num) override
	{
		EXPECT_FALSE(IsInGameThread());
		const std::lock_guard Guard(Mutex);
		Bytes.append((const char*)Data, (size_t)Num);
		if (Bytes.size() >= FailAt)
		{
			SetError();
		}
	}
	std::string Get() const
	{
		const std::lock_guard Guard(Mutex);
		return Bytes;
	}

	size_t FailAt = SIZE_MAX;

private:
	mutable std::mutex Mutex;
	std::string Bytes;
};

/** Posts a task to the game thread for each block, as one does that hands the bytes on. */
class FPostingStream final : public FArchive
{
public:
	void Serialize(void*, int64 Num) override
	{
		const int32 Waiting = ++Posted - Run;
		MostWaiting = std::max(MostWaiting, Waiting);
		AsyncTask(ENamedThreads::GameThread,
			[this, Num]
			{
				++Run;
				BytesDelivered += (size_t)Num;
			});
	}

	std::atomic<int32> Posted{0};
	std::atomic<int32> Run{0};
	/** Touched by the HTTP thread until the request's end. */
	int32 MostWaiting = 0;
	size_t BytesDelivered = 0;
};

/** What a completion told. */
struct FOutcome
{
	bool bCompleted = false;
	bool bSucceeded = false;
	FHttpResponsePtr Response;
	EHttpFailureReason Reason = EHttpFailureReason::None;
};

FHttpRequestRef MakeRequest(const FLoopbackServer& Server, FOutcome& Outcome, const char* Path = "/")
{
	const FHttpRequestRef Request = FHttpModule::Get().CreateRequest();
	Request->SetURL(FString(Server.Url(Path).c_str()));
	Request->OnProcessRequestComplete().BindLambda(
		[&Outcome](FHttpRequestPtr Ended, FHttpResponsePtr Response, bool bSucceeded)
		{
			EXPECT_TRUE(IsInGameThread());
			EXPECT_FALSE(Outcome.bCompleted) << "the completion is called once";
			Outcome = {true, bSucceeded, Response, Ended->GetFailureReason()};
		});
	return Request;
}

/** Runs a request to its end. */
FOutcome RunToEnd(FLoopPump& Pump, const FHttpRequestRef& Request, FOutcome& Outcome)
{
	EXPECT_TRUE(Request->ProcessRequest());
	EXPECT_TRUE(Pump.Until([&Outcome] { return Outcome.bCompleted; }));
	return Outcome;
}
} // namespace

TEST(HttpRequest, SendsVerbHeadersAndBodyAndReadsTheAnswer)
{
	FLoopPump Pump;
	FLoopbackServer Server;
	Server.Enqueue(FLoopbackReply::Sized(201, "gr\xC3\xBC\xC3\x9F", {{"X-Answer", "a"}, {"x-answer", "b"}}));
	FOutcome Outcome;
	const FHttpRequestRef Request = MakeRequest(Server, Outcome, "/v1/things?q=1");
	Request->SetVerb(TEXT("post"));
	Request->SetHeader(TEXT("Content-Type"), TEXT("application/json"));
	Request->SetHeader(TEXT("content-type"), TEXT("text/plain"));
	Request->SetContentAsString(TEXT("{\"ключ\": 1}"));
	RunToEnd(Pump, Request, Outcome);

	ASSERT_TRUE(Outcome.bSucceeded);
	EXPECT_EQ(Outcome.Response->GetResponseCode(), 201);
	EXPECT_EQ(Outcome.Response->GetContentAsString(), TEXT("grüß"));
	EXPECT_EQ(Outcome.Response->GetHeader(TEXT("X-ANSWER")), TEXT("a, b"));
	EXPECT_EQ(Outcome.Response->GetContentLength(), 6u);
	EXPECT_EQ(Request->GetStatus(), EHttpRequestStatus::Succeeded);
	const FHttpRequestMessage Got = Server.Requests().at(0).Request;
	EXPECT_EQ(Got.Method, "POST");
	EXPECT_EQ(Got.Target, "/v1/things?q=1");
	EXPECT_EQ(Got.Header("Content-Type"), "text/plain");
	EXPECT_EQ(Got.Body, "{\"\xD0\xBA\xD0\xBB\xD1\x8E\xD1\x87\": 1}");
	EXPECT_FALSE(Got.HasHeader("Expect"));
}

TEST(HttpRequest, AStreamGetsTheBodyAsItArrivesAndTheEndComesBehindIt)
{
	FLoopPump Pump;
	FLoopbackServer Server;
	const auto Gate = FLoopbackGate::Create();
	FLoopbackReply Reply = FLoopbackReply::Chunked(200, {"first", "second"});
	const size_t Second = Reply.WireSize() - std::string("6\r\nsecond\r\n0\r\n\r\n").size();
	Server.Enqueue(Reply.WaitAt(Second, Gate));
	FOutcome Outcome;
	const FHttpRequestRef Request = MakeRequest(Server, Outcome);
	const TSharedRef<FBodyStream> Stream = MakeShared<FBodyStream>();
	EXPECT_TRUE(Request->SetResponseBodyReceiveStream(Stream));
	ASSERT_TRUE(Request->ProcessRequest());
	EXPECT_TRUE(Pump.Until([&Stream] { return Stream->Get() == "first"; }));
	EXPECT_FALSE(Request->SetResponseBodyReceiveStream(Stream));
	EXPECT_EQ(Request->GetResponse()->GetResponseCode(), 200);
	EXPECT_FALSE(Outcome.bCompleted);
	Gate->Open();
	EXPECT_TRUE(Pump.Until([&Outcome] { return Outcome.bCompleted; }));
	EXPECT_EQ(Stream->Get(), "firstsecond");
	EXPECT_TRUE(Outcome.Response->GetContent().IsEmpty());
}

TEST(HttpRequest, ABodyWaitsWhileTheGameThreadIsBehind)
{
	FLoopPump Pump;
	FLoopbackServer Server;
	constexpr size_t BlockBytes = 16384;
	constexpr size_t Blocks = 1000;
	Server.Enqueue(FLoopbackReply::Repeated(std::make_shared<const std::string>(BlockBytes, 'x'), Blocks));
	FOutcome Outcome;
	const FHttpRequestRef Request = MakeRequest(Server, Outcome);
	const TSharedRef<FPostingStream> Stream = MakeShared<FPostingStream>();
	Request->SetResponseBodyReceiveStream(Stream);
	ASSERT_TRUE(Request->ProcessRequest());
	// The loop stands still until nothing more comes.
	while (Stream->Posted < FHttpModule::MaxTasksAhead)
	{
		std::this_thread::yield();
	}
	EXPECT_TRUE(Pump.Until([&Outcome] { return Outcome.bCompleted; }));
	EXPECT_TRUE(Outcome.bSucceeded);
	EXPECT_EQ(Stream->BytesDelivered, Blocks * BlockBytes);
	EXPECT_LE(Stream->MostWaiting, FHttpModule::MaxTasksAhead);
}

TEST(HttpRequest, EveryWayToLoseTheConnectionEndsInOneFailure)
{
	FLoopPump Pump;
	FLoopbackServer Server;
	const auto Sized = [] { return FLoopbackReply::Sized(200, std::string(1000, 'x')); };
	const auto Chunked = [] { return FLoopbackReply::Chunked(200, {std::string(500, 'x'), std::string(500, 'y')}); };
	TArray<FLoopbackReply> Replies;
	for (const FLoopbackReply::EEnd How : {FLoopbackReply::EEnd::Close, FLoopbackReply::EEnd::Reset})
	{
		for (const size_t Offset : {size_t(0), size_t(7), Sized().HeadSize() + 10})
		{
			Replies.Add(Sized().CutAt(Offset, How));
		}
		Replies.Add(Chunked().CutAt(Chunked().HeadSize() + 300, How));
	}
	Replies.Add(FLoopbackReply::WrongLength(200, 2000, std::string(1000, 'x')));
	Replies.Add(FLoopbackReply::Raw("this is not HTTP\r\n\r\n"));
	Replies.Add(FLoopbackReply::EndlessHeaders());
	for (int32 Index = 0; Index < Replies.Num(); ++Index)
	{
		Server.Enqueue(Replies[Index]);
		FOutcome Outcome;
		RunToEnd(Pump, MakeRequest(Server, Outcome), Outcome);
		EXPECT_FALSE(Outcome.bSucceeded) << "reply " << Index;
		EXPECT_EQ(Outcome.Reason, EHttpFailureReason::ConnectionError) << "reply " << Index;
	}
	EXPECT_EQ(FHttpModule::Get().GetHttpManager().GetNumActiveRequests(), 0);
}

TEST(HttpRequest, NoServerAndNoNetworkAreConnectionErrors)
{
	FLoopPump Pump;
	FOutcome Refused;
	FHttpRequestPtr Request;
	{
		const FLoopbackServer Gone;
		Request = MakeRequest(Gone, Refused);
	}
	RunToEnd(Pump, Request.ToSharedRef(), Refused);
	EXPECT_FALSE(Refused.bSucceeded);
	EXPECT_FALSE(Refused.Response.IsValid());
	EXPECT_EQ(Request->GetStatus(), EHttpRequestStatus::Failed_ConnectionError);

	FLoopbackServer Server;
	const FFaultPlan Plan(EHostFault::Network, 1);
	FOutcome Injected;
	RunToEnd(Pump, MakeRequest(Server, Injected), Injected);
	EXPECT_EQ(Injected.Reason, EHttpFailureReason::ConnectionError);
	EXPECT_EQ(Server.RequestCount(), 0u);
}

TEST(HttpRequest, OnlySilenceCountsAgainstTheTimeOut)
{
	FLoopPump Pump;
	FLoopbackServer Server;
	FTestClock Clock;
	const auto Gate = FLoopbackGate::Create();
	FLoopbackReply Reply = FLoopbackReply::Sized(200, "abcdef");
	Server.Enqueue(Reply.DripFrom(Reply.HeadSize(), 1, Gate));
	FOutcome Outcome;
	const FHttpRequestRef Request = MakeRequest(Server, Outcome);
	const TSharedRef<FBodyStream> Stream = MakeShared<FBodyStream>();
	Request->SetResponseBodyReceiveStream(Stream);
	Request->SetTimeout(30.0f);
	ASSERT_TRUE(Request->ProcessRequest());
	for (size_t Count = 1; Count <= 3; ++Count)
	{
		// Together the pieces take three times as long as the time-out allows between two of them.
		Gate->Release();
		EXPECT_TRUE(Pump.Until([&] { return Stream->Get().size() == Count; }));
		Clock.Advance(20.0);
		Pump.Tick();
	}
	EXPECT_FALSE(Outcome.bCompleted);
	Clock.Advance(20.0);
	EXPECT_TRUE(Pump.Until([&Outcome] { return Outcome.bCompleted; }));
	EXPECT_FALSE(Outcome.bSucceeded);
	EXPECT_EQ(Outcome.Reason, EHttpFailureReason::TimedOut);
	EXPECT_EQ(Stream->Get(), "abc");
}

TEST(HttpRequest, ACancelledRequestCompletesOnceAsAFailureInAnyState)
{
	FLoopPump Pump;
	for (const int32 When : {0, 1, 2})
	{
		FLoopbackServer Server;
		FLoopbackReply Reply = FLoopbackReply::Sized(200, "abc");
		Server.Enqueue(When == 2 ? Reply.StallAt(Reply.HeadSize() + 1) : FLoopbackReply::Silence());
		FOutcome Outcome;
		const FHttpRequestRef Request = MakeRequest(Server, Outcome);
		const TSharedRef<FBodyStream> Stream = MakeShared<FBodyStream>();
		Request->SetResponseBodyReceiveStream(Stream);
		ASSERT_TRUE(Request->ProcessRequest());
		EXPECT_FALSE(Request->ProcessRequest()) << "it runs already";
		if (When == 2)
		{
			EXPECT_TRUE(Pump.Until([&Stream] { return Stream->Get() == "a"; }));
		}
		else if (When == 1)
		{
			EXPECT_TRUE(Server.WaitForRequests(1));
		}
		Request->CancelRequest();
		EXPECT_FALSE(Outcome.bCompleted) << "never from inside the call";
		EXPECT_TRUE(Pump.Until([&Outcome] { return Outcome.bCompleted; }));
		EXPECT_FALSE(Outcome.bSucceeded);
		EXPECT_EQ(Outcome.Reason, EHttpFailureReason::Cancelled);
		Request->CancelRequest();
	}
}

TEST(HttpRequest, AStreamThatReportsAnErrorEndsTheRequest)
{
	FLoopPump Pump;
	FLoopbackServer Server;
	Server.Enqueue(FLoopbackReply::Repeated(std::make_shared<const std::string>(65536, 'x'), 1000));
	FOutcome Outcome;
	const FHttpRequestRef Request = MakeRequest(Server, Outcome);
	const TSharedRef<FBodyStream> Stream = MakeShared<FBodyStream>();
	Stream->FailAt = 100000;
	Request->SetResponseBodyReceiveStream(Stream);
	RunToEnd(Pump, Request, Outcome);
	EXPECT_FALSE(Outcome.bSucceeded);
	EXPECT_EQ(Outcome.Reason, EHttpFailureReason::Other);
	EXPECT_LT(Stream->Get().size(), 10u * 1024 * 1024);
}

TEST(HttpRequest, TheLoopEndsWithRequestsInFlightAndCallsNoneOfThem)
{
	FLoopbackServer Server;
	FOutcome Outcome;
	FHttpRequestPtr Last;
	{
		FLoopPump Pump;
		for (int32 Index = 0; Index < 5; ++Index)
		{
			Server.Enqueue(FLoopbackReply::Silence());
			Last = MakeRequest(Server, Outcome);
			ASSERT_TRUE(Last->ProcessRequest());
		}
		Server.WaitForRequests(5);
	}
	Last->CancelRequest();
	EXPECT_FALSE(Outcome.bCompleted);
	EXPECT_FALSE(FHttpModule::IsAvailable());
	EXPECT_TRUE(Server.WaitForEnded(5));
}

TEST(HttpRequest, ACompletionMayStartTheRequestAnewAndConnectionsAreKept)
{
	FLoopPump Pump;
	FLoopbackServer Server;
	Server.Route("/", FLoopbackReply::Sized(200, "ok"));
	const FHttpRequestRef Request = FHttpModule::Get().CreateRequest();
	Request->SetURL(FString(Server.Url().c_str()));
	int32 Completions = 0;
	Request->OnProcessRequestComplete().BindLambda(
		[&](FHttpRequestPtr, FHttpResponsePtr Response, bool bSucceeded)
		{
			EXPECT_TRUE(bSucceeded);
			EXPECT_EQ(Response->GetContentAsString(), TEXT("ok"));
			if (++Completions < 3)
			{
				EXPECT_TRUE(Request->ProcessRequest());
			}
		});
	ASSERT_TRUE(Request->ProcessRequest());
	EXPECT_TRUE(Pump.Until([&Completions] { return Completions == 3; }));
	EXPECT_EQ(Server.ConnectionCount(), 1u);
}

TEST(HttpRequest, RedirectsAreFollowedButNeverWithCredentials)
{
	FLoopPump Pump;
	FLoopbackServer Server;
	Server.Route("/from", FLoopbackReply::Redirect(Server.Url("/to")));
	Server.Route("/to", FLoopbackReply::Sized(200, "there", {{"X-Last", "1"}}));
	FOutcome Plain;
	RunToEnd(Pump, MakeRequest(Server, Plain, "/from"), Plain);
	EXPECT_EQ(Plain.Response->GetContentAsString(), TEXT("there"));
	EXPECT_TRUE(Plain.Response->GetURL().EndsWith(TEXT("/to")));
	for (const TCHAR* Header : {TEXT("Authorization"), TEXT("x-api-key"), TEXT("X-Goog-Api-Key")})
	{
		FOutcome Secret;
		const FHttpRequestRef Request = MakeRequest(Server, Secret, "/from");
		Request->SetHeader(Header, TEXT("s3cret"));
		RunToEnd(Pump, Request, Secret);
		EXPECT_EQ(Secret.Response->GetResponseCode(), 302);
	}
}

TEST(HttpRequest, BadInputDoesNotStartAndSecretsStayOutOfTheLog)
{
	FLoopPump Pump;
	FLoopbackServer Server;
	const FLogCapture Log;
	const struct
	{
		const TCHAR* URL;
		const TCHAR* Header;
	} Cases[] = {{TEXT(""), TEXT("v")}, {TEXT("file:///etc/passwd"), TEXT("v")}, {TEXT("no scheme"), TEXT("v")},
		{TEXT("http://127.0.0.1/\r\nX: y"), TEXT("v")}, {TEXT("http://127.0.0.1/"), TEXT("s3cret\r\nInjected: 1")}};
	for (const auto& Case : Cases)
	{
		const FHttpRequestRef Request = FHttpModule::Get().CreateRequest();
		Request->SetURL(Case.URL);
		Request->SetHeader(TEXT("x-api-key"), Case.Header);
		EXPECT_FALSE(Request->ProcessRequest()) << TCHAR_TO_UTF8(Case.URL);
		EXPECT_EQ(Request->GetStatus(), EHttpRequestStatus::NotStarted);
	}
	FOutcome Outcome;
	Server.Enqueue(FLoopbackReply::Sized(401, "no"));
	const FHttpRequestRef Request = MakeRequest(Server, Outcome);
	Request->SetHeader(TEXT("x-api-key"), TEXT("s3cret"));
	RunToEnd(Pump, Request, Outcome);
	EXPECT_TRUE(Outcome.bSucceeded);
	EXPECT_EQ(Outcome.Response->GetResponseCode(), 401);
	EXPECT_FALSE(Log.Contains(TEXT("s3cret")));
}
