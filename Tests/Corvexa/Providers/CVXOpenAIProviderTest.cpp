#include "Corvexa/Providers/ProviderFixture.h"

namespace
{
std::string Data(const std::string& Json)
{
	return "data: " + Json + "\n\n";
}

/** A chunk whose one choice holds a delta. */
std::string Delta(const std::string& Members, const std::string& FinishReason = "null")
{
	return Data(R"({"id":"x","choices":[{"index":0,"delta":{)" + Members + R"(},"finish_reason":)" + FinishReason +
		R"(}],"usage":null})");
}

std::string Word(const std::string& Text)
{
	return Delta(R"("content":")" + Text + "\"");
}

std::string Call(const std::string& Members)
{
	return Delta(R"("tool_calls":[{)" + Members + "}]");
}

const std::string Usage = Data(R"({"choices":[],"usage":{"prompt_tokens":12,"completion_tokens":34}})");
const std::string Done = Data("[DONE]");

class CVXOpenAIProvider : public FProviderFixture
{
protected:
	CVXOpenAIProvider()
		: FProviderFixture(ECVXProviderType::OpenAICompat)
	{
	}
};
} // namespace

TEST_F(CVXOpenAIProvider, TheRequestGoesToTheRightPlace)
{
	FHttpRequestMessage Got = Send({});
	EXPECT_EQ(Got.Method, "POST");
	EXPECT_EQ(Got.Target, "/chat/completions");
	EXPECT_EQ(Got.Header("Content-Type"), "application/json");
	EXPECT_EQ(Got.Header("Authorization"), std::string("Bearer ") + Key);
	EXPECT_FALSE(Got.HasHeader("HTTP-Referer"));
	EXPECT_EQ(Provider->GetMaxContextTokens(), 128000);
	EXPECT_EQ(Provider->GetProviderName(), TEXT("OpenAI"));

	Profile.BaseURL = FString(Server.Url("/OpenRouter.ai/api/v1").c_str());
	MakeProvider();
	Got = Send({});
	EXPECT_EQ(Got.Target, "/OpenRouter.ai/api/v1/chat/completions");
	EXPECT_EQ(Got.Header("X-Title"), "Corvexa");
	EXPECT_FALSE(Got.Header("HTTP-Referer").empty());
}

TEST_F(CVXOpenAIProvider, EveryChunkDoesItsPart)
{
	FLogCapture Log;
	EXPECT_EQ(
		Play(FLoopbackReply::Events({
			Delta(R"("role":"assistant","content":null)"),
			Delta(R"("reasoning_content":"hm")"),
			Delta(R"("reasoning_content":"","content":"")"),
			Delta(R"("content":"says","reasoning_content":"thinks")"),
			Word("Gr\xC3\xBC"),
			Data(R"({"choices":[{"delta":{"content":"first"}},{"delta":{"content":"second choice"}}]})"),
			Data(R"({"error":{"message":"not read"}})"),
			Data(R"({"choices":[{"message":{},"finish_reason":"stop"}]})"),
			Call(R"("index":1,"id":"b","type":"function","function":{"name":"two","arguments":""})"),
			Call(R"("index":0,"id":"a","function":{"name":"one","arguments":"{\"x\""})"),
			Call(R"("index":1,"function":{"arguments":"{\"y\":"})"),
			Delta(R"("tool_calls":[{"index":0,"function":{"arguments":":1}"}},{"index":1,"id":"",)"
				  R"("function":{"name":"","arguments":"2}"}},{"index":2,"id":"c","function":{"name":"three"}}])"),
			Delta("", R"("Tool_Calls")"),
			Usage,
			Done,
			Word("after the end"),
		})),
		(TArray<FString>{TEXT("reasoning hm"), TEXT("reasoning thinks"), TEXT("text says"), TEXT("text Grü"),
			TEXT("text first"), TEXT("call b two {\"y\":2}"), TEXT("call a one {\"x\":1}"), TEXT("call c three {}"),
			TEXT("finished 12 34 0 0")}));
	EXPECT_EQ(Log.Count(TEXT("orphaned"), ELogVerbosity::Warning), 0);
}

TEST_F(CVXOpenAIProvider, AnAnswerEndsAsItsFinishReasonSays)
{
	FLogCapture Log;
	const std::string Half = Call(R"("index":0,"id":"a","function":{"name":"one","arguments":"{}"})");
	const struct
	{
		std::vector<std::string> Events;
		TArray<FString> Told;
	} Cases[] = {
		{{Word("a"), Delta("", R"("stop")"), Usage, Done}, {TEXT("text a"), TEXT("finished 0 0 0 0")}},
		{{Usage, Delta(R"("content":"a")", R"("STOP")")}, {TEXT("text a"), TEXT("finished 12 34 0 0")}},
		{{Usage, Delta("", R"("length")"), Done}, {TEXT("finished 12 34 0 0 truncated")}},
		{{Word("a"), Delta("", R"("content_filter")"), Usage, Done}, {TEXT("text a"), TEXT("finished 12 34 0 0")}},
		{{Half, Done}, {TEXT("call a one {}"), TEXT("finished 0 0 0 0")}},
		{{Half, Delta("", R"("length")")}, {TEXT("call a one {}"), TEXT("finished 0 0 0 0 truncated")}},
	};
	for (const auto& Case : Cases)
	{
		EXPECT_EQ(Play(FLoopbackReply::Events(Case.Events)), Case.Told);
	}
	EXPECT_EQ(Log.Count(TEXT("HandleStreamDone: finalizing 1 orphaned tool calls for "), ELogVerbosity::Warning), 2);
	EXPECT_FALSE(Log.Contains(TEXT("[DONE] was not received")));

	EXPECT_EQ(Play(FLoopbackReply::Events({Half, Usage})),
		(TArray<FString>{TEXT("call a one {}"), TEXT("finished 12 34 0 0")}));
	EXPECT_EQ(Log.Count(TEXT("HTTP completed 200 but SSE [DONE] was not received for "), ELogVerbosity::Warning), 1);
}

