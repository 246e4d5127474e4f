#pragma once

#include "Containers/UnrealString.h"
#include "Dom/JsonValue.h"

/**
 * The careful parser: says where a text is wrong, and reads what the quick one gives up on, which is numbers of any
 * size, escapes of single surrogates, and malformed UTF-8 inside strings (each broken part becomes U+FFFD).
 */
class FJsonTextParser
{
public:
	/** @param InText UTF-8 without a byte order mark, which must outlive this. */
	FJsonTextParser(const ANSICHAR* InText, int64 Bytes);

	/** @return false when the text isn't one JSON value; see the message. */
	bool Parse(TSharedPtr<FJsonValue>& OutValue);

	/** What was wrong, and where: lines and characters count from 1. */
	FString GetErrorMessage() const;

private:
	bool Fail(const TCHAR* InError);
	bool FailAt(const ANSICHAR* Place, const TCHAR* InError);
	void SkipSpace();
	/** Passes over the character if it is next. */
	bool Accept(ANSICHAR Char);
	bool ParseValue(TSharedPtr<FJsonValue>& OutValue, int32 Depth);
	bool ParseObject(TSharedPtr<FJsonValue>& OutValue, int32 Depth);
	bool ParseMember(FJsonObject& Object, int32 Depth);
	bool ParseArray(TSharedPtr<FJsonValue>& OutValue, int32 Depth);
	bool ParseString(FString& OutText);
	bool ParseEscape(FString& OutText);
	bool ParseCodeUnit(FString& OutText);
	bool ParseNumber(TSharedPtr<FJsonValue>& OutValue);
	bool SkipDigits();
	bool ParseWord(const char* Word, TSharedPtr<FJsonValue>&& Meaning, TSharedPtr<FJsonValue>& OutValue);

	const ANSICHAR* Text;
	const ANSICHAR* At;
	const ANSICHAR* End;
	const TCHAR* Error = nullptr;
	const ANSICHAR* ErrorPlace = nullptr;
};
