#include "StreamDialect.h"

#include <utility>

namespace
{
/** Joins the events of all words. @param MakeEvent gives the event of one word by its number. */
template <typename MakeType>
std::string JoinWords(MakeType&& MakeEvent)
{
	std::string Joined;
	for (std::size_t Index = 0; Index < FStreamDialect::WordCount; ++Index)
	{
		Joined += MakeEvent(Index);
	}
	return Joined;
}

std::string AnthropicWord(std::size_t)
{
	return "event: content_block_delta\n"
		   "data: {\"type\":\"content_block_delta\",\"index\":0,"
		   "\"delta\":{\"type\":\"text_delta\",\"text\":\" word\"}}\n\n";
}

/** @param Tail what stands behind the choices. */
std::string OpenAIWord(const std::string& Tail)
{
	return "data: {\"id\":\"chatcmpl-B9MBs8CjcvOU2jLn4n570S5qMJKcT\",\"object\":\"chat.completion.chunk\","
		   "\"created\":1741569952,\"model\":\"gpt-4.1-2025-04-14\",\"service_tier\":\"default\","
		   "\"system_fingerprint\":\"fp_51e1070cf2\",\"choices\":[{\"index\":0,\"delta\":{\"content\":\" word\"},"
		   "\"logprobs\":null,\"finish_reason\":null}]" +
		Tail + "}\n\n";
}

/** Some vendors pad each chunk by a text of another length, so that no two are alike. */
std::string PaddedOpenAIWord(std::size_t Index)
{
	return OpenAIWord(",\"usage\":null,\"obfuscation\":\"" + std::string(1 + Index * 7 % 16, 'x') + "\"");
}

/** Each chunk carries the counters so far. */
std::string GeminiWord(std::size_t Index)
{
	const std::string Count = std::to_string(Index + 1);
	return "data: {\"candidates\": [{\"content\": {\"parts\": [{\"text\": \" word\"}],\"role\": \"model\"},"
		   "\"index\": 0}],\"usageMetadata\": {\"promptTokenCount\": 10,\"candidatesTokenCount\": " +
		Count + ",\"totalTokenCount\": 1" + Count +
		",\"promptTokensDetails\": [{\"modality\": \"TEXT\",\"tokenCount\": 10}]},"
		"\"modelVersion\": \"gemini-2.5-flash\",\"responseId\": \"dGhpcyBpcyBubyBpZA\"}\n\n";
}

FStreamDialect MakeOpenAI(std::string Words)
{
	return {ECVXProviderType::OpenAICompat, "/chat/completions", std::move(Words), "data: [DONE]\n\n",
		[](simdjson::ondemand::document& Document, std::string_view& OutText)
		{ return Document["choices"].at(0)["delta"]["content"].get(OutText); }};
}
} // namespace

const FStreamDialect& AnthropicStream()
{
	static const FStreamDialect Dialect = {ECVXProviderType::Anthropic, "/v1/messages", JoinWords(AnthropicWord),
		"event: message_stop\ndata: {\"type\":\"message_stop\"}\n\n",
		[](simdjson::ondemand::document& Document, std::string_view& OutText)
		{ return Document["delta"]["text"].get(OutText); }};
	return Dialect;
}

const FStreamDialect& OpenAIStream()
{
	static const FStreamDialect Dialect = MakeOpenAI(JoinWords([](std::size_t) { return OpenAIWord(""); }));
	return Dialect;
}

const FStreamDialect& PaddedOpenAIStream()
{
	static const FStreamDialect Dialect = MakeOpenAI(JoinWords(PaddedOpenAIWord));
	return Dialect;
}

const FStreamDialect& GeminiStream()
{
	static const FStreamDialect Dialect = {ECVXProviderType::Gemini, "/models/m:streamGenerateContent",
		JoinWords(GeminiWord), "data: {\"candidates\": [{\"finishReason\": \"STOP\"}]}\n\n",
		[](simdjson::ondemand::document& Document, std::string_view& OutText)
		{ return Document["candidates"].at(0)["content"]["parts"].at(0)["text"].get(OutText); }};
	return Dialect;
}
