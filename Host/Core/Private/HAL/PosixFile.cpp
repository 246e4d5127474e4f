#include "PosixFile.h"

#include "HAL/FaultInjection.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <unistd.h>

namespace
{
/** The system moves at most this much in one call. */
constexpr int64 MaxPerCall = 1 << 30;

template <typename CallType>
auto Retry(const CallType& Call) -> decltype(Call())
{
	for (;;)
	{
		const auto Result = Call();
		if (Result >= 0 || errno != EINTR)
		{
			return Result;
		}
	}
}

bool Fails()
{
	return FailsByPlan(EHostFault::File);
}
} // namespace

void FDescriptor::Close()
{
	if (IsValid())
	{
		// On Linux the descriptor is gone whatever close says, so there is nothing to try again.
		(void)::close(Release());
	}
}

FDescriptor PosixFile::Open(const char* Path, int Flags, mode_t Mode)
{
	return FDescriptor(Fails() ? -1 : Retry([&] { return ::open(Path, Flags | O_CLOEXEC | O_NOCTTY, Mode); }));
}

int64 PosixFile::Read(int Descriptor, void* Dest, int64 Count)
{
	int64 Done = 0;
	while (Done < Count)
	{
		const int64 Wanted = std::min(Count - Done, MaxPerCall);
		const int64 Got = Fails() ? -1 : Retry([&] { return ::read(Descriptor, (uint8*)Dest + Done, (SIZE_T)Wanted); });
		if (Got <= 0)
		{
			return Got < 0 ? -1 : Done;
		}
		Done += Got;
	}
	return Done;
}

bool PosixFile::Write(int Descriptor, const void* Source, int64 Count)
{
	for (int64 Done = 0; Done < Count;)
	{
		const int64 Wanted = std::min(Count - Done, MaxPerCall);
		const int64 Put =
			Fails() ? -1 : Retry([&] { return ::write(Descriptor, (const uint8*)Source + Done, (SIZE_T)Wanted); });
		if (Put < 0)
		{
			return false;
		}
		Done += Put;
	}
	return true;
}

bool PosixFile::Sync(int Descriptor)
{
	return !Fails() && Retry([&] { return ::fdatasync(Descriptor); }) == 0;
}

bool PosixFile::Truncate(int Descriptor, int64 Size)
{
	return !Fails() && Retry([&] { return ::ftruncate(Descriptor, Size); }) == 0;
}

bool PosixFile::Rename(const char* From, const char* To)
{
	return !Fails() && ::rename(From, To) == 0;
}

bool PosixFile::RenameExclusive(const char* From, const char* To)
{
	if (Fails())
	{
		return false;
	}
	if (::renameat2(AT_FDCWD, From, AT_FDCWD, To, RENAME_NOREPLACE) == 0)
	{
		return true;
	}
	// A file system that can't do it at once may still refuse a second name for a file.
	return (errno == EINVAL || errno == ENOSYS) && ::link(From, To) == 0 && ::unlink(From) == 0;
}

bool PosixFile::LinkDescriptor(int Descriptor, const char* To)
{
	char Path[32];
	(void)::snprintf(Path, sizeof(Path), "/proc/self/fd/%d", Descriptor);
	return !Fails() && ::linkat(AT_FDCWD, Path, AT_FDCWD, To, AT_SYMLINK_FOLLOW) == 0;
}

bool PosixFile::Unlink(const char* Path)
{
	return !Fails() && ::unlink(Path) == 0;
}

bool PosixFile::MakeDirectory(const char* Path)
{
	return !Fails() && ::mkdir(Path, 0777) == 0;
}

bool PosixFile::RemoveDirectory(const char* Path)
{
	return !Fails() && ::rmdir(Path) == 0;
}

FDescriptor PosixFile::OpenDirectoryAt(int Directory, const char* Name)
{
	constexpr int Flags = O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC;
	return FDescriptor(Fails() ? -1 : Retry([&] { return ::openat(Directory, Name, Flags); }));
}

bool PosixFile::UnlinkAt(int Directory, const char* Name, bool bDirectory)
{
	return !Fails() && ::unlinkat(Directory, Name, bDirectory ? AT_REMOVEDIR : 0) == 0;
}

bool PosixFile::ChangeMode(const char* Path, mode_t Mode)
{
	return !Fails() && ::chmod(Path, Mode) == 0;
}

bool PosixFile::Stat(const char* Path, struct stat& OutStat)
{
	return ::stat(Path, &OutStat) == 0;
}

bool PosixFile::LinkStat(const char* Path, struct stat& OutStat)
{
	return ::lstat(Path, &OutStat) == 0;
}

FString PosixFile::ErrorText(int Error)
{
	char Buffer[256] = {};
	return FString(strerror_r(Error, Buffer, sizeof(Buffer)));
}
