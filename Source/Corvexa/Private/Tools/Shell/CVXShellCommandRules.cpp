#include "Tools/Shell/CVXShellCommandRules.h"

#include "Core/CVXLog.h"
#include "HAL/FileManager.h"
#include "Misc/Paths.h"

namespace
{
const TCHAR* const BlockedTexts[] = {
	TEXT("rm -rf"),
	TEXT("rm -fr"),
	TEXT("format "),
	TEXT("format.com"),
	TEXT("diskpart"),
	TEXT("del /f /s"),
	TEXT("del /s /f"),
	TEXT("deltree"),
	TEXT("rd /s /q"),
	TEXT(":(){:|:&};:"),
	TEXT("mkfs"),
	TEXT("dd if="),
	TEXT("shred "),
	TEXT("chmod 000"),
	TEXT("chattr +i"),
};

/** In the order in which they are taken out. */
const TCHAR* const NullDeviceRedirects[] = {
	TEXT("2>/dev/null"),
	TEXT("2> /dev/null"),
	TEXT(">/dev/null"),
	TEXT("> /dev/null"),
	TEXT("2>NUL"),
	TEXT("2> NUL"),
	TEXT(">NUL"),
	TEXT("> NUL"),
};

const TCHAR* const ReservedNames[] = {
	TEXT("NUL"),
	TEXT("CON"),
	TEXT("PRN"),
	TEXT("AUX"),
	TEXT("COM1"),
	TEXT("COM2"),
	TEXT("COM3"),
	TEXT("COM4"),
	TEXT("LPT1"),
	TEXT("LPT2"),
	TEXT("LPT3"),
	TEXT("LPT4"),
};

#if PLATFORM_WINDOWS
/** In front of a path, makes the system take a device's name for a file's. */
const TCHAR* const PlainPathPrefix = TEXT("\\\\?\\");
#else
const TCHAR* const PlainPathPrefix = TEXT("");
#endif
} // namespace

bool CVXShellCommandRules::IsBlocked(const FString& Command)
{
	const FString Lower = Command.ToLower();
	for (const TCHAR* Blocked : BlockedTexts)
	{
		if (Lower.Contains(Blocked, ESearchCase::CaseSensitive))
		{
			return true;
		}
	}
	return false;
}

FString CVXShellCommandRules::StripNullDevice(const FString& Command)
{
	if (!Command.Contains(TEXT("nul")) && !Command.Contains(TEXT("/dev/null")))
	{
		return Command;
	}
	FString Stripped = Command;
	int32 Count = 0;
	for (const TCHAR* Redirect : NullDeviceRedirects)
	{
		Count += Stripped.ReplaceInline(Redirect, TEXT(""));
	}
	UE_CLOG(Count > 0, LogCorvexa, Log, TEXT("Stripped null device redirects from shell command: '%s' -> '%s'"),
		*Command, *Stripped);
	return Stripped;
}

FString CVXShellCommandRules::AdaptToShell(const FString& Command)
{
#if PLATFORM_WINDOWS
	FString Adapted = Command;
	const int32 Count = Adapted.ReplaceInline(TEXT("mkdir -p "), TEXT("mkdir "), ESearchCase::CaseSensitive) +
		Adapted.ReplaceInline(TEXT("mkdir -p\""), TEXT("mkdir \""), ESearchCase::CaseSensitive);
	UE_CLOG(Count > 0, LogCorvexa, Log, TEXT("Normalized 'mkdir -p' to 'mkdir' for Windows: '%s' -> '%s'"), *Command,
		*Adapted);
	return Adapted;
#else
	return Command;
#endif
}

void CVXShellCommandRules::SweepReservedNames(const FString& Directory)
{
	IFileManager& Files = IFileManager::Get();
	for (const TCHAR* Name : ReservedNames)
	{
		const FString Path = PlainPathPrefix + FPaths::Combine(Directory, Name);
		if (Files.FileExists(*Path) && Files.Delete(*Path, false, true))
		{
			UE_LOG(LogCorvexa, Warning, TEXT("CVX Shell: Removed reserved-name file '%s' from '%s'"), Name, *Directory);
		}
	}
}
