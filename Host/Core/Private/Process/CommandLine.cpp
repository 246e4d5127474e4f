#include "CommandLine.h"

namespace
{
bool IsSeparator(TCHAR Char)
{
	return Char == u' ' || Char == u'\t' || Char == u'\n' || Char == u'\r';
}

/** Reads one argument. @param At its first unit; left at the separator or the end behind it. */
FString ReadArgument(const TCHAR*& At)
{
	FString Argument;
	bool bQuoted = false;
	for (; *At && (bQuoted || !IsSeparator(*At)); ++At)
	{
		if (At[0] == u'\\' && At[1] == u'"')
		{
			Argument.AppendChar(*++At);
		}
		else if (*At == u'"')
		{
			bQuoted = !bQuoted;
		}
		else
		{
			Argument.AppendChar(*At);
		}
	}
	return Argument;
}
} // namespace

TArray<FString> SplitCommandLine(const TCHAR* CommandLine)
{
	TArray<FString> Arguments;
	const TCHAR* At = CommandLine ? CommandLine : TEXT("");
	while (*At)
	{
		if (IsSeparator(*At))
		{
			++At;
			continue;
		}
		Arguments.Add(ReadArgument(At));
	}
	return Arguments;
}
