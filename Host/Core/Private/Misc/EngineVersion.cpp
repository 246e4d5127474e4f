#include "Misc/EngineVersion.h"

const FEngineVersion& FEngineVersion::Current()
{
	static const FEngineVersion Version;
	return Version;
}

FString FEngineVersion::ToString() const
{
	return FString::Printf(TEXT("%d.%d.%d"), GetMajor(), GetMinor(), GetPatch());
}
