#include "Tools/Files/CVXProjectPaths.h"

#include "Core/CVXSettings.h"
#include "HAL/FileManager.h"
#include "Misc/Paths.h"

namespace
{
/** What no system takes as a path. */
constexpr int32 MaxPathChars = 4096;

bool Deny(const FString& Path, FString& OutError)
{
	OutError = FString::Printf(TEXT("Access denied: '%s' is outside the project directory."), *Path);
	return false;
}

/** Whether the system could take the path at all. */
bool IsUsable(const FString& Path, FString& OutError)
{
	if (Path.Len() > MaxPathChars)
	{
		OutError = FString::Printf(TEXT("The path is too long: %d characters, beginning with '%s'."), Path.Len(),
			*Path.Left(100).Replace(TEXT("\n"), TEXT(" ")));
		return false;
	}
	int32 Nul = INDEX_NONE;
	if (Path.FindChar(u'\0', Nul))
	{
		OutError = FString::Printf(TEXT("The path contains a NUL character behind '%s'."), *Path.Left(Nul));
		return false;
	}
	return true;
}

/** Shells read these as a home directory; here they'd make a folder of that name. */
bool IsHomePath(const FString& Path)
{
	return Path == TEXT("~") || Path.StartsWith(TEXT("~/")) || Path.StartsWith(TEXT("~\\"));
}

/** Where a path leads when links are followed, as far as it exists; the rest stays as it is. */
FString FollowLinks(const FString& Absolute)
{
	IFileManager& Files = IFileManager::Get();
	FString Existing = Absolute;
	while (Existing.Len() > 1 && !Files.GetStatData(*Existing).bIsValid)
	{
		Existing = FPaths::GetPath(Existing);
	}
	return FPaths::Combine(Files.GetFilenameOnDisk(*Existing), Absolute.RightChop(Existing.Len()));
}

FString FollowDirectory(const FString& Directory)
{
	return FPaths::Combine(IFileManager::Get().GetFilenameOnDisk(*Directory), TEXT("/"));
}

/** Case counts here, unlike in the first test: on disk two such directories may differ. */
bool LeadsInto(const FString& Absolute, const FString& ProjectDir)
{
	return FPaths::Combine(FollowLinks(Absolute), TEXT("/"))
		.StartsWith(FollowDirectory(ProjectDir), ESearchCase::CaseSensitive);
}

const FString* FindProtection(const FString& Relative)
{
	const UCVXSettings* Settings = UCVXSettings::Get();
	return !Settings ? nullptr
					 : Settings->ProtectedPaths.FindByPredicate(
						   [&](const FString& Pattern) { return Relative.MatchesWildcard(Pattern); });
}

/** Names that are devices on some system, with any extension. */
bool IsDeviceName(const FString& Part)
{
	static const TSet<FString> Names = {TEXT("CON"), TEXT("PRN"), TEXT("AUX"), TEXT("NUL")};
	int32 Dot = INDEX_NONE;
	const FString Base = (Part.FindChar(u'.', Dot) ? Part.Left(Dot) : Part).TrimEnd();
	const bool bPort = Base.Len() == 4 && (Base.StartsWith(TEXT("COM")) || Base.StartsWith(TEXT("LPT"))) &&
		Base[3] >= u'1' && Base[3] <= u'9';
	return bPort || Names.Contains(Base);
}
} // namespace

bool ResolveProjectPath(const FString& Path, FString& OutAbsolute, FString& OutProjectDir, FString& OutError)
{
	OutProjectDir = FPaths::ConvertRelativePathToFull(FPaths::ProjectDir());
	if (!IsUsable(Path, OutError))
	{
		return false;
	}
	OutAbsolute = FPaths::ConvertRelativePathToFull(OutProjectDir, Path);
	if (OutAbsolute + TEXT("/") == OutProjectDir)
	{
		OutAbsolute = OutProjectDir;
	}
	const bool bInside = FPaths::CollapseRelativeDirectories(OutAbsolute) && !OutAbsolute.Contains(TEXT("..")) &&
		OutAbsolute.StartsWith(OutProjectDir) && !IsHomePath(Path) && LeadsInto(OutAbsolute, OutProjectDir);
	return bInside || Deny(Path, OutError);
}

bool TranslateContentPath(FString& Path)
{
	if (!Path.RemoveFromStart(TEXT("/Game/")) && !Path.RemoveFromStart(TEXT("Game/")))
	{
		return false;
	}
	Path = TEXT("Content/") + Path;
	return true;
}

bool CheckProtectedPath(const FString& Absolute, const FString& ProjectDir, const FString& ShownPath, FString& OutError)
{
	const FString* Pattern = FindProtection(MakeProjectRelative(Absolute, ProjectDir));
	if (!Pattern)
	{
		Pattern = FindProtection(MakeProjectRelative(FollowLinks(Absolute), FollowDirectory(ProjectDir)));
	}
	if (!Pattern)
	{
		return false;
	}
	OutError = FString::Printf(TEXT("'%s' is protected by pattern '%s'."), *ShownPath, **Pattern);
	return true;
}

bool CheckReservedPath(const FString& Absolute, const FString& ProjectDir, const FString& ShownPath, FString& OutError)
{
	const FString Relative = MakeProjectRelative(Absolute, ProjectDir);
	if (!FPaths::ValidatePath(Relative) || Relative.Contains(TEXT(":")))
	{
		OutError = FString::Printf(
			TEXT("Cannot write '%s': the path has a character that file names can't have on every system."),
			*ShownPath);
		return true;
	}
	TArray<FString> Parts;
	Relative.ParseIntoArray(Parts, TEXT("/"));
	const FString* Device = Parts.FindByPredicate(IsDeviceName);
	if (!Device)
	{
		return false;
	}
	OutError = FString::Printf(TEXT("Cannot write '%s': '%s' is a reserved name."), *ShownPath, **Device);
	return true;
}

FString MakeProjectRelative(const FString& Absolute, const FString& ProjectDir)
{
	FString Relative = Absolute;
	(void)Relative.RemoveFromStart(ProjectDir);
	return Relative;
}
