#include "Launch/Session/ProjectChoice.h"

#include "HAL/FileManager.h"
#include "Misc/Paths.h"

#include <filesystem>

namespace
{
constexpr const TCHAR* ProjectExtension = TEXT("uproject");

/** The host has no notion of a working directory. */
FString GetWorkingDirectory()
{
	std::error_code Error;
	return FString(std::filesystem::current_path(Error).c_str());
}
} // namespace

bool FindProjectFile(const FString& Given, FString& OutFile, FString& OutError)
{
	FString Path = FPaths::ConvertRelativePathToFull(GetWorkingDirectory() + TEXT("/"), Given);
	FPaths::NormalizeDirectoryName(Path);
	IFileManager& Files = IFileManager::Get();
	if (Files.FileExists(*Path) && FPaths::GetExtension(Path) == ProjectExtension)
	{
		OutFile = Path;
		return true;
	}
	if (!Files.DirectoryExists(*Path))
	{
		OutError = FString::Printf(TEXT("no project at '%s'"), *Path);
		return false;
	}
	TArray<FString> Found;
	Files.FindFiles(Found, *Path, ProjectExtension);
	if (Found.Num() > 1)
	{
		OutError = FString::Printf(TEXT("'%s' holds several project files; name one"), *Path);
		return false;
	}
	const FString Name = Found.IsEmpty() ? FPaths::GetPathLeaf(Path) + TEXT(".") + ProjectExtension : Found[0];
	OutFile = FPaths::Combine(Path, Name);
	return true;
}
