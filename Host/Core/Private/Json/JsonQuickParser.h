#pragma once

#include "Dom/JsonValue.h"

/** The quick parser, for well-formed documents. */
namespace JsonQuickParser
{
/** Bytes that must be readable behind the text. */
constexpr int32 Padding = 64;

/**
 * @param Utf8 the text, without a byte order mark, followed by Padding readable bytes.
 * @return false when the text isn't JSON, or holds what only the careful parser reads; nothing tells which.
 */
bool Parse(const ANSICHAR* Utf8, int64 Bytes, TSharedPtr<FJsonValue>& OutValue);
}
