#pragma once

#include "Core/CVXJsonCursor.h"
#include "Misc/Optional.h"

/**
 * Reads a JSON object of known members without a tree. Names compare without regard to case. A member that isn't asked
 * for, or whose value is of another kind than the one asked for, is passed over and leaves its target as it was.
 *
 *     FCVXJsonMembers Members(Cursor);
 *     const bool bRead = Members.Read([&] { Members.Text(TEXT("title"), Title); });
 */
class FCVXJsonMembers
{
public:
	/** @param InCursor stands before the object; must outlive this. */
	explicit FCVXJsonMembers(FCVXJsonCursor& InCursor)
		: Cursor(InCursor)
	{
	}

	/** Calls Visit for each member, which asks with the operations below for those it knows. @return false when the
	 * text is no JSON object. */
	template <typename VisitorType>
	bool Read(VisitorType&& Visit)
	{
		return Cursor.ReadObject(
			[&](FStringView InName)
			{
				Name = InName;
				bTaken = false;
				Visit();
				return bTaken ? bWentWell : Cursor.SkipValue();
			});
	}

	// For use while Visit runs.

	void Text(const TCHAR* Wanted, FString& Out)
	{
		if (IsNext(Wanted) && Cursor.IsAtString())
		{
			Take(Cursor.ReadString(Out));
		}
	}
	void Text(const TCHAR* Wanted, TOptional<FString>& Out)
	{
		if (IsNext(Wanted) && Cursor.IsAtString())
		{
			Take(Cursor.ReadString(Out.Emplace()));
		}
	}
	void Bool(const TCHAR* Wanted, bool& Out)
	{
		if (IsNext(Wanted) && Cursor.IsAtBool())
		{
			Take(Cursor.ReadBool(Out));
		}
	}
	/** A fraction is cut. */
	void Integer(const TCHAR* Wanted, int32& Out)
	{
		if (IsNext(Wanted) && Cursor.IsAtNumber())
		{
			Take(Cursor.ReadInteger(Out));
		}
	}
	/** @param ReadElement reads or skips one value through the cursor, and returns whether that went well.
	 * @return whether this member is the array asked for. */
	template <typename VisitorType>
	bool Array(const TCHAR* Wanted, VisitorType&& ReadElement)
	{
		if (!IsNext(Wanted) || !Cursor.IsAtArray())
		{
			return false;
		}
		Take(Cursor.ReadArray(ReadElement));
		return true;
	}

private:
	bool IsNext(const TCHAR* Wanted) const { return !bTaken && Name.Equals(Wanted, ESearchCase::IgnoreCase); }
	void Take(bool bInWentWell)
	{
		bTaken = true;
		bWentWell = bInWentWell;
	}

	FCVXJsonCursor& Cursor;
	FStringView Name;
	bool bTaken = false;
	bool bWentWell = false;
};
