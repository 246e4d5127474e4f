#include "DirectoryWalk.h"

#include "Misc/Paths.h"
#include "PosixFile.h"

#include <cerrno>
#include <climits>
#include <cstdlib>
#include <dirent.h>
#include <fcntl.h>

namespace
{
bool IsDots(const char* Name)
{
	return Name[0] == '.' && (Name[1] == 0 || (Name[1] == '.' && Name[2] == 0));
}

FDirectoryEntry MakeEntry(DIR* Directory, const dirent& Raw)
{
	FDirectoryEntry Entry;
	Entry.Name = FString(Raw.d_name);
	Entry.bIsDirectory = Raw.d_type == DT_DIR;
	Entry.bIsLink = Raw.d_type == DT_LNK;
	if (Raw.d_type == DT_LNK || Raw.d_type == DT_UNKNOWN)
	{
		struct stat Status = {};
		Entry.bIsDirectory = ::fstatat(dirfd(Directory), Raw.d_name, &Status, 0) == 0 && S_ISDIR(Status.st_mode);
		Entry.bIsLink =
			::fstatat(dirfd(Directory), Raw.d_name, &Status, AT_SYMLINK_NOFOLLOW) == 0 && S_ISLNK(Status.st_mode);
	}
	return Entry;
}

/** Whether a link leads to a directory that it lies in itself, however deep. */
bool LeadsBack(const FString& Link)
{
	char Target[PATH_MAX];
	char Parent[PATH_MAX];
	const FString Holder = FPaths::GetPath(Link);
	return ::realpath(*FNativePath(*Link), Target) && ::realpath(*FNativePath(*Holder), Parent) &&
		FPaths::IsUnderDirectory(FString(Parent), FString(Target));
}
} // namespace

bool ListDirectory(const TCHAR* Directory, TFunctionRef<bool(const FDirectoryEntry&)> Visitor)
{
	FDescriptor Descriptor = PosixFile::Open(*FNativePath(Directory), O_RDONLY | O_DIRECTORY);
	DIR* Stream = Descriptor.IsValid() ? ::fdopendir(Descriptor.Get()) : nullptr;
	if (!Stream)
	{
		return false;
	}
	// The stream owns the descriptor from here on.
	(void)Descriptor.Release();
	bool bGoOn = true;
	bool bRead = true;
	while (bGoOn)
	{
		errno = 0;
		const dirent* Raw = ::readdir(Stream);
		if (!Raw)
		{
			bRead = errno == 0;
			break;
		}
		bGoOn = IsDots(Raw->d_name) || Visitor(MakeEntry(Stream, *Raw));
	}
	(void)::closedir(Stream);
	return bGoOn && bRead;
}

bool FLinkGuard::MayEnter(const FString& Directory)
{
	struct stat Status = {};
	if (!PosixFile::Stat(*FNativePath(*Directory), Status) || LeadsBack(Directory))
	{
		return false;
	}
	const FIdentity Identity{(uint64)Status.st_dev, (uint64)Status.st_ino};
	if (Entered.Contains(Identity))
	{
		return false;
	}
	Entered.Add(Identity);
	return true;
}
