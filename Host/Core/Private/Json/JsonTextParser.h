#pragma once

#include "Dom/JsonValue.h"
#include "Json/JsonScanner.h"

/**
 * The careful parser: says where a text is wrong, and reads what the quick one gives up on, which is numbers of any
 * size, escapes of single surrogates, and malformed UTF-8 inside strings (each broken part becomes U+FFFD).
 */
class FJsonTextParser : public FJsonScanner
{
public:
	/** @param InText UTF-8 without a byte order mark, which must outlive this. */
	FJsonTextParser(const ANSICHAR* InText, int64 Bytes)
		: FJsonScanner(InText, Bytes)
	{
	}

	/** @return false when the text isn't one JSON value; see the message. */
	bool Parse(TSharedPtr<FJsonValue>& OutValue);

private:
	bool ParseValue(TSharedPtr<FJsonValue>& OutValue, int32 Depth);
	bool ParseObject(TSharedPtr<FJsonValue>& OutValue, int32 Depth);
	bool ParseMember(FJsonObject& Object, int32 Depth);
	bool ParseArray(TSharedPtr<FJsonValue>& OutValue, int32 Depth);
	bool ParseNumber(TSharedPtr<FJsonValue>& OutValue);
	bool ParseWord(const char* Word, TSharedPtr<FJsonValue>&& Meaning, TSharedPtr<FJsonValue>& OutValue);
};
