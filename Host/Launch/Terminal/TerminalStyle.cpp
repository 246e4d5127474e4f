#include "Launch/Terminal/TerminalStyle.h"

#include "HAL/PlatformMisc.h"

#include <sys/ioctl.h>
#include <unistd.h>

namespace
{
bool IsSet(const TCHAR* Variable)
{
	return !FPlatformMisc::GetEnvironmentVariable(Variable).IsEmpty();
}
} // namespace

FTerminalStyle FTerminalStyle::Detect(int32 Descriptor)
{
	FTerminalStyle Style;
	const FString Terminal = FPlatformMisc::GetEnvironmentVariable(TEXT("TERM"));
	Style.bCursor = ::isatty(Descriptor) != 0 && !Terminal.IsEmpty() && Terminal != TEXT("dumb");
	Style.bColour = Style.bCursor && !IsSet(TEXT("NO_COLOR"));
	winsize Size = {};
	if (Style.bCursor && ::ioctl(Descriptor, TIOCGWINSZ, &Size) == 0 && Size.ws_col > 0 && Size.ws_row > 0)
	{
		Style.Columns = Size.ws_col;
		Style.Rows = Size.ws_row;
	}
	return Style;
}

const TCHAR* GetLookSequence(ETerminalLook Look)
{
	switch (Look)
	{
	case ETerminalLook::Dim:
		return TEXT("\x1b[2m");
	case ETerminalLook::Bold:
		return TEXT("\x1b[1m");
	case ETerminalLook::Good:
		return TEXT("\x1b[32m");
	case ETerminalLook::Bad:
		return TEXT("\x1b[31m");
	case ETerminalLook::Asking:
		return TEXT("\x1b[33m");
	case ETerminalLook::Name:
		return TEXT("\x1b[36m");
	case ETerminalLook::Plain:
		break;
	}
	return TEXT("");
}
