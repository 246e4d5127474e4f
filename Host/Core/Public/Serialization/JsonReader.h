#pragma once

#include "Containers/Array.h"
#include "Containers/UnrealString.h"
#include "Dom/JsonValue.h"
#include "Serialization/JsonTypes.h"
#include "Templates/SharedPointer.h"
#include "Templates/UniquePtr.h"

class FJsonTokenReader;

/** A text to be read as JSON, and what was wrong with it. One thread at a time. */
class FJsonReader
{
public:
	/** Takes its own copy of the text. A byte order mark in front is passed over. */
	explicit FJsonReader(FStringView Text);
	/** The same for UTF-8. Malformed bytes inside strings become U+FFFD. */
	FJsonReader(const ANSICHAR* Utf8, int64 Bytes);
	~FJsonReader();

	/**
	 * Reads the text as one value.
	 * @return false, with a message and OutValue left alone, when it isn't JSON or is nested deeper than JsonMaxDepth.
	 * Of members that have the same name the last counts, in the place of the first.
	 */
	bool Read(TSharedPtr<FJsonValue>& OutValue);

	/**
	 * Reads the text token by token instead, which makes no tree. @return false behind the last token, and on an error,
	 * which OutNotation and the message tell. Members of one name come one after the other.
	 */
	bool ReadNext(EJsonNotation& OutNotation);
	/** The name of the token that was read when it stands in an object; empty else. Good until the next token. */
	const FString& GetIdentifier() const;
	/** The value of a string. */
	const FString& GetValueAsString() const;
	/** The value of a number: as written, and as a double, infinite beyond its range. */
	const FString& GetValueAsNumberString() const;
	double GetValueAsNumber() const { return FCString::Atod(*GetValueAsNumberString()); }
	bool GetValueAsBoolean() const;
	/** Reads on to the end of the object or array whose start was read last. @return false on an error. */
	bool SkipObject() { return SkipContainer(); }
	bool SkipArray() { return SkipContainer(); }

	/** What was wrong, with its line and character, both counted from 1; empty when nothing was. */
	const FString& GetErrorMessage() const { return ErrorMessage; }
	void SetErrorMessage(FString Message) { ErrorMessage = MoveTemp(Message); }

private:
	void MakeRoom(int64 Bytes);
	bool SkipContainer();
	FJsonTokenReader& GetTokens() const;

	/** UTF-8 without mark, and behind it the zeros that the quick parser may look at. */
	TArray<ANSICHAR> Utf8;
	int64 Size = 0;
	FString ErrorMessage;
	/** Made by the first `ReadNext`. */
	mutable TUniquePtr<FJsonTokenReader> Tokens;
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
