#include "ChildReaper.h"
#include "HAL/PlatformMisc.h"
#include "HAL/PlatformProcess.h"
#include "Misc/Paths.h"
#include "SpawnRequest.h"

namespace
{
bool HasDesktop()
{
	return !FPlatformMisc::GetEnvironmentVariable(TEXT("DISPLAY")).IsEmpty() ||
		!FPlatformMisc::GetEnvironmentVariable(TEXT("WAYLAND_DISPLAY")).IsEmpty();
}

/** Hands a path or an address to the desktop's opener. The argument is never read as a command line. */
bool Open(const FString& What)
{
	FSpawnRequest Request;
	Request.Program = TEXT("xdg-open");
	Request.Arguments.Add(What);
	const pid_t Pid = HasDesktop() ? Request.Spawn() : 0;
	if (Pid != 0)
	{
		FChildReaper::Get().Adopt(Pid);
	}
	return Pid != 0;
}
} // namespace

bool FPlatformProcess::LaunchFileInDefaultExternalApplication(const TCHAR* FileName, const TCHAR*)
{
	return Open(FPaths::ConvertRelativePathToFull(FileName));
}

void FPlatformProcess::LaunchURL(const TCHAR* URL, const TCHAR* Params, FString* Error)
{
	const FString Address = FString(URL) + Params;
	// Anything else could name a program's option or a local file.
	const bool bWeb = Address.StartsWith(TEXT("http://")) || Address.StartsWith(TEXT("https://"));
	const bool bOpened = bWeb && Open(Address);
	if (Error)
	{
		*Error = bOpened ? FString() : TEXT("Cannot open ") + Address;
	}
}
