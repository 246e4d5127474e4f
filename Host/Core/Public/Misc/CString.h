#pragma once

#include "Misc/Char.h"

#include <string>

namespace ESearchCase
{
enum Type
{
	CaseSensitive,
	IgnoreCase
};
}

namespace ESearchDir
{
enum Type
{
	FromStart,
	FromEnd
};
}

/** Operations on NUL-terminated UTF-16 text, and the number conversions. Case is ignored by `FChar`. Any thread. */
struct FCString
{
	static int32 Strlen(const TCHAR* String) { return (int32)std::char_traits<TCHAR>::length(String); }

	static int32 Strcmp(const TCHAR* A, const TCHAR* B);
	static int32 Strncmp(const TCHAR* A, const TCHAR* B, int32 Count);
	static int32 Stricmp(const TCHAR* A, const TCHAR* B);
	static int32 Strnicmp(const TCHAR* A, const TCHAR* B, int32 Count);

	static const TCHAR* Strchr(const TCHAR* String, TCHAR Char);
	static const TCHAR* Strrchr(const TCHAR* String, TCHAR Char);
	static const TCHAR* Strstr(const TCHAR* String, const TCHAR* Find);
	static const TCHAR* Stristr(const TCHAR* String, const TCHAR* Find);

	/** The number at the front after blanks, in decimal; 0 when there is none, the nearest limit when it is too large.
	 */
	static int32 Atoi(const TCHAR* String);
	static int64 Atoi64(const TCHAR* String);
	static float Atof(const TCHAR* String);
	static double Atod(const TCHAR* String);

	/** @param Base 2 to 36, or 0 to read a prefix of 0x as 16. @param OutEnd where reading stopped; may be null. */
	static int64 Strtoi64(const TCHAR* String, TCHAR** OutEnd, int32 Base);
	static uint64 Strtoui64(const TCHAR* String, TCHAR** OutEnd, int32 Base);
	static int32 Strtoi(const TCHAR* String, TCHAR** OutEnd, int32 Base);

	/** Whether the text is a decimal number: an optional sign, digits, at most one point. */
	static bool IsNumeric(const TCHAR* String);

	/** True for "true", "yes", "on" in any case, and for a number that isn't 0. */
	static bool ToBool(const TCHAR* String);
};

/** Search and comparison of UTF-16 text by pointer and length: what the string classes share. Any thread. */
namespace StringSearch
{
/** @return below, at or above 0, as A sorts before, with or after B. */
int32 Compare(const TCHAR* A, int32 LenA, const TCHAR* B, int32 LenB, ESearchCase::Type SearchCase);

bool EqualsCount(const TCHAR* A, const TCHAR* B, int32 Count, ESearchCase::Type SearchCase);

/** The first place of Needle at or behind Start; an empty needle is found at Start. @return index or INDEX_NONE. */
int32 Find(
	const TCHAR* Text, int32 Len, const TCHAR* Needle, int32 NeedleLen, int32 Start, ESearchCase::Type SearchCase);

/** The last place of Needle that begins before Start. @return index or INDEX_NONE. */
int32 FindLast(
	const TCHAR* Text, int32 Len, const TCHAR* Needle, int32 NeedleLen, int32 Start, ESearchCase::Type SearchCase);

/** The first place of the unit, which is compared exactly. @return index or INDEX_NONE. */
int32 FindChar(const TCHAR* Text, int32 Len, TCHAR Char);

/** `*` stands for any run, `?` for any one unit. Time is at most the product of both lengths. */
bool MatchesWildcard(
	const TCHAR* Text, int32 Len, const TCHAR* Pattern, int32 PatternLen, ESearchCase::Type SearchCase);

/** A hash that ignores case: equal for texts that compare equal without regard to case. */
uint32 HashIgnoringCase(const TCHAR* Text, int32 Len);

uint32 HashCaseSensitive(const TCHAR* Text, int32 Len);
} // namespace StringSearch
