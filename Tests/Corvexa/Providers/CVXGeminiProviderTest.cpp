#include "Corvexa/Providers/ProviderFixture.h"

namespace
{
std::string Data(const std::string& Json)
{
	return "data: " + Json + "\r\n\r\n";
}

std::string Parts(const std::string& Elements, const std::string& Behind = "")
{
	return Data(R"({"candidates":[{"content":{"parts":[)" + Elements + R"(],"role":"model"})" + Behind + "}]}");
}

std::string Word(const std::string& Text)
{
	return Parts(R"({"text":")" + Text + "\"}");
}

const std::string Stop = Data(R"({"candidates":[{"finishReason":"STOP"}]})");

class CVXGeminiProvider : public FProviderFixture
{
protected:
	CVXGeminiProvider()
		: FProviderFixture(ECVXProviderType::Gemini)
	{
	}
};
} // namespace

TEST_F(CVXGeminiProvider, TheRequestGoesToTheRightPlaceWithTheKeyInAHeader)
{
	Profile.BaseURL = FString(Server.Url("/v1beta").c_str());
	Profile.ModelId = TEXT("gemini-2.5-pro");
	MakeProvider();
	const FHttpRequestMessage Got = Send({});
	EXPECT_EQ(Got.Method, "POST");
	EXPECT_EQ(Got.Target, "/v1beta/models/gemini-2.5-pro:streamGenerateContent?alt=sse");
	EXPECT_EQ(Got.Header("Content-Type"), "application/json");
	EXPECT_EQ(Got.Header("x-goog-api-key"), Key);
	EXPECT_EQ(Provider->GetMaxContextTokens(), 1000000);
	EXPECT_EQ(Provider->GetProviderName(), TEXT("Gemini"));
}

TEST_F(CVXGeminiProvider, EveryChunkDoesItsPart)
{
	EXPECT_EQ(
		Play(FLoopbackReply::Events({
			Data(R"({"usageMetadata":{"promptTokenCount":3,"candidatesTokenCount":1}})"),
			Parts(R"({"text":"a"},{"text":""},7,{"inlineData":{}},{"text":"Gr\u00fc"})"),
			Data(R"({"candidates":[{"content":{"parts":[{"text":"b"}]}},{"content":{"parts":[{"text":"no"}]}}]})"),
			Data(R"({"candidates":[],"promptFeedback":{}})"),
			Data(
				R"({"candidates":[{"content":{"parts":[{"functionCall":{"name":"read","args":{"z": 1, "a":[ 1.5 ]}}},)"
				R"({"text":"c","functionCall":{"args":[1],"name":"read"}},{"functionCall":{}}]},"finishReason":"STOP"}],)"
				R"("usageMetadata":{"candidatesTokenCount":9}})"),
			Word("after the end"),
		})),
		(TArray<FString>{TEXT("text a"), TEXT("text Grü"), TEXT("text b"),
			TEXT("call gemini_read_1 read {\"z\":1,\"a\":[1.5]}"), TEXT("text c"), TEXT("call gemini_read_2 read {}"),
			TEXT("call gemini__3  {}"), TEXT("finished 3 9 0 0")}));
}

TEST_F(CVXGeminiProvider, AnAnswerEndsAsItsFinishReasonSays)
{
	const struct
	{
		std::string Behind;
		TArray<FString> Told;
	} Cases[] = {
		{R"(,"finishReason":"stop")", {TEXT("text a"), TEXT("finished 0 0 0 0")}},
		{R"(,"finishReason":"MAX_TOKENS")", {TEXT("text a"), TEXT("finished 0 0 0 0 truncated")}},
		{R"(,"finishReason":"max_tokens")", {TEXT("text a"), TEXT("finished 0 0 0 0 truncated")}},
		{R"(,"finishReason":"SAFETY")", {TEXT("text a"), TEXT("text more"), TEXT("finished 0 0 0 0")}},
		{"", {TEXT("text a"), TEXT("text more"), TEXT("finished 0 0 0 0")}},
	};
	const FLogCapture Log;
	for (const auto& Case : Cases)
	{
		EXPECT_EQ(Play(FLoopbackReply::Events({Parts(R"({"text":"a"})", Case.Behind), Word("more")})), Case.Told);
	}
	EXPECT_FALSE(Log.Contains(TEXT("forcing stream done")));
}

TEST_F(CVXGeminiProvider, AnAnswerCutAnywhereTellsTheSame)
{
	// Calls would differ by their number.
	ExpectSameWhereverCut(Word("Gr\xC3\xBC\xF0\x9F\x98\x80") + Word("a\\nb") +
			Data(R"({"candidates":[{"content":{"parts":[{"text":"c"}]},"finishReason":"MAX_TOKENS"}],)"
				 R"("usageMetadata":{"promptTokenCount":12,"candidatesTokenCount":1}})"),
		{TEXT("text Grü😀"), TEXT("text a\nb"), TEXT("text c"), TEXT("finished 12 1 0 0 truncated")});
}

TEST_F(CVXGeminiProvider, EveryFailureHasItsTextAndNoneGivesTheKeyAway)
{
	const FLogCapture Log;
	const std::string Bad = Data("[DONE]");
	FLoopbackReply LostRefusal = FLoopbackReply::Sized(503, std::string(100, 'e'));
	LostRefusal.CutAt(LostRefusal.HeadSize() + 3);
	FLoopbackReply LostAnswer = FLoopbackReply::Events({Word("a"), Word("b")});
	LostAnswer.CutAt(LostAnswer.WireSize() - 30);
	const struct
	{
		FLoopbackReply Reply;
		FString Last;
	} Cases[] = {
		{FLoopbackReply::Sized(400, "bad key sk-test-s3cret"), TEXT("error HTTP 400: bad key [API key]")},
		{FLoopbackReply::Sized(429, "x", {{"Retry-After", "30"}}), TEXT("error HTTP 429: x [Retry-After: 30]")},
		{FLoopbackReply::Sized(500, std::string(10000, 'e')), TEXT("error HTTP 500: ") + FString::ChrN(500, u'e')},
		{FLoopbackReply::Events({Bad, Bad, Data("{}"), Bad, Bad, Stop}), TEXT("finished 0 0 0 0")},
		{FLoopbackReply::Events({Bad, Data("7"), Bad, Stop}),
			TEXT("error SSE stream corrupted: 3 consecutive JSON parse failures. Last data: [DONE]")},
		{FLoopbackReply::Raw("garbage\r\n\r\n"), TEXT("error Connection failed")},
		{LostRefusal, TEXT("error HTTP 503: eee")},
		{LostAnswer, TEXT("error Connection failed")},
	};
	for (const auto& Case : Cases)
	{
		EXPECT_EQ(Play(Case.Reply).Last(), Case.Last);
	}
	EXPECT_FALSE(Log.Contains(TEXT("s3cret")));
}

TEST_F(CVXGeminiProvider, NothingIsToldAfterACancelOrTheProvidersEnd)
{
	ExpectSilenceAfterFirstWord(
		{Parts(R"({"text":"a"},{"functionCall":{}},{"text":"b"})", R"(,"finishReason":"STOP")")});
}
