#include "GenericPlatform/GenericPlatformFile.h"

#include "DirectoryWalk.h"
#include "Misc/Paths.h"
#include "PosixFile.h"
#include "TreeDeletion.h"

#include <cerrno>

namespace
{
/** One walk over a tree. A directory below the first that can't be read holds nothing for the walk. */
class FTreeWalk
{
public:
	explicit FTreeWalk(IPlatformFile::FDirectoryVisitorFunc InVisitor)
		: Visitor(InVisitor)
	{
	}

	bool Run(const FString& Directory)
	{
		TArray<FString> SubDirectories;
		const bool bRead = ListDirectory(*Directory,
			[&](const FDirectoryEntry& Entry)
			{
				const FString Path = FPaths::Combine(Directory, Entry.Name);
				if (Entry.bIsDirectory && (!Entry.bIsLink || Guard.MayEnter(Path)))
				{
					SubDirectories.Add(Path);
				}
				bEnded = !Visitor(*Path, Entry.bIsDirectory);
				return !bEnded;
			});
		for (const FString& SubDirectory : SubDirectories)
		{
			if (bEnded)
			{
				return false;
			}
			Run(SubDirectory);
		}
		return bRead && !bEnded;
	}

private:
	IPlatformFile::FDirectoryVisitorFunc Visitor;
	FLinkGuard Guard;
	bool bEnded = false;
};
} // namespace

bool IPlatformFile::DirectoryExists(const TCHAR* Directory)
{
	struct stat Status = {};
	return PosixFile::Stat(*FNativePath(Directory), Status) && S_ISDIR(Status.st_mode);
}

bool IPlatformFile::CreateDirectory(const TCHAR* Directory)
{
	return PosixFile::MakeDirectory(*FNativePath(Directory)) || (errno == EEXIST && DirectoryExists(Directory));
}

bool IPlatformFile::CreateDirectoryTree(const TCHAR* Directory)
{
	FString Path(Directory);
	FPaths::NormalizeDirectoryName(Path);
	if (Path.IsEmpty() || DirectoryExists(*Path))
	{
		return !Path.IsEmpty();
	}
	const FString Parent = FPaths::GetPath(Path);
	return (Parent.IsEmpty() || CreateDirectoryTree(*Parent)) && CreateDirectory(*Path);
}

bool IPlatformFile::DeleteDirectory(const TCHAR* Directory)
{
	return PosixFile::RemoveDirectory(*FNativePath(Directory));
}

bool IPlatformFile::DeleteDirectoryRecursively(const TCHAR* Directory)
{
	FString Path(Directory);
	FPaths::NormalizeDirectoryName(Path);
	struct stat Status = {};
	if (Path.IsEmpty() || FPaths::ConvertRelativePathToFull(Path) == TEXT("/") ||
		!PosixFile::LinkStat(*FNativePath(*Path), Status))
	{
		return false;
	}
	return S_ISLNK(Status.st_mode) ? PosixFile::Unlink(*FNativePath(*Path)) : DeleteTree(*FNativePath(*Path));
}

bool IPlatformFile::IterateDirectory(const TCHAR* Directory, FDirectoryVisitor& Visitor)
{
	return IterateDirectory(
		Directory, [&](const TCHAR* Path, bool bIsDirectory) { return Visitor.Visit(Path, bIsDirectory); });
}

bool IPlatformFile::IterateDirectory(const TCHAR* Directory, FDirectoryVisitorFunc Visitor)
{
	const FString Root(Directory);
	return ListDirectory(Directory,
		[&](const FDirectoryEntry& Entry) { return Visitor(*FPaths::Combine(Root, Entry.Name), Entry.bIsDirectory); });
}

bool IPlatformFile::IterateDirectoryRecursively(const TCHAR* Directory, FDirectoryVisitor& Visitor)
{
	return IterateDirectoryRecursively(
		Directory, [&](const TCHAR* Path, bool bIsDirectory) { return Visitor.Visit(Path, bIsDirectory); });
}

bool IPlatformFile::IterateDirectoryRecursively(const TCHAR* Directory, FDirectoryVisitorFunc Visitor)
{
	return FTreeWalk(Visitor).Run(Directory);
}
