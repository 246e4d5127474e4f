#pragma once

#include "Containers/StringView.h"
#include "Dom/JsonValue.h"

/** Numbers as JSON text. */
namespace JsonNumber
{
constexpr int32 MaxChars = 32;

/**
 * Writes the shortest text that reads back as the same number: no fraction when it is whole, an exponent below 1e-6 and
 * from 1e21 on, "null" for what isn't finite.
 * @param Out room for MaxChars. @return the characters written.
 */
int32 Write(double Number, ANSICHAR* Out);
int32 Write(int64 Number, ANSICHAR* Out);
int32 Write(uint64 Number, ANSICHAR* Out);

/** The value of a well-formed number: an integer when it is one that fits 64 bits, a double, or else its text. */
TSharedPtr<FJsonValue> Make(const ANSICHAR* First, const ANSICHAR* Last, bool bWhole);

/** @return false when the text, as JSON writes it, is beyond a double's range. */
bool ToDouble(FStringView Text, double& OutNumber);
}
