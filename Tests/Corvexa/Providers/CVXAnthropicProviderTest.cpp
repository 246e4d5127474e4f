#include "Corvexa/Providers/ProviderFixture.h"
#include "HAL/PlatformMisc.h"
#include "Support/TestClock.h"

namespace
{
std::string Event(const std::string& Type, const std::string& Data)
{
	return "event: " + Type + "\ndata: " + Data + "\n\n";
}

std::string TextDelta(const std::string& Text)
{
	return Event("content_block_delta", R"({"index":0,"delta":{"type":"text_delta","text":")" + Text + R"("}})");
}

const std::string Stop = Event("message_stop", R"({"type":"message_stop"})");

class CVXAnthropicProvider : public FProviderFixture
{
protected:
	CVXAnthropicProvider()
		: FProviderFixture(ECVXProviderType::Anthropic)
	{
	}
	FString BodyOf(const FCVXProviderRequest& Request) { return FString(Send(Request).Body.c_str()); }
};
} // namespace

TEST_F(CVXAnthropicProvider, TheRequestGoesOutToTheLetter)
{
	FCVXProviderRequest Request;
	EXPECT_TRUE(BodyOf(Request).Equals(TEXT(
		"{\"model\":\"claude-sonnet-4-6\",\"max_tokens\":8192,\"temperature\":0,\"stream\":true,\"messages\":[]}")));

	Request.SystemPrompt = TEXT("Be brief.");
	Request.Messages.Add(FCVXMessage::MakeSystemText(TEXT("skipped")));
	Request.Messages.Add(FCVXMessage::MakeUserText(TEXT("hä\n\"x\"")));
	const auto AddBlock = [](FCVXMessage& Message, const TCHAR* Type, const TCHAR* Id, const TCHAR* Input)
	{
		FCVXContentBlock& Block = Message.Content.AddDefaulted_GetRef();
		Block.Type = Type;
		Block.ToolUseId = Id;
		Block.ToolName = TEXT("read_file");
		Block.InputJson = Input;
	};
	FCVXMessage Assistant;
	Assistant.Role = ECVXMessageRole::Assistant;
	Assistant.ReasoningContent = TEXT("not replayed");
	AddBlock(Assistant, TEXT("TOOL_USE"), TEXT("t1"), TEXT("{\"z\": 1, \"a\": [1.5]}"));
	AddBlock(Assistant, TEXT("tool_use"), TEXT("t2"), TEXT("[not an object]"));
	Request.Messages.Add(Assistant);
	FCVXMessage Tool;
	Tool.Role = ECVXMessageRole::Tool;
	AddBlock(Tool, TEXT("tool_result"), TEXT("t1"), TEXT(""));
	Tool.Content[0].ToolResultContent = TEXT("ok");
	AddBlock(Tool, TEXT("tool_result"), TEXT("t2"), TEXT(""));
	Tool.Content[1].ToolResultContent = TEXT("bad");
	Tool.Content[1].bIsError = true;
	AddBlock(Tool, TEXT("image"), TEXT(""), TEXT(""));
	AddBlock(Tool, TEXT("image"), TEXT(""), TEXT(""));
	Tool.Content[3].ImageBase64 = TEXT("QUJD");
	Request.Messages.Add(Tool);
	Request.Tools.Add({TEXT("read_file"), TEXT("Reads."), TEXT("{\"type\":\"object\"}")});
	Request.Tools.Add({TEXT("odd"), TEXT(""), TEXT("no schema")});
	const FString Body = BodyOf(Request);
	EXPECT_TRUE(Body.EndsWith(
		TEXT("\"stream\":true,"
			 "\"system\":[{\"type\":\"text\",\"text\":\"Be brief.\",\"cache_control\":{\"type\":\"ephemeral\"}}],"
			 "\"messages\":[{\"role\":\"user\",\"content\":[{\"type\":\"text\",\"text\":\"hä\\n\\\"x\\\"\"}]},"
			 "{\"role\":\"assistant\",\"content\":["
			 "{\"type\":\"tool_use\",\"id\":\"t1\",\"name\":\"read_file\",\"input\":{\"z\":1,\"a\":[1.5]}},"
			 "{\"type\":\"tool_use\",\"id\":\"t2\",\"name\":\"read_file\",\"input\":{}}]},"
			 "{\"role\":\"user\",\"content\":["
			 "{\"type\":\"tool_result\",\"tool_use_id\":\"t1\",\"content\":\"ok\"},"
			 "{\"type\":\"tool_result\",\"tool_use_id\":\"t2\",\"content\":\"bad\",\"is_error\":true},"
			 "{\"type\":\"image\",\"source\":{\"type\":\"base64\",\"media_type\":\"image/png\",\"data\":\"QUJD\"}}]}],"
			 "\"tools\":[{\"name\":\"read_file\",\"description\":\"Reads.\",\"input_schema\":{\"type\":\"object\"}},"
			 "{\"name\":\"odd\",\"description\":\"\"}]}"),
		ESearchCase::CaseSensitive))
		<< TCHAR_TO_UTF8(*Body);

	const FHttpRequestMessage Got = Server.Requests().back().Request;
	EXPECT_EQ(Got.Method, "POST");
	EXPECT_EQ(Got.Target, "/v1/messages");
	EXPECT_EQ(Got.Header("Content-Type"), "application/json");
	EXPECT_EQ(Got.Header("x-api-key"), "sk-test-s3cret");
	EXPECT_EQ(Got.Header("anthropic-version"), "2023-06-01");
	EXPECT_EQ(Got.Header("anthropic-beta"), "interleaved-thinking-2025-05-14,prompt-caching-2024-07-31");
}

