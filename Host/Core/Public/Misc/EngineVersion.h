#pragma once

#include "Containers/UnrealString.h"

/** The version of the host's interface. */
class FEngineVersion
{
public:
	static const FEngineVersion& Current();

	uint16 GetMajor() const { return 5; }
	uint16 GetMinor() const { return 7; }
	uint16 GetPatch() const { return 0; }
	/** "5.7.0". */
	FString ToString() const;
};
