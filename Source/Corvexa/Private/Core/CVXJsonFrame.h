#pragma once

#include "Core/CVXJsonCursor.h"

/**
 * A JSON text around the values that may differ in the next one. The events of a stream are mostly alike but for the
 * word they carry, counters and padding: against the frame of the last one only these need reading, and all else that
 * was read holds again.
 */
class FCVXJsonFrame
{
public:
	/** @param Json a well-formed text. @param InHoles the values of it that may differ, in the order of the text. */
	void Keep(FStringView Json, const TArray<FCVXJsonHole>& InHoles);
	void Forget();

	/**
	 * Reads a text that equals the kept one but for its holes. ReadHole(Role, Cursor) is called for each hole with a
	 * role, in order, and returns whether it could read its value.
	 * @return false when the text differs elsewhere, or none is kept; some holes may have been read by then.
	 */
	template <typename VisitorType>
	bool Read(FStringView Json, VisitorType&& ReadHole) const;

private:
	bool PassTo(FStringView& Rest, int32 Start, int32 End, int32 FirstHole, int32 EndHole) const;
	bool Pass(FStringView& Rest, int32 Start, int32 End) const;
	bool PassIgnored(FStringView& Rest, const FCVXJsonHole& Hole) const;

	FString Kept;
	TArray<FCVXJsonHole> Holes;
};

template <typename VisitorType>
bool FCVXJsonFrame::Read(FStringView Json, VisitorType&& ReadHole) const
{
	FStringView Rest = Json;
	int32 Passed = 0;
	int32 NextHole = 0;
	for (int32 Index = 0; Index < Holes.Num(); ++Index)
	{
		const FCVXJsonHole& Hole = Holes[Index];
		if (Hole.Role == FCVXJsonHole::Ignored)
		{
			continue;
		}
		if (!PassTo(Rest, Passed, Hole.Start, NextHole, Index))
		{
			return false;
		}
		FCVXJsonCursor Value(Rest, Hole.Depth);
		if (!ReadHole(Hole.Role, Value))
		{
			return false;
		}
		Rest = Value.GetRest();
		Passed = Hole.End;
		NextHole = Index + 1;
	}
	return !Kept.IsEmpty() && PassTo(Rest, Passed, Kept.Len(), NextHole, Holes.Num()) && Rest.IsEmpty();
}