TEST_F(CVXAnthropicProvider, EveryEventDoesItsPart)
{
	EXPECT_EQ(
		Play(FLoopbackReply::Events({
			Event("message_start",
				R"({"message":{"usage":{"input_tokens":12,"output_tokens":1,"cache_read_input_tokens":3,"cache_creation_input_tokens":4}}})"),
			Event("ping", R"({"type":"ping"})"),
			Event("content_block_delta", R"({"index":0,"delta":{"type":"thinking_delta","thinking":"hm"}})"),
			Event("content_block_delta", R"({"index":0,"delta":{"type":"thinking_delta","thinking":""}})"),
			TextDelta("Gr\xC3\xBC"),
			TextDelta("\xC3\x9F"),
			Event("content_block_start", R"({"index":1,"content_block":{"type":"tool_use","id":"a","name":"one"}})"),
			Event("content_block_start", R"({"index":2,"content_block":{"type":"tool_use","id":"b","name":"two"}})"),
			Event("content_block_start", R"({"index":3,"content_block":{"type":"tool_use","id":"c","name":"three"}})"),
			Event("content_block_delta", R"({"index":2,"delta":{"type":"input_json_delta","partial_json":"{\"y\":"}})"),
			Event(
				"content_block_delta", R"({"index":1,"delta":{"type":"input_json_delta","partial_json":"{\"x\":1}"}})"),
			Event("content_block_delta", R"({"index":2,"delta":{"type":"input_json_delta","partial_json":"2}"}})"),
			Event("content_block_delta", R"({"index":9,"delta":{"type":"input_json_delta","partial_json":"lost"}})"),
			Event("content_block_stop", R"({"index":0})"),
			Event("content_block_stop", R"({"index":1})"),
			Event("content_block_stop", R"({"index":2})"),
			Event("CONTENT_BLOCK_STOP", R"({"index":3})"),
			Event("message_delta", R"({"delta":{"stop_reason":"MAX_TOKENS"},"usage":{"output_tokens":77}})"),
			"event: message_stop\ndata: not json\n\n",
			TextDelta("after the end"),
		})),
		(TArray<FString>{TEXT("reasoning hm"), TEXT("text Grü"), TEXT("text ß"), TEXT("call a one {\"x\":1}"),
			TEXT("call b two {\"y\":2}"), TEXT("call c three {}"), TEXT("finished 12 77 3 4 truncated")}));
}

TEST_F(CVXAnthropicProvider, ATextDeltaReadsTheSameWhateverCameBefore)
{
	const FLogCapture Log;
	const auto Delta = [](const std::string& Data) { return Event("content_block_delta", Data); };
	EXPECT_EQ(Play(FLoopbackReply::Events({
				  TextDelta("one"),
				  TextDelta(R"(two \"quoted\"\n\u00e4)"),
				  TextDelta(""),
				  // The frame of the last delta, and a string that doesn't end where it should.
				  Delta(R"({"index":0,"delta":{"type":"text_delta","text":"three"}} x)"),
				  Delta(R"({"index":0,"delta":{"type":"text_delta","text":"four","text":"five"}})"),
				  TextDelta("six"),
				  Delta(R"({"index":1,"delta":{"type":"thinking_delta","text":"no","thinking":"seven"}})"),
				  Delta(R"({"delta":{"text":"eight", "TYPE":"TEXT_DELTA","more":[{}, 1e5, null]}, "index":12})"),
				  Delta(R"({"delta":{"text":"ni\u0000ne", "TYPE":"TEXT_DELTA","more":[{}, 1e5, null]}, "index":12})"),
				  Delta(R"({"delta":{"text":7, "TYPE":"TEXT_DELTA","more":[{}, 1e5, null]}, "index":12})"),
				  Stop,
			  })),
		(TArray<FString>{TEXT("text one"), TEXT("text two \"quoted\"\nä"), TEXT("text "), TEXT("text five"),
			TEXT("text six"), TEXT("reasoning seven"), TEXT("text eight"),
			FString(TEXT("text ni")) + FString(1, TEXT("\0")) + TEXT("ne"), TEXT("finished 0 0 0 0")}));
	EXPECT_EQ(Log.Count(TEXT("Failed to parse SSE JSON (consecutive: 1)"), ELogVerbosity::Warning), 1);
}

