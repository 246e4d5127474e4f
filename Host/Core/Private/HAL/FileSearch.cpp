#include "HAL/FileManager.h"

#include "DirectoryWalk.h"
#include "Misc/Paths.h"

namespace
{
/** What a search looks for. */
struct FSearch
{
	FSearch(const TCHAR* InPattern, bool bInFiles, bool bInDirectories)
		: Pattern(InPattern)
		, bEverything(Pattern.IsEmpty() || Pattern.Equals(TEXT("*")) || Pattern.Equals(TEXT("*.*")))
		, bFiles(bInFiles)
		, bDirectories(bInDirectories)
	{
	}

	bool Matches(const FDirectoryEntry& Entry) const
	{
		return (Entry.bIsDirectory ? bDirectories : bFiles) && (bEverything || Entry.Name.MatchesWildcard(Pattern));
	}

	FString Pattern;
	bool bEverything;
	bool bFiles;
	bool bDirectories;
};

void SearchTree(TArray<FString>& OutPaths, const FString& Directory, const FSearch& Search, FLinkGuard& Guard)
{
	TArray<FString> SubDirectories;
	ListDirectory(*Directory,
		[&](const FDirectoryEntry& Entry)
		{
			const bool bMatches = Search.Matches(Entry);
			if (bMatches || Entry.bIsDirectory)
			{
				const FString Path = FPaths::Combine(Directory, Entry.Name);
				if (bMatches)
				{
					OutPaths.Add(Path);
				}
				if (Entry.bIsDirectory && (!Entry.bIsLink || Guard.MayEnter(Path)))
				{
					SubDirectories.Add(Path);
				}
			}
			return true;
		});
	for (const FString& SubDirectory : SubDirectories)
	{
		SearchTree(OutPaths, SubDirectory, Search, Guard);
	}
}
} // namespace

void IFileManager::FindFiles(TArray<FString>& FileNames, const TCHAR* Filename, bool bFiles, bool bDirectories)
{
	FString Path(Filename);
	FPaths::NormalizeFilename(Path);
	const FSearch Search(*FPaths::GetCleanFilename(Path), bFiles, bDirectories);
	int32 Slash = INDEX_NONE;
	const FString Directory = Path.FindLastChar(u'/', Slash) ? Path.Left(Slash + 1) : FString(TEXT("."));
	ListDirectory(*Directory,
		[&](const FDirectoryEntry& Entry)
		{
			if (Search.Matches(Entry))
			{
				FileNames.Add(Entry.Name);
			}
			return true;
		});
}

void IFileManager::FindFiles(TArray<FString>& FoundFiles, const TCHAR* Directory, const TCHAR* FileExtension)
{
	FString Extension(FileExtension);
	Extension.RemoveFromStart(TEXT("*"));
	Extension.RemoveFromStart(TEXT("."));
	const FString Pattern = Extension.IsEmpty() ? FString(TEXT("*")) : TEXT("*.") + Extension;
	FindFiles(FoundFiles, *(FString(Directory) / Pattern), true, false);
}

void IFileManager::FindFilesRecursive(TArray<FString>& FileNames, const TCHAR* StartDirectory, const TCHAR* Filename,
	bool bFiles, bool bDirectories, bool bClearFileNames)
{
	if (bClearFileNames)
	{
		FileNames.Empty();
	}
	FLinkGuard Guard;
	SearchTree(FileNames, StartDirectory, FSearch(Filename, bFiles, bDirectories), Guard);
}
