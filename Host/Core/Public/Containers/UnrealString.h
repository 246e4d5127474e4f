#pragma once

#include "Containers/Array.h"
#include "Containers/StringView.h"
#include "Misc/FormatString.h"

/**
 * Text in memory: UTF-16 code units, always ended by a NUL. The operators and the searches ignore case unless told
 * otherwise; `Equals` and `Compare` heed it. Indices and counts are code units; parts outside the text are cut.
 */
class FString
{
public:
	using ElementType = TCHAR;

	FString() = default;
	/** @param Source may be null, which gives an empty text. */
	FString(const TCHAR* Source);
	/** @param Source UTF-8; may be null. */
	explicit FString(const ANSICHAR* Source);
	FString(int32 Len, const TCHAR* Source);
	explicit FString(FStringView View);

	static FString ConstructFromPtrSize(const TCHAR* Source, int32 Len) { return FString(Len, Source); }
	/** Malformed bytes become U+FFFD. */
	static FString FromUtf8(const ANSICHAR* Source, int64 Bytes);

	FString& operator=(const TCHAR* Source);

	const TCHAR* operator*() const { return Data.Num() ? Data.GetData() : TEXT(""); }
	const TCHAR* GetData() const { return **this; }
	TArray<TCHAR>& GetCharArray() { return Data; }
	const TArray<TCHAR>& GetCharArray() const { return Data; }
	int32 Len() const { return Data.Num() ? Data.Num() - 1 : 0; }
	bool IsEmpty() const { return Data.Num() <= 1; }
	bool IsValidIndex(int32 Index) const { return (uint32)Index < (uint32)Len(); }
	SIZE_T GetAllocatedSize() const { return Data.GetAllocatedSize(); }
	TCHAR& operator[](int32 Index)
	{
		check(IsValidIndex(Index));
		return Data.GetData()[Index];
	}
	TCHAR operator[](int32 Index) const
	{
		check(IsValidIndex(Index));
		return Data.GetData()[Index];
	}
	TCHAR* begin() { return Data.GetData(); }
	TCHAR* end() { return Data.GetData() + Len(); }
	const TCHAR* begin() const { return Data.GetData(); }
	const TCHAR* end() const { return Data.GetData() + Len(); }

	void Empty(int32 Slack = 0);
	void Reset(int32 NewReserved = 0);
	void Reserve(int32 Characters) { Data.Reserve(Characters + 1); }
	void Shrink() { Data.Shrink(); }

	FString& Append(FStringView Text);
	FString& Append(const TCHAR* Text, int32 Count) { return Append(FStringView(Text, Count)); }
	FString& AppendChars(const TCHAR* Text, int32 Count) { return Append(FStringView(Text, Count)); }
	FString& AppendChar(TCHAR Char);
	void AppendInt(int64 Value);
	/** Appends the text of UTF-8 bytes; malformed bytes become U+FFFD. */
	FString& AppendUtf8(const ANSICHAR* Source, int64 Bytes);
	/** Makes room for Count further units, which the caller fills. @return the first of them. */
	TCHAR* AppendUninitialized(int32 Count)
	{
		const int32 OldLen = Len();
		Data.AddUninitialized(Data.Num() ? Count : Count + 1);
		Data.GetData()[OldLen + Count] = 0;
		return Data.GetData() + OldLen;
	}
	void InsertAt(int32 Index, FStringView Text);
	void InsertAt(int32 Index, TCHAR Char) { InsertAt(Index, FStringView(&Char, 1)); }
	void RemoveAt(int32 Index, int32 Count = 1);
	/** Joins with exactly one slash. */
	void PathAppend(const TCHAR* Text, int32 Count);

	FString& operator+=(FStringView Text) { return Append(Text); }
	FString& operator+=(TCHAR Char) { return AppendChar(Char); }
	FString& operator/=(FStringView Text)
	{
		PathAppend(Text.GetData(), Text.Len());
		return *this;
	}

	template <typename... ArgTypes>
	static FString Printf(TCheckedFormat<std::type_identity_t<ArgTypes>...> Format, ArgTypes... Args)
	{
		FString Result;
		Result.Appendf(Format, Args...);
		return Result;
	}
	template <typename... ArgTypes>
	FString& Appendf(TCheckedFormat<std::type_identity_t<ArgTypes>...> Format, ArgTypes... Args)
	{
		if constexpr (sizeof...(ArgTypes) == 0)
		{
			AppendFormatted(*this, Format.Get(), {});
		}
		else
		{
			const FFormatArg Packed[] = {FormatString::MakeArg(Args)...};
			AppendFormatted(*this, Format.Get(), Packed);
		}
		return *this;
	}

	/** `Text == Other` ignores case; these two heed it unless told otherwise. */
	bool Equals(FStringView Other, ESearchCase::Type SearchCase = ESearchCase::CaseSensitive) const
	{
		return FStringView(*this).Equals(Other, SearchCase);
	}
	int32 Compare(FStringView Other, ESearchCase::Type SearchCase = ESearchCase::CaseSensitive) const
	{
		return FStringView(*this).Compare(Other, SearchCase);
	}

