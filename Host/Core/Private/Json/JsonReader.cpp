#include "Serialization/JsonReader.h"

#include "Containers/UnicodeConversion.h"
#include "Json/JsonMemory.h"
#include "Json/JsonQuickParser.h"
#include "Json/JsonTextParser.h"

#include <string_view>

namespace
{
constexpr std::string_view ByteOrderMark = "\xEF\xBB\xBF";

/** What a text may have at most, so that it and its padding can be counted. */
constexpr int64 MaxBytes = MAX_int32 - JsonQuickParser::Padding;
}

FJsonReader::FJsonReader(FStringView Text)
{
	Text.RemovePrefix(Text.StartsWith((TCHAR)0xFEFF) ? 1 : 0);
	const int64 Bytes = Unicode::Utf16ToUtf8Length(Text.GetData(), Text.Len());
	if (Bytes > MaxBytes)
	{
		ErrorMessage = TEXT("The text is too long");
		return;
	}
	MakeRoom(Bytes);
	Size = Unicode::Utf16ToUtf8(Text.GetData(), Text.Len(), Utf8.GetData());
	FMemory::Memzero(Utf8.GetData() + Size, JsonQuickParser::Padding);
}

FJsonReader::FJsonReader(const ANSICHAR* InUtf8, int64 Bytes)
{
	const int64 Skipped =
		std::string_view(InUtf8, (SIZE_T)Bytes).starts_with(ByteOrderMark) ? (int64)ByteOrderMark.size() : 0;
	if (Bytes - Skipped > MaxBytes)
	{
		ErrorMessage = TEXT("The text is too long");
		return;
	}
	Size = Bytes - Skipped;
	MakeRoom(Size);
	FMemory::Memcpy(Utf8.GetData(), InUtf8 + Skipped, (SIZE_T)Size);
	FMemory::Memzero(Utf8.GetData() + Size, JsonQuickParser::Padding);
}

void FJsonReader::MakeRoom(int64 Bytes)
{
	Utf8.SetNumUninitialized((int32)Bytes + JsonQuickParser::Padding);
	JsonMemory::PreferHugePages(Utf8.GetData(), (SIZE_T)Utf8.Num());
}

bool FJsonReader::Read(TSharedPtr<FJsonValue>& OutValue)
{
	if (Utf8.IsEmpty())
	{
		return false;
	}
	if (JsonQuickParser::Parse(Utf8.GetData(), Size, OutValue))
	{
		return true;
	}
	FJsonTextParser Careful(Utf8.GetData(), Size);
	TSharedPtr<FJsonValue> Value;
	if (!Careful.Parse(Value))
	{
		ErrorMessage = Careful.GetErrorMessage();
		return false;
	}
	OutValue = MoveTemp(Value);
	return true;
}
