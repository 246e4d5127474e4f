#include "Misc/OutputDeviceFile.h"

#include "HAL/FileManager.h"
#include "HAL/PosixFile.h"
#include "Misc/DateTime.h"
#include "Misc/Paths.h"

#include <atomic>
#include <fcntl.h>
#include <sys/file.h>

namespace
{
constexpr int32 BackupsKept = 5;
constexpr int32 MaxProcesses = 10;

FString WithSuffix(const FString& Path, const FString& Suffix)
{
	return FPaths::GetBaseFilename(Path, false) + Suffix + FPaths::GetExtension(Path, true);
}

void DeleteOldBackups(const FString& Path)
{
	TArray<FString> Backups;
	IFileManager::Get().FindFiles(Backups, *WithSuffix(Path, TEXT("-backup-*")), true, false);
	Backups.Sort();
	for (int32 Index = 0; Index < Backups.Num() - BackupsKept; ++Index)
	{
		IFileManager::Get().Delete(*FPaths::Combine(FPaths::GetPath(Path), Backups[Index]), false, true, true);
	}
}

/** Whether the file is still what the path names, and not a backup that another process has just made of it. */
bool IsAt(const FDescriptor& File, const FString& Path)
{
	struct stat Mine = {};
	struct stat There = {};
	return ::fstat(File.Get(), &Mine) == 0 && PosixFile::Stat(*FNativePath(*Path), There) &&
		Mine.st_dev == There.st_dev && Mine.st_ino == There.st_ino;
}

/** Opens the file to append to it, as its only writer. @return an invalid descriptor when another process holds it. */
FDescriptor OpenLocked(const FString& Path)
{
	// Opened without cutting it: only the lock tells whether the file is ours to back up.
	FDescriptor File = PosixFile::Open(*FNativePath(*Path), O_WRONLY | O_CREAT | O_APPEND | O_NONBLOCK);
	const bool bOurs = File.IsValid() && ::flock(File.Get(), LOCK_EX | LOCK_NB) == 0 && IsAt(File, Path);
	return bOurs ? MoveTemp(File) : FDescriptor();
}
} // namespace

FOutputDeviceFile::FOutputDeviceFile(const TCHAR* InFilename, int64 InMaxBytes)
	: MaxBytes(InMaxBytes)
{
	const FString Path = FPaths::ConvertRelativePathToFull(InFilename);
	IFileManager::Get().MakeDirectory(*FPaths::GetPath(Path), true);
	for (int32 Process = 1; Process <= MaxProcesses && !IsOpened(); ++Process)
	{
		Open(Process == 1 ? Path : WithSuffix(Path, FString::Printf(TEXT("_%d"), Process)));
	}
}

bool FOutputDeviceFile::Open(const FString& Path)
{
	FDescriptor File = OpenLocked(Path);
	if (File.IsValid() && IFileManager::Get().FileSize(*Path) > 0)
	{
		BackUp(Path);
		File = OpenLocked(Path);
	}
	if (!File.IsValid())
	{
		return false;
	}
	Filename = Path;
	Bytes = 0;
	Descriptor = File.Release();
	return true;
}

void FOutputDeviceFile::BackUp(const FString& Path)
{
	// The number keeps backups of the same instant apart, and in the order of their age.
	static std::atomic<int32> Number{0};
	const FString Time =
		FDateTime::UtcNow().ToString(TEXT("%Y.%m.%d-%H.%M.%S.%s")) + FString::Printf(TEXT(".%06d"), ++Number);
	if (PosixFile::Rename(*FNativePath(*Path), *FNativePath(*WithSuffix(Path, TEXT("-backup-") + Time))))
	{
		DeleteOldBackups(Path);
		return;
	}
	// What can't be kept must not grow without bound.
	(void)PosixFile::Unlink(*FNativePath(*Path));
}

void FOutputDeviceFile::StartNewFile()
{
	BackUp(Filename);
	FDescriptor File = OpenLocked(Filename);
	// Without a new file, the old one goes on under its new name.
	Bytes = 0;
	if (File.IsValid())
	{
		TearDown();
		Descriptor = File.Release();
	}
}

void FOutputDeviceFile::Serialize(const TCHAR* Text, ELogVerbosity::Type Verbosity, const FName& Category)
{
	if (!IsOpened())
	{
		return;
	}
	FString Line = FDateTime::UtcNow().ToString(TEXT("[%Y.%m.%d-%H.%M.%S:%s]"));
	Line += FormatLogLine(Text, Verbosity, Category);
	Line += u'\n';
	const FTCHARToUTF8 Utf8(Line);
	if (PosixFile::Write(Descriptor, Utf8.Get(), Utf8.Length()))
	{
		Bytes += Utf8.Length();
	}
	if (Bytes >= MaxBytes)
	{
		StartNewFile();
	}
}

void FOutputDeviceFile::TearDown()
{
	FDescriptor(Exchange(Descriptor, -1)).Close();
}