TEST_F(CVXOpenAIProvider, AWordReadsTheSameWhateverCameBefore)
{
	EXPECT_EQ(Play(FLoopbackReply::Events({
				  Word("one"),
				  Word(R"(two \"quoted\"\n\u00e4)"),
				  Word(""),
				  Word("three"),
				  Delta(R"("reasoning_content":"four")"),
				  Delta(R"("reasoning_content":"five")"),
				  Delta(R"("content":"six")", R"("tool_calls")"),
				  Delta(R"("content":"x","content":"seven")"),
				  Delta(R"("content":"x","content":"eight")"),
				  Delta(R"("content":"nine","reasoning_content":"x","reasoning_content":"")"),
				  Delta(R"("content":"nine","reasoning_content":"y","reasoning_content":"")"),
				  Delta(R"("content":7)"),
				  Data(R"({"usage":{"prompt_tokens":5},"choices":[{"delta":{"content":"ten"}}]})"),
				  Data(R"({"usage":{"prompt_tokens":5},"choices":[{"delta":{"content":"eleven"}}]})"),
				  Done,
			  })),
		(TArray<FString>{TEXT("text one"), TEXT("text two \"quoted\"\nä"), TEXT("text three"), TEXT("reasoning four"),
			TEXT("reasoning five"), TEXT("text six"), TEXT("text seven"), TEXT("text eight"), TEXT("text nine"),
			TEXT("text nine"), TEXT("text ten"), TEXT("text eleven"), TEXT("finished 5 0 0 0")}));
}

TEST_F(CVXOpenAIProvider, AnAnswerCutAnywhereTellsTheSame)
{
	ExpectSameWhereverCut(Delta(R"("reasoning_content":"hm")") + Word("Gr\xC3\xBC\xF0\x9F\x98\x80") + Word("a\\nb") +
			Call(R"("index":0,"id":"a","function":{"name":"one","arguments":"{"})") +
			Call(R"("index":0,"function":{"arguments":"}"})") + Delta("", R"("tool_calls")") + Usage + Done,
		{TEXT("reasoning hm"), TEXT("text Grü😀"), TEXT("text a\nb"), TEXT("call a one {}"),
			TEXT("finished 12 34 0 0")});
}

TEST_F(CVXOpenAIProvider, EveryFailureHasItsTextAndNoneGivesTheKeyAway)
{
	const FLogCapture Log;
	const std::string Bad = Data("{broken");
	const std::string Tells = Data("{bad sk-test-s3cret");
	const struct
	{
		FLoopbackReply Reply;
		TArray<FString> Told;
	} Cases[] = {
		{FLoopbackReply::Sized(401, "bad key sk-test-s3cret"), {TEXT("error HTTP 401: bad key [API key]")}},
		{FLoopbackReply::Sized(429, "x", {{"Retry-After", "30"}}), {TEXT("error HTTP 429: x [Retry-After: 30]")}},
		{FLoopbackReply::Sized(429, "x"), {TEXT("error HTTP 429: x")}},
		{FLoopbackReply::Sized(500, std::string(10000, 'e')), {TEXT("error HTTP 500: ") + FString::ChrN(500, u'e')}},
		{FLoopbackReply::Events({Word("a"), Bad, Bad, Word("a"), Bad, Bad, Data("{}"), Bad, Data("[1]"), Tells, Done}),
			{TEXT("text a"), TEXT("text a"),
				TEXT("error SSE stream corrupted: 3 consecutive JSON parse failures. Last data: {bad [API key]")}},
		{FLoopbackReply::Raw("garbage\r\n\r\n"), {TEXT("error HTTP connection failed.")}},
	};
	for (const auto& Case : Cases)
	{
		EXPECT_EQ(Play(Case.Reply), Case.Told);
	}
	EXPECT_TRUE(Log.Contains(TEXT("Failed to parse SSE JSON (consecutive: 3): {bad [API key]")));
	EXPECT_FALSE(Log.Contains(TEXT("s3cret")));
}

TEST_F(CVXOpenAIProvider, NothingIsToldAfterACancelOrTheProvidersEnd)
{
	// All of it in one chunk, so that the rest of the very event must be held back too.
	ExpectSilenceAfterFirstWord({Delta(R"("content":"a","tool_calls":[{"index":0,"id":"a"}])", R"("stop")") + Done});
}