TEST_F(CVXAnthropicProvider, AnAnswerCutAnywhereTellsTheSame)
{
	const std::string Body = Event("message_start", R"({"message":{"usage":{"input_tokens":12,"output_tokens":1}}})") +
		TextDelta("Gr\xC3\xBC\xF0\x9F\x98\x80") + TextDelta("a\\nb") +
		Event("content_block_start", R"({"index":1,"content_block":{"type":"tool_use","id":"a","name":"one"}})") +
		Event("content_block_delta", R"({"index":1,"delta":{"type":"input_json_delta","partial_json":"{}"}})") +
		Event("content_block_stop", R"({"index":1})") + Stop;
	ExpectSameWhereverCut(
		Body, {TEXT("text Grü😀"), TEXT("text a\nb"), TEXT("call a one {}"), TEXT("finished 12 1 0 0")});
}

TEST_F(CVXAnthropicProvider, EveryFailureHasItsText)
{
	const FLogCapture Log;
	const std::string Bad = "event: x\ndata: {broken\n\n";
	const std::string Long(10000, 'e');
	const struct
	{
		FLoopbackReply Reply;
		TArray<FString> Told;
	} Cases[] = {
		{FLoopbackReply::Sized(401, "no key"), {TEXT("error HTTP 401: no key")}},
		{FLoopbackReply::Sized(429, "x", {{"Retry-After", "30"}}), {TEXT("error HTTP 429: x [Retry-After: 30]")}},
		{FLoopbackReply::Sized(429, "x"), {TEXT("error HTTP 429: x")}},
		{FLoopbackReply::Sized(500, Long, {{"Retry-After", "30"}}),
			{TEXT("error HTTP 500: ") + FString::ChrN(500, u'e')}},
		{FLoopbackReply::Events({TextDelta("a"), Bad, Bad, TextDelta("b"), Bad, Bad, Bad, TextDelta("c")}),
			{TEXT("text a"), TEXT("text b"),
				TEXT("error SSE stream corrupted: 3 consecutive JSON parse failures. Last data: {broken")}},
		{FLoopbackReply::Events({Bad, Bad, Event("unheard_of", "{}"), Bad, Bad, Stop}), {TEXT("finished 0 0 0 0")}},
		{FLoopbackReply::Events(
			 {TextDelta("a"), Event("error", R"({"error":{"message":"overloaded sk-test-s3cret"}})"), Stop}),
			{TEXT("text a"), TEXT("error overloaded [API key]")}},
		{FLoopbackReply::Events({Event("error", "{}")}), {TEXT("error Unknown Anthropic API error")}},
		{FLoopbackReply::Events({TextDelta("a")}), {TEXT("text a"), TEXT("finished 0 0 0 0")}},
		{FLoopbackReply::Sized(200, ""), {TEXT("finished 0 0 0 0")}},
		{FLoopbackReply::Raw("garbage\r\n\r\n"), {TEXT("error HTTP connection failed.")}},
	};
	for (const auto& Case : Cases)
	{
		EXPECT_EQ(Play(Case.Reply), Case.Told);
	}
	FLoopbackReply Reset = FLoopbackReply::Events({TextDelta("a"), TextDelta("b")});
	Reset.CutAt(Reset.WireSize() - 30, FLoopbackReply::EEnd::Reset);
	EXPECT_EQ(Play(Reset).Last(), TEXT("error HTTP connection failed."));
	EXPECT_TRUE(Log.Contains(TEXT("HTTP completed 200 but message_stop was not received for ")));
	EXPECT_FALSE(Log.Contains(TEXT("s3cret")));
}

