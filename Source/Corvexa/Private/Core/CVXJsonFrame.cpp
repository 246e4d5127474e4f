#include "Core/CVXJsonFrame.h"

void FCVXJsonFrame::Keep(FStringView Json, const TArray<FCVXJsonHole>& InHoles)
{
	Kept.Reset();
	Kept.Append(Json);
	Holes = InHoles;
}

void FCVXJsonFrame::Forget()
{
	Kept.Reset();
	Holes.Reset();
}

/** Passes over what stands at [Start, End) of the kept text, around the ignored holes there. */
bool FCVXJsonFrame::PassTo(FStringView& Rest, int32 Start, int32 End, int32 FirstHole, int32 EndHole) const
{
	if (Pass(Rest, Start, End))
	{
		return true;
	}
	for (int32 Index = FirstHole; Index < EndHole; ++Index)
	{
		if (!Pass(Rest, Start, Holes[Index].Start) || !PassIgnored(Rest, Holes[Index]))
		{
			return false;
		}
		Start = Holes[Index].End;
	}
	return Pass(Rest, Start, End);
}

/** The same for what nothing may differ in. */
bool FCVXJsonFrame::Pass(FStringView& Rest, int32 Start, int32 End) const
{
	const int32 Count = End - Start;
	if (Rest.Len() < Count || !Rest.Left(Count).Equals(FStringView(*Kept + Start, Count)))
	{
		return false;
	}
	Rest.RemovePrefix(Count);
	return true;
}

bool FCVXJsonFrame::PassIgnored(FStringView& Rest, const FCVXJsonHole& Hole) const
{
	// Mostly it is what it was. One character more tells a number from a longer one.
	const int32 Count = Hole.End - Hole.Start;
	if (Rest.Left(Count + 1).Equals(FStringView(*Kept + Hole.Start, Count + 1)))
	{
		Rest.RemovePrefix(Count);
		return true;
	}
	FCVXJsonCursor Value(Rest, Hole.Depth);
	const bool bSkipped = Value.SkipValue();
	Rest = Value.GetRest();
	return bSkipped;
}
