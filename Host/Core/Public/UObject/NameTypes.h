#pragma once

#include "Containers/UnrealString.h"

/** Names that the host itself uses. `NAME_None` is the empty name. */
enum EName : uint32
{
	NAME_None = 0
};

/** Whether making a name adds a new text to the table. */
enum EFindName
{
	FNAME_Find,
	FNAME_Add
};

/** Longest text of a name, in code units. */
constexpr int32 NAME_SIZE = 1023;

/**
 * A text kept once in a process-wide table, so that copies and comparisons cost one integer. Names that differ in case
 * alone are equal; each shows the spelling that it was made with. A decimal suffix behind an underscore is a number of
 * its own ("Light_12" is "Light" and 12), so that numbered names share one entry. Any thread.
 */
class FName
{
public:
	FName() = default;
	FName(EName) {}
	/** A text longer than `NAME_SIZE` is cut. With FNAME_Find, an unknown text gives `NAME_None`. */
	FName(FStringView Text, EFindName FindType = FNAME_Add);
	FName(const TCHAR* Text, EFindName FindType = FNAME_Add)
		: FName(FStringView(Text), FindType)
	{
	}
	FName(const FString& Text, EFindName FindType = FNAME_Add)
		: FName(FStringView(Text), FindType)
	{
	}
	/** @param Number as `GetNumber` gives it: 0 for none, else the shown number plus 1. */
	FName(FName Base, int32 InNumber)
		: ComparisonIndex(Base.ComparisonIndex)
		, DisplayIndex(Base.DisplayIndex)
		, Number(InNumber)
	{
	}

	FString ToString() const;
	void ToString(FString& Out) const { Out = ToString(); }
	void AppendString(FString& Out) const;
	/** The text without its number. */
	FString GetPlainNameString() const;
	int32 GetNumber() const { return Number; }
	void SetNumber(int32 InNumber) { Number = InNumber; }
	bool IsNone() const { return ComparisonIndex == 0 && Number == 0; }
	bool IsValid() const { return true; }

	/** Alphabetic order without regard to case. @return below, at or above 0. */
	int32 Compare(FName Other) const;
	bool LexicalLess(FName Other) const { return Compare(Other) < 0; }
	/** An order that is the same within one run of the process and costs nothing. */
	bool FastLess(FName Other) const
	{
		return ComparisonIndex != Other.ComparisonIndex ? ComparisonIndex < Other.ComparisonIndex
														: Number < Other.Number;
	}

	friend bool operator==(FName A, FName B) { return A.ComparisonIndex == B.ComparisonIndex && A.Number == B.Number; }
	friend bool operator==(FName A, EName B) { return A == FName(B); }
	friend bool operator==(FName A, const TCHAR* B) { return A.ToString() == B; }
	friend uint32 GetTypeHash(FName Name)
	{
		return HashBits64((uint64)Name.ComparisonIndex << 32 | (uint32)Name.Number);
	}

private:
	/** Places in the table: of the spelling first seen, and of this name's own. */
	uint32 ComparisonIndex = 0;
	uint32 DisplayIndex = 0;
	int32 Number = 0;
};

inline FString LexToString(FName Name)
{
	return Name.ToString();
}
