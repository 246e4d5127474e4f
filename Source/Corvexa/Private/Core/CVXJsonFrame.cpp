#include "Core/CVXJsonFrame.h"

#include "Core/CVXJsonCursor.h"

void FCVXJsonFrame::Keep(FStringView Json, int32 Start, int32 End)
{
	Before.Reset();
	Before.Append(Json.Left(Start));
	Behind.Reset();
	Behind.Append(Json.RightChop(End));
}

bool FCVXJsonFrame::ReadString(FStringView Json, FString& OutValue) const
{
	if (Before.IsEmpty() || !Json.StartsWith(Before, ESearchCase::CaseSensitive))
	{
		return false;
	}
	FCVXJsonCursor Rest(Json.RightChop(Before.Len()));
	return Rest.ReadString(OutValue) && Rest.GetRest().Equals(Behind);
}
