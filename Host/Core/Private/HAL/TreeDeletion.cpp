#include "TreeDeletion.h"

#include "PosixFile.h"

#include <cerrno>
#include <cstring>
#include <dirent.h>
#include <fcntl.h>
#include <memory>
#include <string>
#include <unistd.h>
#include <vector>

namespace
{
bool IsDots(const char* Name)
{
	return std::strcmp(Name, ".") == 0 || std::strcmp(Name, "..") == 0;
}

/** The names in a directory; what is deleted while it is read could hide others. */
bool ReadNames(int Directory, std::vector<std::string>& OutNames)
{
	const int Copy = ::fcntl(Directory, F_DUPFD_CLOEXEC, 0);
	const std::unique_ptr<DIR, int (*)(DIR*)> Stream(Copy >= 0 ? ::fdopendir(Copy) : nullptr, &::closedir);
	errno = 0;
	while (const dirent* Raw = Stream ? ::readdir(Stream.get()) : nullptr)
	{
		if (!IsDots(Raw->d_name))
		{
			OutNames.emplace_back(Raw->d_name);
		}
	}
	return Stream && errno == 0;
}

bool DeleteContent(int Directory)
{
	std::vector<std::string> Names;
	bool bAllGone = ReadNames(Directory, Names);
	int Error = bAllGone ? 0 : errno;
	for (const std::string& Name : Names)
	{
		struct stat Status = {};
		const bool bTree =
			::fstatat(Directory, Name.c_str(), &Status, AT_SYMLINK_NOFOLLOW) == 0 && S_ISDIR(Status.st_mode);
		const FDescriptor Below = bTree ? PosixFile::OpenDirectoryAt(Directory, Name.c_str()) : FDescriptor();
		const bool bGone = (!bTree || (Below.IsValid() && DeleteContent(Below.Get()))) &&
			PosixFile::UnlinkAt(Directory, Name.c_str(), bTree);
		Error = bGone ? Error : errno;
		bAllGone &= bGone;
	}
	errno = Error;
	return bAllGone;
}
} // namespace

bool DeleteTree(const char* Directory)
{
	const FDescriptor Top = PosixFile::OpenDirectoryAt(AT_FDCWD, Directory);
	return Top.IsValid() && DeleteContent(Top.Get()) && PosixFile::RemoveDirectory(Directory);
}
