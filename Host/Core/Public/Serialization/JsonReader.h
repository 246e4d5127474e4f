#pragma once

#include "Containers/Array.h"
#include "Containers/UnrealString.h"
#include "Dom/JsonValue.h"
#include "Templates/SharedPointer.h"

/** A text to be read as JSON, and what was wrong with it. One thread at a time. */
class FJsonReader
{
public:
	/** Takes its own copy of the text. A byte order mark in front is passed over. */
	explicit FJsonReader(FStringView Text);
	/** The same for UTF-8. Malformed bytes inside strings become U+FFFD. */
	FJsonReader(const ANSICHAR* Utf8, int64 Bytes);

	/**
	 * Reads the text as one value.
	 * @return false, with a message and OutValue left alone, when it isn't JSON or is nested deeper than JsonMaxDepth.
	 * Of members that have the same name the last counts, in the place of the first.
	 */
	bool Read(TSharedPtr<FJsonValue>& OutValue);

	/** What was wrong, with its line and character, both counted from 1; empty when nothing was. */
	const FString& GetErrorMessage() const { return ErrorMessage; }
	void SetErrorMessage(FString Message) { ErrorMessage = MoveTemp(Message); }

private:
	void MakeRoom(int64 Bytes);

	/** UTF-8 without mark, and behind it the zeros that the quick parser may look at. */
	TArray<ANSICHAR> Utf8;
	int64 Size = 0;
	FString ErrorMessage;
};

template <typename CharType = TCHAR>
class TJsonReader : public FJsonReader
{
public:
	using FJsonReader::FJsonReader;

	static TSharedRef<TJsonReader> Create(FStringView Text) { return MakeShared<TJsonReader>(Text); }
};

template <typename CharType = TCHAR>
class TJsonReaderFactory
{
public:
	static TSharedRef<TJsonReader<CharType>> Create(FStringView Text) { return TJsonReader<CharType>::Create(Text); }
	static TSharedRef<TJsonReader<CharType>> CreateFromView(FStringView Text) { return Create(Text); }
	static TSharedRef<TJsonReader<CharType>> CreateFromUtf8(const ANSICHAR* Utf8, int64 Bytes)
	{
		return MakeShared<TJsonReader<CharType>>(Utf8, Bytes);
	}
};

using FJsonStringReader = TJsonReader<TCHAR>;