	/**
	 * @param StartPosition from the start: the first index tried; from the end: the index behind the last unit that a
	 * match may begin before. INDEX_NONE takes the whole text. @return index or INDEX_NONE; an empty needle isn't
	 * found.
	 */
	int32 Find(FStringView SubStr, ESearchCase::Type SearchCase = ESearchCase::IgnoreCase,
		ESearchDir::Type SearchDir = ESearchDir::FromStart, int32 StartPosition = INDEX_NONE) const;
	bool Contains(FStringView SubStr, ESearchCase::Type SearchCase = ESearchCase::IgnoreCase,
		ESearchDir::Type SearchDir = ESearchDir::FromStart) const
	{
		return Find(SubStr, SearchCase, SearchDir) != INDEX_NONE;
	}
	bool FindChar(TCHAR Char, int32& OutIndex) const { return FStringView(*this).FindChar(Char, OutIndex); }
	bool FindLastChar(TCHAR Char, int32& OutIndex) const { return FStringView(*this).FindLastChar(Char, OutIndex); }
	/** An empty prefix or suffix matches any text. */
	bool StartsWith(FStringView Prefix, ESearchCase::Type SearchCase = ESearchCase::IgnoreCase) const
	{
		return FStringView(*this).StartsWith(Prefix, SearchCase);
	}
	bool EndsWith(FStringView Suffix, ESearchCase::Type SearchCase = ESearchCase::IgnoreCase) const
	{
		return FStringView(*this).EndsWith(Suffix, SearchCase);
	}
	/** `*` stands for any run of units, `?` for any one. The whole text must match. */
	bool MatchesWildcard(FStringView Wildcard, ESearchCase::Type SearchCase = ESearchCase::IgnoreCase) const
	{
		return StringSearch::MatchesWildcard(**this, Len(), Wildcard.GetData(), Wildcard.Len(), SearchCase);
	}

	FString Left(int32 Count) const { return FString(FStringView(*this).Left(Count)); }
	FString LeftChop(int32 Count) const { return FString(FStringView(*this).LeftChop(Count)); }
	FString Right(int32 Count) const { return FString(FStringView(*this).Right(Count)); }
	FString RightChop(int32 Count) const { return FString(FStringView(*this).RightChop(Count)); }
	FString Mid(int32 Start, int32 Count = MAX_int32) const { return FString(FStringView(*this).Mid(Start, Count)); }
	void LeftInline(int32 Count, EAllowShrinking Shrinking = EAllowShrinking::Yes);
	void LeftChopInline(int32 Count, EAllowShrinking Shrinking = EAllowShrinking::Yes);
	void RightInline(int32 Count, EAllowShrinking Shrinking = EAllowShrinking::Yes);
	void RightChopInline(int32 Count, EAllowShrinking Shrinking = EAllowShrinking::Yes);
	void MidInline(int32 Start, int32 Count = MAX_int32, EAllowShrinking Shrinking = EAllowShrinking::Yes);

	/** Cuts at the first (or last) separator. Either out pointer may be null. @return false and no change without one.
	 */
	bool Split(FStringView Separator, FString* LeftPart, FString* RightPart,
		ESearchCase::Type SearchCase = ESearchCase::IgnoreCase,
		ESearchDir::Type SearchDir = ESearchDir::FromStart) const;

	/**
	 * Cuts at every delimiter. An empty text gives no part; otherwise there is one part more than delimiters, and the
	 * empty ones are dropped on demand. @return the number of parts.
	 */
	int32 ParseIntoArray(TArray<FString>& OutArray, const TCHAR* Delimiter, bool bCullEmpty = true) const;
	int32 ParseIntoArray(
		TArray<FString>& OutArray, const TCHAR* const* Delimiters, int32 NumDelimiters, bool bCullEmpty = true) const;
	/** Cuts at CR LF, LF and CR. */
	int32 ParseIntoArrayLines(TArray<FString>& OutArray, bool bCullEmpty = true) const;
	/** Cuts at blanks, tabs and line ends, and at ExtraDelimiter where that is given. */
	int32 ParseIntoArrayWS(
		TArray<FString>& OutArray, const TCHAR* ExtraDelimiter = nullptr, bool bCullEmpty = true) const;

	template <typename RangeType>
	static FString Join(const RangeType& Range, FStringView Separator)
	{
		return JoinBy(
			Range, Separator, [](const auto& Item) -> const auto& { return Item; });
	}
	template <typename RangeType, typename ProjectionType>
	static FString JoinBy(const RangeType& Range, FStringView Separator, const ProjectionType& Projection)
	{
		FString Result;
		bool bFirst = true;
		for (const auto& Item : Range)
		{
			Result += bFirst ? FStringView() : Separator;
			Result += Projection(Item);
			bFirst = false;
		}
		return Result;
	}

