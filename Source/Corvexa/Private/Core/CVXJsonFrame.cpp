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

/** Passes over what stands at [Start, End) of the kept text, if it comes next. */
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

/** The same for a value that is what it was. One character more tells a number from a longer one. */
bool FCVXJsonFrame::PassUnchanged(FStringView& Rest, const FCVXJsonHole& Hole) const
{
	const int32 Count = Hole.End - Hole.Start;
	if (Rest.Len() <= Count || !Rest.Left(Count + 1).Equals(FStringView(*Kept + Hole.Start, Count + 1)))
	{
		return false;
	}
	Rest.RemovePrefix(Count);
	return true;
}
