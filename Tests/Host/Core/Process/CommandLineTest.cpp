#include "HAL/PlatformProcess.h"
#include "Support/HostTypePrinting.h"

#include <gtest/gtest.h>

namespace
{
/** The arguments as a real child gets them, each in brackets. */
FString Received(const TCHAR* Params)
{
	FString Output;
	const FString Line = FString(TEXT("-c \"for A in \\\"$@\\\"; do printf '[%s]' \\\"$A\\\"; done\" sh ")) + Params;
	EXPECT_TRUE(FPlatformProcess::ExecProcess(TEXT("/bin/sh"), *Line, nullptr, &Output, nullptr));
	return Output;
}
} // namespace

TEST(CommandLine, ReachesTheChildAsTheArgumentsItWasQuotedFrom)
{
	const struct
	{
		const TCHAR* Params;
		const TCHAR* Received;
	} Cases[] = {
		{TEXT(""), TEXT("")},
		{TEXT("  one \t two\n"), TEXT("[one][two]")},
		{TEXT("\"a  b\" c"), TEXT("[a  b][c]")},
		{TEXT("\"\" x \"\""), TEXT("[][x][]")},
		{TEXT("--name=\"two words\".txt"), TEXT("[--name=two words.txt]")},
		{TEXT("say \\\"hi\\\""), TEXT("[say][\"hi\"]")},
		{TEXT("\"a \\\"quoted\\\" word\""), TEXT("[a \"quoted\" word]")},
		{TEXT("C:\\dir\\file \\n"), TEXT("[C:\\dir\\file][\\n]")},
		{TEXT("\"C:\\my dir\"\\"), TEXT("[C:\\my dir\\]")},
		{TEXT("\"never closed here"), TEXT("[never closed here]")},
		{TEXT("$HOME `id` *;'&|"), TEXT("[$HOME][`id`][*;'&|]")},
		{TEXT("Grüße 😀"), TEXT("[Grüße][😀]")},
	};
	for (const auto& Case : Cases)
	{
		EXPECT_EQ(Received(Case.Params), FString(Case.Received)) << TCHAR_TO_UTF8(Case.Params);
	}
}
