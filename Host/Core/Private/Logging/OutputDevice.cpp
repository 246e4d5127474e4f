#include "Misc/OutputDevice.h"

void FOutputDevice::Log(const TCHAR* Text)
{
	Serialize(Text, ELogVerbosity::Log, FName());
}

FString FormatLogLine(const TCHAR* Text, ELogVerbosity::Type Verbosity, const FName& Category)
{
	FString Line;
	if (!Category.IsNone())
	{
		Category.AppendString(Line);
		Line += TEXT(": ");
	}
	if (Verbosity != ELogVerbosity::Log)
	{
		Line += ToString(Verbosity);
		Line += TEXT(": ");
	}
	return Line.Append(Text);
}
