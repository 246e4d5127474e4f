#pragma once

#include "Core/CVXProfiles.h"

#include <cstddef>
#include <simdjson.h>
#include <string>
#include <string_view>

/** What one vendor's stream looks like on the wire, as far as a benchmark needs it. */
struct FStreamDialect
{
	ECVXProviderType Type;
	/** What the provider asks for. */
	std::string Path;
	/** The text " word" twenty times, an event each; what a vendor changes from event to event changes. */
	std::string Words;
	std::string Stop;
	/** The way to the word with the parser that is the peer. */
	simdjson::error_code (*FindText)(simdjson::ondemand::document& Document, std::string_view& OutText);

	static constexpr std::size_t WordCount = 20;
	static constexpr std::size_t WordSize = 5;
};

/** The dialects; each is made once. */
const FStreamDialect& AnthropicStream();
const FStreamDialect& OpenAIStream();
const FStreamDialect& PaddedOpenAIStream();
const FStreamDialect& GeminiStream();
