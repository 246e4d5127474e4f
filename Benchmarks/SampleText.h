#pragma once

#include <chrono>
#include <cstddef>
#include <string>

/** What the benchmarks feed to all candidates alike. The same text in every run. */
namespace SampleText
{
using FClock = std::chrono::steady_clock;

inline double Seconds(FClock::duration Duration)
{
	return std::chrono::duration<double>(Duration).count();
}

/** English words with spaces and line ends. */
std::string Ascii(std::size_t Bytes);

/** Words of several scripts, most of them ASCII, and a few emoji. */
std::string Mixed(std::size_t Bytes);

/** A conversation with tool calls as a JSON document: long texts, short names, numbers and small objects. */
std::string Conversation(std::size_t Bytes);
}
