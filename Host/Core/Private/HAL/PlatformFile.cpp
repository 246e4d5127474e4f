#include "GenericPlatform/GenericPlatformFile.h"

#include "AtomicFile.h"
#include "HAL/PlatformFileManager.h"
#include "Misc/Paths.h"

#include <cerrno>
#include <climits>
#include <cstdlib>
#include <fcntl.h>
#include <unistd.h>

namespace
{
constexpr int64 UnixEpochTicks = 621355968000000000ll;

FDateTime ToDateTime(const timespec& Time)
{
	return FDateTime(UnixEpochTicks + (int64)Time.tv_sec * ETimespan::TicksPerSecond + Time.tv_nsec / 100);
}

bool CopyContent(int From, FAtomicFile& To)
{
	TArray<uint8> Buffer;
	Buffer.SetNumUninitialized(256 * 1024);
	for (;;)
	{
		const int64 Got = PosixFile::Read(From, Buffer.GetData(), Buffer.Num());
		if (Got <= 0)
		{
			return Got == 0;
		}
		if (!To.Write(Buffer.GetData(), Got))
		{
			return false;
		}
	}
}
} // namespace

FPlatformFileManager& FPlatformFileManager::Get()
{
	static FPlatformFileManager Manager;
	return Manager;
}

bool IPlatformFile::FileExists(const TCHAR* Filename)
{
	struct stat Status = {};
	return PosixFile::Stat(*FNativePath(Filename), Status) && !S_ISDIR(Status.st_mode);
}

int64 IPlatformFile::FileSize(const TCHAR* Filename)
{
	struct stat Status = {};
	const bool bFile = PosixFile::Stat(*FNativePath(Filename), Status) && !S_ISDIR(Status.st_mode);
	return bFile ? (int64)Status.st_size : -1;
}

bool IPlatformFile::DeleteFile(const TCHAR* Filename)
{
	return PosixFile::Unlink(*FNativePath(Filename));
}

bool IPlatformFile::IsReadOnly(const TCHAR* Filename)
{
	struct stat Status = {};
	return PosixFile::Stat(*FNativePath(Filename), Status) &&
		((Status.st_mode & 0222) == 0 || ::access(*FNativePath(Filename), W_OK) != 0);
}

bool IPlatformFile::SetReadOnly(const TCHAR* Filename, bool bNewReadOnlyValue)
{
	struct stat Status = {};
	if (!PosixFile::Stat(*FNativePath(Filename), Status))
	{
		return false;
	}
	const mode_t Mode = bNewReadOnlyValue ? Status.st_mode & ~(mode_t)0222 : Status.st_mode | 0200;
	return PosixFile::ChangeMode(*FNativePath(Filename), Mode & 07777);
}

bool IPlatformFile::MoveFile(const TCHAR* To, const TCHAR* From)
{
	if (PosixFile::Rename(*FNativePath(From), *FNativePath(To)))
	{
		return true;
	}
	return errno == EXDEV && CopyFile(To, From) && DeleteFile(From);
}

bool IPlatformFile::CopyFile(const TCHAR* To, const TCHAR* From)
{
	const FDescriptor Source = PosixFile::Open(*FNativePath(From), O_RDONLY | O_NONBLOCK);
	struct stat Status = {};
	if (!Source.IsValid() || ::fstat(Source.Get(), &Status) != 0 || S_ISDIR(Status.st_mode))
	{
		return false;
	}
	FAtomicFile Target;
	return Target.Open(To, true) && CopyContent(Source.Get(), Target) &&
		::fchmod(Target.GetDescriptor(), Status.st_mode & 07777) == 0 && Target.Commit();
}

FDateTime IPlatformFile::GetTimeStamp(const TCHAR* Filename)
{
	struct stat Status = {};
	return PosixFile::Stat(*FNativePath(Filename), Status) ? ToDateTime(Status.st_mtim) : FDateTime::MinValue();
}

bool IPlatformFile::SetTimeStamp(const TCHAR* Filename, FDateTime DateTime)
{
	const int64 Since = DateTime.GetTicks() - UnixEpochTicks;
	timespec Times[2] = {};
	Times[0].tv_nsec = UTIME_OMIT;
	Times[1].tv_sec = (time_t)DateTime.ToUnixTimestamp();
	Times[1].tv_nsec = (long)((Since - DateTime.ToUnixTimestamp() * ETimespan::TicksPerSecond) * 100);
	return ::utimensat(AT_FDCWD, *FNativePath(Filename), Times, 0) == 0;
}

FString IPlatformFile::GetFilenameOnDisk(const TCHAR* Filename)
{
	char Resolved[PATH_MAX];
	return ::realpath(*FNativePath(Filename), Resolved) ? FString(Resolved) : FString(Filename);
}

FFileStatData IPlatformFile::GetStatData(const TCHAR* FilenameOrDirectory)
{
	FFileStatData Data;
	struct stat Status = {};
	if (PosixFile::Stat(*FNativePath(FilenameOrDirectory), Status))
	{
		Data.bIsValid = true;
		Data.bIsDirectory = S_ISDIR(Status.st_mode);
		Data.bIsReadOnly = (Status.st_mode & 0222) == 0;
		Data.FileSize = Data.bIsDirectory ? -1 : (int64)Status.st_size;
		Data.AccessTime = ToDateTime(Status.st_atim);
		Data.ModificationTime = ToDateTime(Status.st_mtim);
	}
	return Data;
}
