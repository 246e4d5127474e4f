#include "PosixFileHandle.h"

#include <fcntl.h>
#include <unistd.h>

int64 FPosixFileHandle::Tell()
{
	return (int64)::lseek(Descriptor.Get(), 0, SEEK_CUR);
}

bool FPosixFileHandle::Seek(int64 NewPosition)
{
	return NewPosition >= 0 && ::lseek(Descriptor.Get(), NewPosition, SEEK_SET) == NewPosition;
}

bool FPosixFileHandle::SeekFromEnd(int64 NewPositionRelativeToEnd)
{
	return ::lseek(Descriptor.Get(), NewPositionRelativeToEnd, SEEK_END) >= 0;
}

bool FPosixFileHandle::Read(uint8* Destination, int64 BytesToRead)
{
	return PosixFile::Read(Descriptor.Get(), Destination, BytesToRead) == BytesToRead;
}

bool FPosixFileHandle::Write(const uint8* Source, int64 BytesToWrite)
{
	return PosixFile::Write(Descriptor.Get(), Source, BytesToWrite);
}

bool FPosixFileHandle::Flush(bool bFullFlush)
{
	return !bFullFlush || PosixFile::Sync(Descriptor.Get());
}

bool FPosixFileHandle::Truncate(int64 NewSize)
{
	return PosixFile::Truncate(Descriptor.Get(), NewSize);
}

int64 FPosixFileHandle::Size()
{
	struct stat Status = {};
	return ::fstat(Descriptor.Get(), &Status) == 0 ? (int64)Status.st_size : -1;
}

IFileHandle* IPlatformFile::OpenRead(const TCHAR* Filename, bool bAllowWrite)
{
	struct stat Status = {};
	FDescriptor Descriptor = PosixFile::Open(*FNativePath(Filename), (bAllowWrite ? O_RDWR : O_RDONLY) | O_NONBLOCK);
	const bool bFile = Descriptor.IsValid() && ::fstat(Descriptor.Get(), &Status) == 0 && !S_ISDIR(Status.st_mode);
	return bFile ? new FPosixFileHandle(MoveTemp(Descriptor)) : nullptr;
}

IFileHandle* IPlatformFile::OpenWrite(const TCHAR* Filename, bool bAppend, bool bAllowRead)
{
	const int Flags = (bAllowRead ? O_RDWR : O_WRONLY) | O_CREAT | O_NONBLOCK | (bAppend ? 0 : O_TRUNC);
	FDescriptor Descriptor = PosixFile::Open(*FNativePath(Filename), Flags);
	if (!Descriptor.IsValid() || (bAppend && ::lseek(Descriptor.Get(), 0, SEEK_END) < 0))
	{
		return nullptr;
	}
	return new FPosixFileHandle(MoveTemp(Descriptor));
}