TEST_F(CVXAnthropicProvider, SilenceBeyondTheTimeOutIsALostConnectionAndASlowAnswerIsNot)
{
	FTestClock Clock;
	const auto Headers = FLoopbackReply::Events({TextDelta("never")});
	FLoopbackReply OnlyHeaders = Headers;
	OnlyHeaders.StallAt(Headers.HeadSize());
	FLoopbackReply HalfAnEvent = Headers;
	HalfAnEvent.StallAt(Headers.HeadSize() + 20);
	for (const FLoopbackReply& Reply : {FLoopbackReply::Silence(), OnlyHeaders, HalfAnEvent})
	{
		Told.Reset();
		bEnded = false;
		Server.Enqueue(Reply);
		const size_t Requests = Server.RequestCount();
		Provider->StreamRequest(FCVXProviderRequest(), Callbacks);
		ASSERT_TRUE(Server.WaitForRequests(Requests + 1));
		Clock.Advance(299.0);
		Pump.Tick();
		EXPECT_FALSE(bEnded);
		EXPECT_TRUE(Pump.Until(
			[&]
			{
				Clock.Advance(10.0);
				return bEnded;
			}));
		EXPECT_EQ(Told, (TArray<FString>{TEXT("error HTTP connection failed.")}));
	}

	const auto Gate = FLoopbackGate::Create();
	const std::string Word = TextDelta("a");
	FLoopbackReply Slow = FLoopbackReply::Sized(200, Word + Word + Word + Word + Stop);
	Server.Enqueue(Slow.DripFrom(Slow.HeadSize(), Word.size(), Gate));
	Told.Reset();
	bEnded = false;
	Provider->StreamRequest(FCVXProviderRequest(), Callbacks);
	for (int32 Count = 1; Count <= 4; ++Count)
	{
		Gate->Release();
		ASSERT_TRUE(Pump.Until([&] { return Told.Num() == Count; }));
		Clock.Advance(200.0);
		Pump.Tick();
	}
	Gate->Open();
	EXPECT_TRUE(Pump.Until([this] { return bEnded; }));
	EXPECT_EQ(Told.Last(), TEXT("finished 0 0 0 0"));
}

TEST_F(CVXAnthropicProvider, NothingIsToldAfterACancelOrTheProvidersEnd)
{
	ExpectSilenceAfterFirstWord({TextDelta("a"), TextDelta("b"), Stop});
}

TEST_F(CVXAnthropicProvider, ACallbackMayStartTheNextRequest)
{
	Server.Enqueue(FLoopbackReply::Events({Stop}));
	Server.Enqueue(FLoopbackReply::Events({TextDelta("second"), Stop}));
	FString Second;
	FCVXProviderCallbacks First = Callbacks;
	First.OnStreamFinished = [&](const FCVXTokenUsage&)
	{ Second = Provider->StreamRequest(FCVXProviderRequest(), Callbacks); };
	const FString Handle = Provider->StreamRequest(FCVXProviderRequest(), First);
	EXPECT_TRUE(Pump.Until([this] { return bEnded; }));
	EXPECT_FALSE(Second.Equals(Handle));
	EXPECT_EQ(Told, (TArray<FString>{TEXT("text second"), TEXT("finished 0 0 0 0")}));
	Provider->CancelRequest(Handle);
}

TEST_F(CVXAnthropicProvider, WithoutAKeyNothingStarts)
{
	Profile.ApiKeyEnvVar = TEXT("CVX_TEST_NO_SUCH_KEY");
	MakeProvider();
	EXPECT_FALSE(Provider->IsConfigured());
	EXPECT_TRUE(Provider->StreamRequest(FCVXProviderRequest(), Callbacks).IsEmpty());
	EXPECT_EQ(
		Told, (TArray<FString>{TEXT("error API key not found. Set the 'CVX_TEST_NO_SUCH_KEY' environment variable.")}));
	EXPECT_TRUE(Provider->StreamRequest(FCVXProviderRequest(), FCVXProviderCallbacks()).IsEmpty());
	EXPECT_EQ(Server.RequestCount(), 0u);
}

TEST_F(CVXAnthropicProvider, KeysComeFromTheNameTheEnvironmentAndTheFileInThisOrder)
{
	Project.Write("Saved/CVX/apikeys.cfg",
		"# CVX_TEST_KEY=commented\nCVX_TEST_KEY = blanks\n"
		"  CVX_TEST_KEY=  from file  \nCVX_TEST_KEY=second\n");
	Profile.ApiKeyEnvVar = TEXT("CVX_TEST_KEY");
	EXPECT_EQ(FCVXProviderFactory::GetApiKey(Profile), TEXT("from file"));
	FPlatformMisc::SetEnvironmentVar(TEXT("CVX_TEST_KEY"), TEXT("from environment"));
	EXPECT_EQ(FCVXProviderFactory::GetApiKey(Profile), TEXT("from environment"));
	FPlatformMisc::SetEnvironmentVar(TEXT("CVX_TEST_KEY"), TEXT(""));
	Profile.ApiKeyEnvVar = TEXT("SK-KEY");
	EXPECT_EQ(FCVXProviderFactory::GetApiKey(Profile), TEXT("SK-KEY"));
	Profile.ApiKeyEnvVar = TEXT("");
	EXPECT_TRUE(FCVXProviderFactory::GetApiKey(Profile).IsEmpty());
	EXPECT_EQ(Provider->GetMaxContextTokens(), 200000);
}
