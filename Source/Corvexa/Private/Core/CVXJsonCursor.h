#pragma once

#include "CoreMinimal.h"

/** A value of a JSON text that another value may stand for, with nothing else about the text changing for its reader.
 */
struct FCVXJsonHole
{
	/** The role of a value that nobody reads. */
	static constexpr int32 Ignored = 0;

	/** Where the value stands, with its quotes or brackets. */
	int32 Start = 0;
	int32 End = 0;
	/** How many objects and arrays are open around it. */
	int32 Depth = 0;
	/** The reader's own number for what it reads there. */
	int32 Role = Ignored;
};

/**
 * Reads a JSON text (RFC 8259) in place, forward only and without a tree: for what a stream carries once a word, where
 * a tree of values would cost more than all the rest. Every operation gives false for text that isn't JSON, from where
 * on the cursor is of no more use, and for a value of another kind than the one asked for.
 */
class FCVXJsonCursor
{
public:
	/** Objects and arrays nested deeper than this are refused. */
	static constexpr int32 MaxDepth = 512;

	/** @param InText must outlive the cursor. A byte order mark in front is passed over. */
	explicit FCVXJsonCursor(FStringView InText);
	/** Begins inside a text, in front of a value. @param InDepth the objects and arrays open around it. */
	FCVXJsonCursor(FStringView InRest, int32 InDepth);

	/** Notes from now on the values that are ignored or read in a role. @param Out must outlive the cursor. */
	void NoteHoles(TArray<FCVXJsonHole>& Out) { Holes = &Out; }

	/** What the next value is, by its first character. */
	bool IsAtObject() { return IsAt(TEXT('{')); }
	bool IsAtArray() { return IsAt(TEXT('[')); }
	bool IsAtString() { return IsAt(TEXT('"')); }
	bool IsAtNumber();
	bool IsAtBool() { return IsAt(TEXT('t')) || IsAt(TEXT('f')); }

	/**
	 * Reads an object. ReadMember is called with the name of each member, good until the cursor is used next; it reads
	 * the value or skips it, and returns whether that went well.
	 */
	template <typename VisitorType>
	bool ReadObject(VisitorType&& ReadMember);
	/** Reads an array. ReadElement reads or skips one value, and returns whether that went well. */
	template <typename VisitorType>
	bool ReadArray(VisitorType&& ReadElement);
	/** Reads a string into Out, whose memory is used again. @param Role notes it, unless it is `Ignored`. */
	bool ReadString(FString& Out, int32 Role = FCVXJsonHole::Ignored);
	/** The same without a copy where the string has no escapes. @param Out good until the cursor is used next. */
	bool ReadString(FStringView& Out);
	/** Reads a number and cuts its fraction. @param Role notes it, unless it is `Ignored`. */
	bool ReadInteger(int32& Out, int32 Role = FCVXJsonHole::Ignored);
	bool ReadBool(bool& bOut);
	/** Passes over a value of any kind, checking it. For a value whose kind has told the reader something. */
	bool SkipValue();
	/** The same for a value that means nothing to the reader, whatever it is: it is noted as a hole. */
	bool IgnoreValue();

	/** Whether nothing but blanks is left. */
	bool IsAtEnd();
	/** What hasn't been read yet. */
	FStringView GetRest() const { return FStringView(At, (int32)(End - At)); }

private:
	void SkipSpace();
	bool IsAt(TCHAR Char);
	/** Passes over blanks, and over the character if it is next. */
	bool Accept(TCHAR Char);
	bool Open(TCHAR Bracket) { return Accept(Bracket) && ++Depth <= MaxDepth; }
	bool Close(TCHAR Bracket);
	bool ReadName(FStringView& Out);
	const TCHAR* FindPlainEnd() const;
	bool DecodeString(FString& Out);
	bool DecodeEscape(FString& Out);
	bool DecodeCodeUnit(FString& Out);
	bool ReadNumber(FStringView& Out);
	bool SkipDigits();
	bool SkipWord(FStringView Word);

	void Note(const TCHAR* Start, int32 Role);

	const TCHAR* const Begin;
	const TCHAR* At;
	const TCHAR* const End;
	TArray<FCVXJsonHole>* Holes = nullptr;
	int32 Depth = 0;
	/** The last string that had escapes. */
	FString Decoded;
};

template <typename VisitorType>
bool FCVXJsonCursor::ReadObject(VisitorType&& ReadMember)
{
	if (!Open(TEXT('{')))
	{
		return false;
	}
	if (Close(TEXT('}')))
	{
		return true;
	}
	do
	{
		FStringView Name;
		if (!ReadName(Name) || !ReadMember(Name))
		{
			return false;
		}
	} while (Accept(TEXT(',')));
	return Close(TEXT('}'));
}

template <typename VisitorType>
bool FCVXJsonCursor::ReadArray(VisitorType&& ReadElement)
{
	if (!Open(TEXT('[')))
	{
		return false;
	}
	if (Close(TEXT(']')))
	{
		return true;
	}
	do
	{
		if (!ReadElement())
		{
			return false;
		}
	} while (Accept(TEXT(',')));
	return Close(TEXT(']'));
}

inline void FCVXJsonCursor::SkipSpace()
{
	while (At != End && (*At == TEXT(' ') || *At == TEXT('\n') || *At == TEXT('\r') || *At == TEXT('\t')))
	{
		++At;
	}
}

inline bool FCVXJsonCursor::IsAt(TCHAR Char)
{
	SkipSpace();
	return At != End && *At == Char;
}

inline bool FCVXJsonCursor::Accept(TCHAR Char)
{
	const bool bNext = IsAt(Char);
	At += bNext ? 1 : 0;
	return bNext;
}

inline bool FCVXJsonCursor::Close(TCHAR Bracket)
{
	const bool bClosed = Accept(Bracket);
	Depth -= bClosed ? 1 : 0;
	return bClosed;
}
