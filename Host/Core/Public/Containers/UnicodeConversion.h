#pragma once

#include "HAL/Platform.h"

/**
 * Conversion between UTF-8 and UTF-16. Neither direction fails: what is malformed becomes U+FFFD, one for each maximal
 * part of a broken UTF-8 sequence (The Unicode Standard 15.0, section 3.9, "U+FFFD Substitution of Maximal Subparts"),
 * one for each lone surrogate, and all around it is kept. Nothing is read or written beyond the given counts, and no
 * terminator is written. Any thread.
 */
namespace Unicode
{
constexpr TCHAR ReplacementChar = 0xFFFD;

/** @param Dest room for SourceBytes units. @return the units written. */
int64 Utf8ToUtf16(const char* Source, int64 SourceBytes, TCHAR* Dest);

/** @return the bytes that Utf16ToUtf8 writes for this text. */
int64 Utf16ToUtf8Length(const TCHAR* Source, int64 SourceUnits);

/** @param Dest room for Utf16ToUtf8Length bytes. @return the bytes written. */
int64 Utf16ToUtf8(const TCHAR* Source, int64 SourceUnits, char* Dest);
} // namespace Unicode
