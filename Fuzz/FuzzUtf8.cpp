#include "Containers/StringConv.h"
#include "Containers/UnrealString.h"

#include <cstddef>
#include <cstdint>
#include <string_view>

/** Any bytes make a text; the text's bytes make the same text again, and valid bytes come back as they were. */
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* Data, std::size_t Size)
{
	const std::string_view Bytes((const char*)Data, Size);
	const FString Text = FString::FromUtf8(Bytes.data(), (int64)Bytes.size());
	const FTCHARToUTF8 Utf8(*Text, Text.Len());
	const std::string_view Clean(Utf8.Get(), (std::size_t)Utf8.Length());
	check(FString::FromUtf8(Clean.data(), (int64)Clean.size()).Equals(Text));
	const bool bReplaced = Text.Contains(TEXT("\xFFFD"), ESearchCase::CaseSensitive);
	check(bReplaced || Clean == Bytes);
	return 0;
}
