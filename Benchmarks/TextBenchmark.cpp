#include "SampleText.h"

#include "Containers/UnicodeConversion.h"
#include "Containers/UnrealString.h"

#include <benchmark/benchmark.h>
#include <string>
#include <unicode/ustring.h>
#include <vector>

namespace
{
constexpr std::size_t TextBytes = 4'000'000;

const std::string& Utf8Text(bool bMixed)
{
	static const std::string Ascii = SampleText::Ascii(TextBytes);
	static const std::string Mixed = SampleText::Mixed(TextBytes);
	return bMixed ? Mixed : Ascii;
}

std::u16string Utf16Text(bool bMixed)
{
	const std::string& Source = Utf8Text(bMixed);
	std::u16string Text(Source.size(), u' ');
	Text.resize((std::size_t)Unicode::Utf8ToUtf16(Source.data(), (int64)Source.size(), Text.data()));
	return Text;
}

/** All four are told in bytes of UTF-8 a second. */
void Report(benchmark::State& State, bool bMixed)
{
	State.SetBytesProcessed((int64_t)(State.iterations() * Utf8Text(bMixed).size()));
}

void ToUtf16Host(benchmark::State& State, bool bMixed)
{
	const std::string& Source = Utf8Text(bMixed);
	std::vector<char16_t> Target(Source.size());
	for (auto Unused : State)
	{
		(void)Unused;
		benchmark::DoNotOptimize(Unicode::Utf8ToUtf16(Source.data(), (int64)Source.size(), Target.data()));
	}
	Report(State, bMixed);
}

void ToUtf16Icu(benchmark::State& State, bool bMixed)
{
	const std::string& Source = Utf8Text(bMixed);
	std::vector<char16_t> Target(Source.size());
	for (auto Unused : State)
	{
		(void)Unused;
		UErrorCode Error = U_ZERO_ERROR;
		int32_t Length = 0;
		u_strFromUTF8WithSub(Target.data(), (int32_t)Target.size(), &Length, Source.data(), (int32_t)Source.size(),
			0xFFFD, nullptr, &Error);
		benchmark::DoNotOptimize(Length);
	}
	Report(State, bMixed);
}

void ToUtf8Host(benchmark::State& State, bool bMixed)
{
	const std::u16string Source = Utf16Text(bMixed);
	std::vector<char> Target(Source.size() * 3);
	for (auto Unused : State)
	{
		(void)Unused;
		benchmark::DoNotOptimize(Unicode::Utf16ToUtf8(Source.data(), (int64)Source.size(), Target.data()));
	}
	Report(State, bMixed);
}

void ToUtf8Icu(benchmark::State& State, bool bMixed)
{
	const std::u16string Source = Utf16Text(bMixed);
	std::vector<char> Target(Source.size() * 3);
	for (auto Unused : State)
	{
		(void)Unused;
		UErrorCode Error = U_ZERO_ERROR;
		int32_t Length = 0;
		u_strToUTF8WithSub(Target.data(), (int32_t)Target.size(), &Length, Source.data(), (int32_t)Source.size(),
			0xFFFD, nullptr, &Error);
		benchmark::DoNotOptimize(Length);
	}
	Report(State, bMixed);
}

/** The needle isn't there: the whole text is searched. Told in characters a second. */
void FindIgnoringCase(benchmark::State& State)
{
	const FString Text = FString::FromUtf8(Utf8Text(false).data(), (int64)Utf8Text(false).size());
	const FString Needle = TEXT("Replicated Blueprint Montage Widget");
	for (auto Unused : State)
	{
		(void)Unused;
		benchmark::DoNotOptimize(Text.Find(Needle));
	}
	State.SetItemsProcessed(State.iterations() * Text.Len());
}
}

BENCHMARK_CAPTURE(ToUtf16Host, Ascii, false)->Name("Text/Utf8ToUtf16/Ascii/Host");
BENCHMARK_CAPTURE(ToUtf16Icu, Ascii, false)->Name("Text/Utf8ToUtf16/Ascii/ICU");
BENCHMARK_CAPTURE(ToUtf16Host, Mixed, true)->Name("Text/Utf8ToUtf16/Mixed/Host");
BENCHMARK_CAPTURE(ToUtf16Icu, Mixed, true)->Name("Text/Utf8ToUtf16/Mixed/ICU");
BENCHMARK_CAPTURE(ToUtf8Host, Ascii, false)->Name("Text/Utf16ToUtf8/Ascii/Host");
BENCHMARK_CAPTURE(ToUtf8Icu, Ascii, false)->Name("Text/Utf16ToUtf8/Ascii/ICU");
BENCHMARK_CAPTURE(ToUtf8Host, Mixed, true)->Name("Text/Utf16ToUtf8/Mixed/Host");
BENCHMARK_CAPTURE(ToUtf8Icu, Mixed, true)->Name("Text/Utf16ToUtf8/Mixed/ICU");
BENCHMARK(FindIgnoringCase)->Name("Text/FindIgnoringCase");
