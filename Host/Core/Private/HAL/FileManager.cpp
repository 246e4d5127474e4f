#include "HAL/FileManager.h"

#include "HAL/PlatformFileManager.h"
#include "HAL/PosixFile.h"
#include "Logging/LogMacros.h"
#include "Misc/Paths.h"
#include "Serialization/FileArchive.h"

#include <cerrno>

DEFINE_LOG_CATEGORY_STATIC(LogFileManager, Log, All);

namespace
{
IPlatformFile& Files()
{
	return FPlatformFileManager::Get().GetPlatformFile();
}

bool Report(bool bQuiet, const TCHAR* What, const TCHAR* Path)
{
	const int Error = errno;
	UE_CLOG(!bQuiet, LogFileManager, Warning, TEXT("%s %s: %s"), What, Path, *PosixFile::ErrorText(Error));
	return false;
}

/** Whether a file stands in the way of being replaced. */
bool MayReplace(const TCHAR* Dest, bool bReplace, bool bEvenIfReadOnly)
{
	const FFileStatData Data = Files().GetStatData(Dest);
	if (!Data.bIsValid)
	{
		return true;
	}
	errno = bReplace ? EACCES : EEXIST;
	return bReplace && (bEvenIfReadOnly || !Data.bIsReadOnly);
}
} // namespace

IFileManager& IFileManager::Get()
{
	static IFileManager Manager;
	return Manager;
}

bool IFileManager::FileExists(const TCHAR* Filename)
{
	return Files().FileExists(Filename);
}

bool IFileManager::DirectoryExists(const TCHAR* Directory)
{
	return Files().DirectoryExists(Directory);
}

int64 IFileManager::FileSize(const TCHAR* Filename)
{
	return Files().FileSize(Filename);
}

bool IFileManager::IsReadOnly(const TCHAR* Filename)
{
	return Files().IsReadOnly(Filename);
}

FDateTime IFileManager::GetTimeStamp(const TCHAR* Filename)
{
	return Files().GetTimeStamp(Filename);
}

bool IFileManager::SetTimeStamp(const TCHAR* Filename, FDateTime DateTime)
{
	return Files().SetTimeStamp(Filename, DateTime);
}

FFileStatData IFileManager::GetStatData(const TCHAR* FilenameOrDirectory)
{
	return Files().GetStatData(FilenameOrDirectory);
}

FString IFileManager::GetFilenameOnDisk(const TCHAR* Filename)
{
	return Files().GetFilenameOnDisk(Filename);
}

double IFileManager::GetFileAgeSeconds(const TCHAR* Filename)
{
	const FDateTime Time = GetTimeStamp(Filename);
	return Time == FDateTime::MinValue() ? -1 : (FDateTime::UtcNow() - Time).GetTotalSeconds();
}

bool IFileManager::Delete(const TCHAR* Filename, bool bRequireExists, bool bEvenReadOnly, bool bQuiet)
{
	struct stat Status = {};
	if (!PosixFile::LinkStat(*FNativePath(Filename), Status))
	{
		return errno == ENOENT && !bRequireExists ? true : Report(bQuiet, TEXT("Cannot delete"), Filename);
	}
	if (!bEvenReadOnly && S_ISREG(Status.st_mode) && (Status.st_mode & 0222) == 0)
	{
		errno = EACCES;
		return Report(bQuiet, TEXT("Cannot delete"), Filename);
	}
	return Files().DeleteFile(Filename) || Report(bQuiet, TEXT("Cannot delete"), Filename);
}

bool IFileManager::Move(
	const TCHAR* Dest, const TCHAR* Src, bool bReplace, bool bEvenIfReadOnly, bool, bool bDoNotRetryOrError)
{
	if (!Files().GetStatData(Src).bIsValid)
	{
		return Report(bDoNotRetryOrError, TEXT("Cannot move"), Src);
	}
	if (!MayReplace(Dest, bReplace, bEvenIfReadOnly))
	{
		return Report(bDoNotRetryOrError, TEXT("Cannot replace"), Dest);
	}
	const FString Directory = FPaths::GetPath(Dest);
	const bool bReady = Directory.IsEmpty() || Files().CreateDirectoryTree(*Directory);
	return (bReady && Files().MoveFile(Dest, Src)) || Report(bDoNotRetryOrError, TEXT("Cannot move to"), Dest);
}