	FString Replace(FStringView From, FStringView To, ESearchCase::Type SearchCase = ESearchCase::IgnoreCase) const;
	/** @return the number of places replaced. */
	int32 ReplaceInline(FStringView From, FStringView To, ESearchCase::Type SearchCase = ESearchCase::IgnoreCase);
	void ReplaceCharInline(TCHAR From, TCHAR To, ESearchCase::Type SearchCase = ESearchCase::IgnoreCase);
	/** Writes backslash escapes for newline, return, tab, quotes and the backslash, and reads them back. */
	FString ReplaceCharWithEscapedChar() const;
	FString ReplaceEscapedCharWithChar() const;
	FString ReplaceQuotesWithEscapedQuotes() const;

	FString TrimStart() const { return FString(FStringView(*this).TrimStart()); }
	FString TrimEnd() const { return FString(FStringView(*this).TrimEnd()); }
	FString TrimStartAndEnd() const { return FString(FStringView(*this).TrimStartAndEnd()); }
	void TrimStartInline();
	void TrimEndInline();
	void TrimStartAndEndInline();
	/** Removes one double quote from each end that has one. */
	FString TrimQuotes(bool* bOutQuotesRemoved = nullptr) const;
	FString TrimChar(TCHAR Char) const;
	bool RemoveFromStart(FStringView Prefix, ESearchCase::Type SearchCase = ESearchCase::IgnoreCase);
	bool RemoveFromEnd(FStringView Suffix, ESearchCase::Type SearchCase = ESearchCase::IgnoreCase);

	FString ToUpper() const;
	FString ToLower() const;
	void ToUpperInline();
	void ToLowerInline();
	FString LeftPad(int32 Count) const;
	FString RightPad(int32 Count) const;
	FString Reverse() const;
	static FString Chr(TCHAR Char) { return FString(1, &Char); }
	static FString ChrN(int32 Count, TCHAR Char);

	bool IsNumeric() const { return FCString::IsNumeric(**this); }
	bool ToBool() const { return FCString::ToBool(**this); }
	static FString FromInt(int64 Value);
	/** The number with a point and no exponent, without needless zeros but with MinFractionalDigits of them. */
	static FString SanitizeFloat(double Value, int32 MinFractionalDigits = 1);
	/** The integer with a comma between groups of three digits. */
	static FString FormatAsNumber(int32 Value);

	friend FString operator+(FString A, const FString& B)
	{
		A.Append(B);
		return A;
	}
	friend FString operator+(FString A, FStringView B)
	{
		A.Append(B);
		return A;
	}
	friend FString operator+(FString A, const TCHAR* B)
	{
		A.Append(B);
		return A;
	}
	friend FString operator+(FString A, TCHAR B)
	{
		A.AppendChar(B);
		return A;
	}
	friend FString operator+(const TCHAR* A, const FString& B) { return FString(A).Append(B); }
	friend FString operator+(TCHAR A, const FString& B) { return Chr(A).Append(B); }
	friend FString operator+(FStringView A, const FString& B) { return FString(A).Append(B); }
	friend FString operator/(FString A, FStringView B)
	{
		A /= B;
		return A;
	}

	friend bool operator==(const FString& A, const FString& B)
	{
		return A.Equals(FStringView(B), ESearchCase::IgnoreCase);
	}
	friend bool operator==(const FString& A, const TCHAR* B)
	{
		return A.Equals(FStringView(B), ESearchCase::IgnoreCase);
	}
	friend bool operator==(const FString& A, FStringView B) { return A.Equals(B, ESearchCase::IgnoreCase); }
	friend bool operator<(const FString& A, const FString& B) { return A.Compare(B, ESearchCase::IgnoreCase) < 0; }
	friend bool operator>(const FString& A, const FString& B) { return A.Compare(B, ESearchCase::IgnoreCase) > 0; }
	friend bool operator<=(const FString& A, const FString& B) { return A.Compare(B, ESearchCase::IgnoreCase) <= 0; }
	friend bool operator>=(const FString& A, const FString& B) { return A.Compare(B, ESearchCase::IgnoreCase) >= 0; }
	friend uint32 GetTypeHash(const FString& String) { return StringSearch::HashIgnoringCase(*String, String.Len()); }

private:
	/** Empty, or the units with their NUL. */
	TArray<TCHAR> Data;
};

template <>
struct TIsRelocatable<FString> : std::true_type
{
};

/** The shortest text that reads back as the same value. */
FString LexToString(double Value);
FString LexToString(float Value);
inline FString LexToString(bool bValue)
{
	return bValue ? TEXT("true") : TEXT("false");
}
template <typename T>
requires(std::is_integral_v<T> && !std::is_same_v<T, bool>) FString LexToString(T Value)
{
	return std::is_signed_v<T> ? FString::FromInt((int64)Value) : FString::Printf(TEXT("%llu"), (uint64)Value);
}
inline const FString& LexToString(const FString& Value)
{
	return Value;
}

/** Each byte as two hexadecimal digits in upper case, in order. */
FString BytesToHex(const uint8* Bytes, int32 Count);

/** Reads pairs of hexadecimal digits. @param OutBytes room for half the text's length, rounded up. @return the bytes.
 */
int32 HexToBytes(const FString& Hex, uint8* OutBytes);
