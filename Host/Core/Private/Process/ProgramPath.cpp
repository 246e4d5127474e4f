#include "ProgramPath.h"

#include "Environment.h"
#include "HAL/PosixFile.h"
#include "Misc/Paths.h"

#include <cerrno>
#include <unistd.h>

namespace
{
bool IsProgram(const FString& Path)
{
	struct stat Status = {};
	if (!PosixFile::Stat(*FNativePath(*Path), Status))
	{
		return false;
	}
	if (!S_ISREG(Status.st_mode))
	{
		errno = EACCES;
		return false;
	}
	return ::access(*FNativePath(*Path), X_OK) == 0;
}

FString Checked(const FString& Path)
{
	const FString Full = FPaths::ConvertRelativePathToFull(Path);
	return IsProgram(Full) ? Full : FString();
}
} // namespace

FString FindProgram(const FString& Program)
{
	int32 Slash = INDEX_NONE;
	if (Program.FindChar(u'/', Slash))
	{
		return Checked(Program);
	}
	FString Path = FEnvironment::Get().GetVariable(TEXT("PATH"));
	TArray<FString> Directories;
	(Path.IsEmpty() ? FString(TEXT("/usr/local/bin:/usr/bin:/bin")) : Path).ParseIntoArray(Directories, TEXT(":"));
	for (const FString& Directory : Directories)
	{
		const FString Candidate = FPaths::Combine(Directory, Program);
		if (!Program.IsEmpty() && IsProgram(Candidate))
		{
			return FPaths::ConvertRelativePathToFull(Candidate);
		}
	}
	errno = ENOENT;
	return FString();
}
