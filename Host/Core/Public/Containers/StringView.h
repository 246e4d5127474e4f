#pragma once

#include "Misc/AssertionMacros.h"
#include "Misc/CString.h"

#include <type_traits>

/**
 * A piece of UTF-16 text that somebody else owns, not necessarily ended by a NUL. Comparison with operators ignores
 * case, as it does for `FString`.
 */
class FStringView
{
public:
	using ElementType = TCHAR;

	constexpr FStringView() = default;
	constexpr FStringView(const TCHAR* String)
		: Data(String)
		, Size(String ? (int32)std::char_traits<TCHAR>::length(String) : 0)
	{
	}
	constexpr FStringView(const TCHAR* String, int32 Len)
		: Data(String)
		, Size(Len)
	{
	}
	template <typename StringType>
	requires requires(const StringType& String)
	{
		{
			*String
			} -> std::convertible_to<const TCHAR*>;
		{
			String.Len()
			} -> std::convertible_to<int32>;
	}
	FStringView(const StringType& String)
		: Data(*String)
		, Size(String.Len())
	{
	}

	constexpr const TCHAR* GetData() const { return Data; }
	constexpr int32 Len() const { return Size; }
	constexpr bool IsEmpty() const { return Size == 0; }
	constexpr bool IsValidIndex(int32 Index) const { return (uint32)Index < (uint32)Size; }
	constexpr TCHAR operator[](int32 Index) const
	{
		check(IsValidIndex(Index));
		return Data[Index];
	}

	/** Parts; what lies outside is cut. */
	constexpr FStringView Mid(int32 Index, int32 Count = MAX_int32) const
	{
		const int32 First = Index < 0 ? 0 : (Index > Size ? Size : Index);
		const int32 Rest = Size - First;
		return FStringView(Data + First, Count < 0 ? 0 : (Count < Rest ? Count : Rest));
	}
	constexpr FStringView Left(int32 Count) const { return Mid(0, Count); }
	constexpr FStringView LeftChop(int32 Count) const { return Mid(0, Size - Count); }
	constexpr FStringView Right(int32 Count) const { return Mid(Count < Size ? Size - Count : 0); }
	constexpr FStringView RightChop(int32 Count) const { return Mid(Count); }
	constexpr void LeftInline(int32 Count) { *this = Left(Count); }
	constexpr void RightChopInline(int32 Count) { *this = RightChop(Count); }
	constexpr void RemovePrefix(int32 Count) { *this = RightChop(Count); }
	constexpr void RemoveSuffix(int32 Count) { *this = LeftChop(Count); }

	FStringView TrimStart() const
	{
		int32 First = 0;
		while (First < Size && FChar::IsWhitespace(Data[First]))
		{
			++First;
		}
		return Mid(First);
	}
	FStringView TrimEnd() const
	{
		int32 End = Size;
		while (End > 0 && FChar::IsWhitespace(Data[End - 1]))
		{
			--End;
		}
		return Left(End);
	}
	FStringView TrimStartAndEnd() const { return TrimStart().TrimEnd(); }

	bool Equals(FStringView Other, ESearchCase::Type SearchCase = ESearchCase::CaseSensitive) const
	{
		if (Size != Other.Size)
		{
			return false;
		}
		// Nearly all texts that are equal are so exactly, which against a literal takes an instruction or two.
		const SIZE_T Bytes = (SIZE_T)Other.Size * sizeof(TCHAR);
		return Bytes == 0 || __builtin_memcmp(Data, Other.Data, Bytes) == 0 ||
			(SearchCase == ESearchCase::IgnoreCase && StringSearch::EqualsCount(Data, Other.Data, Size, SearchCase));
	}
	int32 Compare(FStringView Other, ESearchCase::Type SearchCase = ESearchCase::CaseSensitive) const
	{
		return StringSearch::Compare(Data, Size, Other.Data, Other.Size, SearchCase);
	}
	bool StartsWith(FStringView Prefix, ESearchCase::Type SearchCase = ESearchCase::IgnoreCase) const
	{
		return Left(Prefix.Size).Equals(Prefix, SearchCase);
	}
	bool StartsWith(TCHAR Prefix) const { return Size > 0 && Data[0] == Prefix; }
	bool EndsWith(FStringView Suffix, ESearchCase::Type SearchCase = ESearchCase::IgnoreCase) const
	{
		return Right(Suffix.Size).Equals(Suffix, SearchCase);
	}
	bool EndsWith(TCHAR Suffix) const { return Size > 0 && Data[Size - 1] == Suffix; }

	int32 Find(
		FStringView Search, int32 StartPosition = 0, ESearchCase::Type SearchCase = ESearchCase::CaseSensitive) const
	{
		return StringSearch::Find(Data, Size, Search.Data, Search.Size, StartPosition, SearchCase);
	}
	bool Contains(FStringView Search, ESearchCase::Type SearchCase = ESearchCase::IgnoreCase) const
	{
		return Find(Search, 0, SearchCase) != INDEX_NONE;
	}
	bool FindChar(TCHAR Char, int32& OutIndex) const
	{
		OutIndex = StringSearch::FindChar(Data, Size, Char);
		return OutIndex != INDEX_NONE;
	}
	bool FindLastChar(TCHAR Char, int32& OutIndex) const
	{
		OutIndex = Size - 1;
		while (OutIndex >= 0 && Data[OutIndex] != Char)
		{
			--OutIndex;
		}
		return OutIndex >= 0;
	}

	constexpr const TCHAR* begin() const { return Data; }
	constexpr const TCHAR* end() const { return Data + Size; }

	friend bool operator==(FStringView A, FStringView B) { return A.Equals(B, ESearchCase::IgnoreCase); }
	friend bool operator<(FStringView A, FStringView B) { return A.Compare(B, ESearchCase::IgnoreCase) < 0; }
	friend uint32 GetTypeHash(FStringView View) { return StringSearch::HashIgnoringCase(View.Data, View.Size); }

private:
	const TCHAR* Data = nullptr;
	int32 Size = 0;
};

constexpr FStringView operator""_SV(const TCHAR* String, SIZE_T Len)
{
	return FStringView(String, (int32)Len);
}
