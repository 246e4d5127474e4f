#pragma once

#include "Containers/UnrealString.h"

/** How a text file keeps its characters. */
enum class ECVXTextEncoding : uint8
{
	Utf8,
	Utf8WithMark,
	/** With its mark. */
	Utf16LittleEndian,
	/** With its mark. */
	Utf16BigEndian,
	/** One byte a character, as in files whose bytes aren't UTF-8; every byte survives. */
	SingleByte,
};

/**
 * Text files that are edited in place: what is saved keeps the encoding that was loaded. Line ends and the final line
 * end are in the text as they are in the file. Any thread.
 */
namespace CVXTextFile
{
/** @return false when the file can't be read. */
bool Load(const FString& Path, FString& OutText, ECVXTextEncoding& OutEncoding);

/**
 * Replaces a file as one step and keeps its mode.
 * @return false when it can't be written or the encoding has no room for a character; the file is then as it was.
 */
bool Save(const FString& Path, const FString& Text, ECVXTextEncoding Encoding);

/** The bytes that a text takes in UTF-8. */
int32 Utf8Length(const FString& Text);
} // namespace CVXTextFile
