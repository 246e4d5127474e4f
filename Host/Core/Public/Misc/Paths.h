#pragma once

#include "Containers/UnrealString.h"

class FText;

/**
 * Where things are, and the arithmetic of path texts. Both slashes separate; results use the forward one. The places of
 * the project and the engine are absolute and end in a slash. No call but `FileExists` and `DirectoryExists` looks at
 * the disk. Any thread.
 */
class FPaths
{
public:
	static FString ProjectDir();
	static FString ProjectUserDir() { return ProjectDir(); }
	static FString ProjectContentDir() { return ProjectDir() + TEXT("Content/"); }
	static FString ProjectConfigDir() { return ProjectDir() + TEXT("Config/"); }
	static FString ProjectPluginsDir() { return ProjectDir() + TEXT("Plugins/"); }
	static FString ProjectIntermediateDir() { return ProjectDir() + TEXT("Intermediate/"); }
	static FString ProjectSavedDir() { return ProjectDir() + TEXT("Saved/"); }
	static FString ProjectLogDir() { return ProjectSavedDir() + TEXT("Logs/"); }
	static FString GameSourceDir() { return ProjectDir() + TEXT("Source/"); }
	static FString EngineDir();
	static FString EngineContentDir() { return EngineDir() + TEXT("Content/"); }
	static FString EngineConfigDir() { return EngineDir() + TEXT("Config/"); }
	static FString EnginePluginsDir() { return EngineDir() + TEXT("Plugins/"); }

	/** The project file, absolute; empty while none is set. */
	static FString GetProjectFilePath();
	static bool IsProjectFilePathSet() { return !GetProjectFilePath().IsEmpty(); }
	/**
	 * Sets the project by its file, whose directory becomes the project's and whose base name becomes the project's
	 * name. An empty path makes the working directory the project, which is how a process starts.
	 */
	static void SetProjectFilePath(const FString& NewFilePath);
	/** An empty path stands for the directory of the executable, which is how a process starts. */
	static void SetEngineDir(const FString& NewEngineDir);

	/** Joins with exactly one slash between parts; empty parts leave none. */
	template <typename... PartTypes>
	static FString Combine(FStringView First, const PartTypes&... Rest)
	{
		FString Result(First);
		(Append(Result, FStringView(Rest)), ...);
		return Result;
	}

	/** Absolute, with `.`, `..` and doubled slashes taken out; `..` stops at the root. A slash at the end stays. */
	static FString ConvertRelativePathToFull(const FString& Path);
	static FString ConvertRelativePathToFull(const FString& BasePath, const FString& Path);
	/** Takes `.`, `..` and doubled slashes out. @return false, and no change, when `..` leads above the path's start.
	 */
	static bool CollapseRelativeDirectories(FString& InOutPath);
	static void NormalizeFilename(FString& InOutPath);
	/** As `NormalizeFilename`, and takes the slash at the end away unless it is the root. */
	static void NormalizeDirectoryName(FString& InOutPath);
	static void RemoveDuplicateSlashes(FString& InOutPath);
	static void MakeStandardFilename(FString& InOutPath);
	static void MakePlatformFilename(FString& InOutPath) { NormalizeFilename(InOutPath); }
	/** Makes a path relative to the directory of another, which must end in a slash if it is itself a directory. */
	static bool MakePathRelativeTo(FString& InOutPath, const TCHAR* RelativeTo);

	/** What follows the last dot of the last part; empty without a dot. */
	static FString GetExtension(const FString& Path, bool bIncludeDot = false);
	/** The last part. */
	static FString GetCleanFilename(const FString& Path);
	/** The last part without its extension; with bRemovePath false, the whole path without it. */
	static FString GetBaseFilename(const FString& Path, bool bRemovePath = true);
	/** What precedes the last slash. */
	static FString GetPath(const FString& Path);
	/** The last part, not counting slashes at the end. */
	static FString GetPathLeaf(const FString& Path);
	/** Replaces the extension if there is one; an empty new one removes it. */
	static FString ChangeExtension(const FString& Path, const FString& NewExtension);
	/** As `ChangeExtension`, and adds the extension where there is none. */
	static FString SetExtension(const FString& Path, const FString& NewExtension);
	static void Split(const FString& Path, FString& OutPath, FString& OutName, FString& OutExtension);

	static bool IsRelative(const FString& Path);
	static bool IsDrive(const FString& Path);
	/** Both are made full first; a path is under itself. Case counts. */
	static bool IsUnderDirectory(const FString& Path, const FString& Directory);
	static bool IsSamePath(const FString& A, const FString& B);
	static bool FileExists(const FString& Path);
	static bool DirectoryExists(const FString& Path);

	/** Takes out, or replaces, what file names of some system don't allow. @param Replacement 0 takes out. */
	static FString MakeValidFileName(const FString& Text, TCHAR Replacement = 0);
	/** Whether every system takes the path. @param OutReason why not; may be null. */
	static bool ValidatePath(const FString& Path, FText* OutReason = nullptr);
	/** A path in a directory that nothing else uses. */
	static FString CreateTempFilename(
		const TCHAR* Directory, const TCHAR* Prefix = TEXT(""), const TCHAR* Extension = TEXT(".tmp"));

private:
	static void Append(FString& Path, FStringView Part) { Path.PathAppend(Part.GetData(), Part.Len()); }
};
