#include "SampleText.h"

#include <array>
#include <cstdint>
#include <random>

namespace
{
using FRandom = std::mt19937;

constexpr std::array Words = {"actor", "component", "the", "widget", "material", "a", "blueprint", "of", "graph",
	"node", "compile", "to", "error", "in", "Source/Skirmish/Weapons/Rifle.cpp", "is", "reload", "and", "montage",
	"replicated"};
constexpr std::array OtherWords = {"Überschrift", "naïve", "東京", "проект", "😀", "größer"};

void AppendWords(std::string& Text, std::size_t Bytes, FRandom& Random, std::uint32_t OtherPercent)
{
	const std::size_t End = Text.size() + Bytes;
	while (Text.size() < End)
	{
		const bool bOther = Random() % 100 < OtherPercent;
		Text += bOther ? OtherWords[Random() % OtherWords.size()] : Words[Random() % Words.size()];
		Text += Random() % 14 == 0 ? '\n' : ' ';
	}
}

std::string Escaped(const std::string& Text)
{
	std::string Result;
	for (const char Char : Text)
	{
		Result += Char == '\n' ? "\\n" : std::string(1, Char);
	}
	return Result;
}

std::string EscapedWords(std::size_t Bytes, FRandom& Random)
{
	std::string Text;
	AppendWords(Text, Bytes, Random, 3);
	return Escaped(Text);
}

std::string ToolUse(FRandom& Random)
{
	std::string Text =
		"{\"type\":\"tool_use\",\"id\":\"call_" + std::to_string(Random()) + "\",\"name\":\"edit_file\",";
	Text +=
		"\"input\":{\"path\":\"Source/Skirmish/Weapons/Rifle.cpp\",\"start_line\":" + std::to_string(Random() % 900);
	Text += ",\"count\":" + std::to_string(Random() % 40) + ",\"create\":false,\"scale\":0." +
		std::to_string(Random() % 1000);
	return Text + ",\"text\":\"" + EscapedWords(120 + Random() % 400, Random) + "\"}}";
}

std::string Message(FRandom& Random)
{
	std::string Text =
		"{\"id\":\"" + std::to_string(Random()) + std::to_string(Random()) + "\",\"role\":\"assistant\",";
	Text +=
		"\"timestamp\":17000" + std::to_string(10000000 + Random() % 89999999) + ",\"is_error\":false,\"parent\":null,";
	Text += "\"content\":[{\"type\":\"text\",\"text\":\"" + EscapedWords(100 + Random() % 900, Random) + "\"}";
	for (std::uint32_t Left = Random() % 3; Left > 0; --Left)
	{
		Text += "," + ToolUse(Random);
	}
	Text += "],\"usage\":{\"input_tokens\":" + std::to_string(Random() % 200000);
	Text +=
		",\"output_tokens\":" + std::to_string(Random() % 8000) + ",\"cached\":" + std::to_string(Random() % 100000);
	return Text + ",\"cost\":0.0" + std::to_string(Random() % 10000) + "}}";
}
}

std::string SampleText::Ascii(std::size_t Bytes)
{
	FRandom Random(1);
	std::string Text;
	AppendWords(Text, Bytes, Random, 0);
	return Text;
}

std::string SampleText::Mixed(std::size_t Bytes)
{
	FRandom Random(2);
	std::string Text;
	AppendWords(Text, Bytes, Random, 30);
	return Text;
}

std::string SampleText::Conversation(std::size_t Bytes)
{
	FRandom Random(3);
	std::string Text = "{\"version\":2,\"messages\":[" + Message(Random);
	while (Text.size() < Bytes)
	{
		Text += "," + Message(Random);
	}
	return Text + "]}";
}
