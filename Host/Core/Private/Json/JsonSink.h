#pragma once

#include "Containers/StringView.h"
#include "Containers/UnrealString.h"

#include <string_view>

/** Appends JSON text to a string that grows with room to spare. The string is whole after each Commit. */
class FJsonSink
{
public:
	/** Empties the string, which must outlive this. */
	explicit FJsonSink(FString& InOut);

	void Put(TCHAR Char)
	{
		Reserve(1);
		*At++ = Char;
	}
	/** ASCII. */
	void Put(std::string_view Ascii);
	void Put(FStringView Text);
	void PutRepeated(TCHAR Char, int32 Count);
	/** In double quotes, with the escapes that JSON needs; a lone surrogate is escaped, so that it comes back. */
	void PutQuoted(FStringView Text);
	/** The same for valid UTF-8. */
	void PutQuotedUtf8(std::string_view Utf8);
	/** Gives the string its length and its end. */
	void Commit();

	int32 Len() const { return (int32)(At - Out.GetCharArray().GetData()); }

private:
	void Reserve(int64 Units)
	{
		if (UNLIKELY(End - At < Units))
		{
			Grow(Units);
		}
	}
	void Grow(int64 Units);
	void PutEscaped(TCHAR Unit);
	const TCHAR* PutSpecial(const TCHAR* Source, const TCHAR* SourceEnd);
	const ANSICHAR* PutSpecialUtf8(const ANSICHAR* Source);

	FString& Out;
	TCHAR* At = nullptr;
	/** Keeps one unit free behind it for the terminator. */
	TCHAR* End = nullptr;
};
