#pragma once

#include "Containers/StringConv.h"
#include "Containers/UnrealString.h"

#include <sys/stat.h>

/** A path as the system takes it: UTF-8, back slashes turned to slashes. */
class FNativePath
{
public:
	explicit FNativePath(const TCHAR* Path)
		: Bytes(FString(Path).Replace(TEXT("\\"), TEXT("/"), ESearchCase::CaseSensitive))
	{
	}
	const char* operator*() const { return Bytes.Get(); }

private:
	FTCHARToUTF8 Bytes;
};

/** An open descriptor, closed at the end of its life. */
class FDescriptor : private FNoncopyable
{
public:
	FDescriptor() = default;
	explicit FDescriptor(int InNumber)
		: Number(InNumber)
	{
	}
	FDescriptor(FDescriptor&& Other) noexcept
		: Number(Exchange(Other.Number, -1))
	{
	}
	FDescriptor& operator=(FDescriptor&& Other) noexcept
	{
		Swap(Number, Other.Number);
		return *this;
	}
	~FDescriptor() { Close(); }

	bool IsValid() const { return Number >= 0; }
	int Get() const { return Number; }
	int Release() { return Exchange(Number, -1); }
	void Close();

private:
	int Number = -1;
};

/** The system's file calls, taken up again after a signal and made to fail by plan. They set `errno`. Any thread. */
namespace PosixFile
{
/** Opens close-on-exec, and never a terminal as the controlling one. */
FDescriptor Open(const char* Path, int Flags, mode_t Mode = 0666);

/** Reads until Count bytes are there or the file ends. @return the bytes, or -1. */
int64 Read(int Descriptor, void* Dest, int64 Count);
bool Write(int Descriptor, const void* Source, int64 Count);
bool Sync(int Descriptor);
bool Truncate(int Descriptor, int64 Size);
bool Rename(const char* From, const char* To);
/** As `Rename`, but fails with EEXIST when anything is at To, as one step. */
bool RenameExclusive(const char* From, const char* To);
/** Gives an open file that has no name a name; fails with EEXIST when anything has it. */
bool LinkDescriptor(int Descriptor, const char* To);
bool Unlink(const char* Path);
bool MakeDirectory(const char* Path);
bool RemoveDirectory(const char* Path);
/** Opens a directory to read it; a symbolic link is refused. */
FDescriptor OpenDirectoryAt(int Directory, const char* Name);
bool UnlinkAt(int Directory, const char* Name, bool bDirectory);
bool ChangeMode(const char* Path, mode_t Mode);
bool Stat(const char* Path, struct stat& OutStat);
/** As `Stat`, of a symbolic link itself. */
bool LinkStat(const char* Path, struct stat& OutStat);

/** The system's words for an error number. */
FString ErrorText(int Error);
} // namespace PosixFile