uint32 IFileManager::Copy(const TCHAR* Dest, const TCHAR* Src, bool bReplace, bool bEvenIfReadOnly, bool)
{
	if (!Files().FileExists(Src))
	{
		Report(false, TEXT("Cannot copy"), Src);
		return COPY_Fail;
	}
	if (!MayReplace(Dest, bReplace, bEvenIfReadOnly))
	{
		Report(false, TEXT("Cannot replace"), Dest);
		return COPY_Fail;
	}
	const FString Directory = FPaths::GetPath(Dest);
	const bool bReady = Directory.IsEmpty() || Files().CreateDirectoryTree(*Directory);
	return (bReady && Files().CopyFile(Dest, Src)) || Report(false, TEXT("Cannot copy to"), Dest) ? COPY_OK : COPY_Fail;
}

bool IFileManager::MakeDirectory(const TCHAR* Path, bool bTree)
{
	return bTree ? Files().CreateDirectoryTree(Path) : Files().CreateDirectory(Path);
}

bool IFileManager::DeleteDirectory(const TCHAR* Path, bool bRequireExists, bool bTree)
{
	if (!Files().DirectoryExists(Path))
	{
		return !bRequireExists && !Files().FileExists(Path);
	}
	return bTree ? Files().DeleteDirectoryRecursively(Path) : Files().DeleteDirectory(Path);
}

bool IFileManager::IterateDirectory(const TCHAR* Directory, IPlatformFile::FDirectoryVisitor& Visitor)
{
	return Files().IterateDirectory(Directory, Visitor);
}

bool IFileManager::IterateDirectory(const TCHAR* Directory, IPlatformFile::FDirectoryVisitorFunc Visitor)
{
	return Files().IterateDirectory(Directory, Visitor);
}

bool IFileManager::IterateDirectoryRecursively(const TCHAR* Directory, IPlatformFile::FDirectoryVisitor& Visitor)
{
	return Files().IterateDirectoryRecursively(Directory, Visitor);
}

bool IFileManager::IterateDirectoryRecursively(const TCHAR* Directory, IPlatformFile::FDirectoryVisitorFunc Visitor)
{
	return Files().IterateDirectoryRecursively(Directory, Visitor);
}

FArchive* IFileManager::CreateFileReader(const TCHAR* Filename, uint32 ReadFlags)
{
	IFileHandle* Handle = Files().OpenRead(Filename);
	if (!Handle)
	{
		Report((ReadFlags & FILEREAD_Silent) != 0, TEXT("Cannot read"), Filename);
		return nullptr;
	}
	return new FFileReader(Handle, Filename);
}

FArchive* IFileManager::CreateFileWriter(const TCHAR* Filename, uint32 WriteFlags)
{
	const bool bAppend = (WriteFlags & FILEWRITE_Append) != 0;
	const FString Directory = FPaths::GetPath(Filename);
	const bool bMay = MayReplace(
		Filename, (WriteFlags & FILEWRITE_NoReplaceExisting) == 0, (WriteFlags & FILEWRITE_EvenIfReadOnly) != 0);
	IFileHandle* Handle = nullptr;
	if (bMay && (Directory.IsEmpty() || Files().CreateDirectoryTree(*Directory)))
	{
		Handle = Files().OpenWrite(Filename, bAppend, (WriteFlags & FILEWRITE_AllowRead) != 0);
	}
	if (!Handle)
	{
		Report((WriteFlags & FILEWRITE_Silent) != 0, TEXT("Cannot write"), Filename);
		return nullptr;
	}
	return new FFileWriter(Handle, Filename);
}

FString IFileManager::ConvertToAbsolutePathForExternalAppForRead(const TCHAR* Filename)
{
	return FPaths::ConvertRelativePathToFull(Filename);
}

FString IFileManager::ConvertToAbsolutePathForExternalAppForWrite(const TCHAR* Filename)
{
	return FPaths::ConvertRelativePathToFull(Filename);
}
