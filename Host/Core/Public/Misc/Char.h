#pragma once

#include "HAL/Platform.h"

/**
 * Classes and case of one UTF-16 code unit, by the Unicode tables. A surrogate belongs to no class and has no case.
 * Any thread.
 */
struct FChar
{
	static TCHAR ToUpper(TCHAR Char)
	{
		return Char < 128 ? (TCHAR)(Char - ((Char >= u'a' && Char <= u'z') ? 32 : 0)) : ToUpperWide(Char);
	}
	static TCHAR ToLower(TCHAR Char)
	{
		return Char < 128 ? (TCHAR)(Char + ((Char >= u'A' && Char <= u'Z') ? 32 : 0)) : ToLowerWide(Char);
	}

	static constexpr bool IsDigit(TCHAR Char) { return Char >= u'0' && Char <= u'9'; }
	static constexpr bool IsHexDigit(TCHAR Char)
	{
		return IsDigit(Char) || (Char >= u'a' && Char <= u'f') || (Char >= u'A' && Char <= u'F');
	}
	static bool IsAlpha(TCHAR Char);
	static bool IsAlnum(TCHAR Char);
	static bool IsUpper(TCHAR Char);
	static bool IsLower(TCHAR Char);
	static bool IsPunct(TCHAR Char);
	static bool IsWhitespace(TCHAR Char);
	static constexpr bool IsControl(TCHAR Char) { return Char < 32 || (Char >= 127 && Char < 160); }
	static constexpr bool IsLinebreak(TCHAR Char)
	{
		return (Char >= 0x0A && Char <= 0x0D) || Char == 0x85 || Char == 0x2028 || Char == 0x2029;
	}
	static bool IsIdentifier(TCHAR Char) { return IsAlnum(Char) || Char == u'_'; }

	/** The value of a hexadecimal digit; 0 for any other character. */
	static constexpr int32 ConvertCharDigitToInt(TCHAR Char)
	{
		if (IsDigit(Char))
		{
			return Char - u'0';
		}
		const TCHAR Lower = Char | 32;
		return Lower >= u'a' && Lower <= u'f' ? Lower - u'a' + 10 : 0;
	}

	static constexpr bool IsHighSurrogate(TCHAR Char) { return (Char & 0xFC00) == 0xD800; }
	static constexpr bool IsLowSurrogate(TCHAR Char) { return (Char & 0xFC00) == 0xDC00; }

private:
	static TCHAR ToUpperWide(TCHAR Char);
	static TCHAR ToLowerWide(TCHAR Char);
};
