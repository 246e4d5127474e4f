#pragma once

#include "CoreMinimal.h"

/**
 * What stands around one string of a JSON text. The events of a stream are often the same but for the word they carry:
 * behind the frame of the last one, only the word needs reading, and all else that was read holds again.
 */
class FCVXJsonFrame
{
public:
	/** Keeps the frame of the string whose quotes and what is between them stand at [Start, End) of a well-formed text.
	 */
	void Keep(FStringView Json, int32 Start, int32 End);

	/** Reads the string that stands in the frame kept. @return false when there is none or the text differs from it. */
	bool ReadString(FStringView Json, FString& OutValue) const;

private:
	FString Before;
	FString Behind;
};
