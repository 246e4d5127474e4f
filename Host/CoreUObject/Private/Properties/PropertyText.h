#pragma once

#include "CoreMinimal.h"

class FOutputDevice;

/** The small parts of import and export text. Readers never look past the NUL. */
namespace PropertyText
{
inline const TCHAR* SkipBlanks(const TCHAR* Text)
{
	while (*Text == TEXT(' ') || *Text == TEXT('\t') || *Text == TEXT('\r') || *Text == TEXT('\n'))
	{
		++Text;
	}
	return Text;
}

inline bool IsWordChar(TCHAR Char)
{
	return FChar::IsAlnum(Char) || Char == TEXT('_');
}

/** Appends the text in quotes, with escapes for quotes, backslashes and line ends. */
void AppendQuoted(FString& Out, FStringView Text);

/** Reads a quoted text with its escapes. @return behind the closing quote; null if there is no opening or closing one.
 */
const TCHAR* ReadQuoted(const TCHAR* Text, FString& Out);

/** Reads a text without quotes up to a comma, a bracket or blanks; `Class'Path'` counts as one. May be empty. */
const TCHAR* ReadBare(const TCHAR* Text, FString& Out);

/** Reads a quoted text or, failing that, a bare one. @return null for a quote without end or an empty bare text. */
const TCHAR* ReadQuotedOrBare(const TCHAR* Text, FString& Out);

/** Skips one value of any form in a list: up to the comma or bracket that ends it. @return null if the text ends first.
 */
const TCHAR* SkipValue(const TCHAR* Text);

/** Reads `(a,b,c)`. ReadItem gets the place of an item and answers the place behind it, or null. @return null on
 * failure. */
const TCHAR* ReadList(const TCHAR* Text, TFunctionRef<const TCHAR*(const TCHAR*)> ReadItem);

/** The number with six decimals where these suffice, else with as many digits as it takes to read it back. */
FString FormatReal(double Value);
FString FormatReal(float Value);

/** Reads a number. @return behind it, or null. */
const TCHAR* ReadReal(const TCHAR* Text, double& Out);

/** An integer of either sign. */
struct FWideInteger
{
	uint64 Magnitude = 0;
	bool bNegative = false;
};
/** Reads a decimal or `0x` integer; a fraction is cut. @return behind it, or null for no number or too large a one. */
const TCHAR* ReadInteger(const TCHAR* Text, FWideInteger& Out);

/** Tells the device, or the log when it is null. */
void Report(FOutputDevice* Device, const FString& Message);

/** Counts how deep lists nest, which is bounded. */
class FNesting
{
public:
	FNesting() { ++Depth; }
	~FNesting() { --Depth; }
	FNesting(const FNesting&) = delete;
	FNesting& operator=(const FNesting&) = delete;
	bool IsTooDeep() const { return Depth > MaxDepth; }

private:
	static constexpr int32 MaxDepth = 64;
	static thread_local int32 Depth;
};
} // namespace PropertyText
