#include "Serialization/JsonReader.h"

#include "Containers/UnicodeConversion.h"
#include "Json/JsonMemory.h"
#include "Json/JsonQuickParser.h"
#include "Json/JsonTextParser.h"
#include "Json/JsonTokenReader.h"

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

FJsonReader::~FJsonReader() = default;

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

FJsonTokenReader& FJsonReader::GetTokens() const
{
	if (!Tokens)
	{
		Tokens = MakeUnique<FJsonTokenReader>(Utf8.GetData(), Size);
	}
	return *Tokens;
}

bool FJsonReader::ReadNext(EJsonNotation& OutNotation)
{
	if (Utf8.IsEmpty())
	{
		OutNotation = EJsonNotation::Error;
		return false;
	}
	EJsonNotation Notation = EJsonNotation::Null;
	const bool bRead = GetTokens().Next(Notation);
	OutNotation = Notation;
	if (Notation == EJsonNotation::Error)
	{
		ErrorMessage = GetTokens().GetErrorMessage();
	}
	return bRead;
}

const FString& FJsonReader::GetIdentifier() const
{
	return GetTokens().Identifier;
}

const FString& FJsonReader::GetValueAsString() const
{
	return GetTokens().StringValue;
}

const FString& FJsonReader::GetValueAsNumberString() const
{
	return GetTokens().NumberText;
}

bool FJsonReader::GetValueAsBoolean() const
{
	return GetTokens().bBoolean;
}

bool FJsonReader::SkipContainer()
{
	EJsonNotation Notation = EJsonNotation::Null;
	for (int32 Depth = 1; Depth > 0 && ReadNext(Notation);)
	{
		Depth += Notation == EJsonNotation::ObjectStart || Notation == EJsonNotation::ArrayStart;
		Depth -= Notation == EJsonNotation::ObjectEnd || Notation == EJsonNotation::ArrayEnd;
	}
	return Notation != EJsonNotation::Error;
}
