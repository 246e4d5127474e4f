#include "Environment.h"
#include "HAL/PlatformProcess.h"

#include <climits>
#include <pwd.h>
#include <unistd.h>

namespace
{
FString ReadExecutablePath()
{
	char Path[PATH_MAX] = {};
	const ssize_t Length = ::readlink("/proc/self/exe", Path, sizeof(Path));
	return Length > 0 ? FString::FromUtf8(Path, (int64)Length) : FString();
}

FString ReadComputerName()
{
	char Name[256] = {};
	return ::gethostname(Name, sizeof(Name) - 1) == 0 ? FString(Name) : FString();
}

/** What the system's list of users says of ours. @param Field which of its texts. */
FString FromUserList(char* passwd::*Field)
{
	char Buffer[4096];
	passwd Entry = {};
	passwd* Found = nullptr;
	const bool bFound = ::getpwuid_r(::getuid(), &Entry, Buffer, sizeof(Buffer), &Found) == 0 && Found;
	return bFound ? FString(Found->*Field) : FString();
}

FString FirstSet(const TCHAR* Variable, const FString& Otherwise)
{
	const FString Value = FEnvironment::Get().GetVariable(Variable);
	return Value.IsEmpty() ? Otherwise : Value;
}

FString AsDirectory(const FString& Path)
{
	return Path.EndsWith(TEXT("/")) ? Path : Path + TEXT("/");
}
} // namespace

uint32 FPlatformProcess::GetCurrentProcessId()
{
	return (uint32)::getpid();
}

const TCHAR* FPlatformProcess::ExecutablePath()
{
	static const FString Path = ReadExecutablePath();
	return *Path;
}

const TCHAR* FPlatformProcess::ComputerName()
{
	static const FString Name = ReadComputerName();
	return *Name;
}

const TCHAR* FPlatformProcess::UserName()
{
	static const FString Name = FirstSet(TEXT("USER"), FromUserList(&passwd::pw_name));
	return *Name;
}

const TCHAR* FPlatformProcess::UserDir()
{
	static const FString Directory = AsDirectory(FirstSet(TEXT("HOME"), FromUserList(&passwd::pw_dir)));
	return *Directory;
}

const TCHAR* FPlatformProcess::UserTempDir()
{
	static const FString Directory = AsDirectory(FirstSet(TEXT("TMPDIR"), TEXT("/tmp")));
	return *Directory;
}

const TCHAR* FPlatformProcess::UserSettingsDir()
{
	static const FString Directory =
		AsDirectory(FirstSet(TEXT("XDG_CONFIG_HOME"), FString(UserDir()) + TEXT(".config")));
	return *Directory;
}
