#pragma once

#include "Misc/DateTime.h"
#include "Templates/Function.h"

/** An open file. One thread at a time. */
class IFileHandle : private FNoncopyable
{
public:
	virtual ~IFileHandle() = default;

	virtual int64 Tell() = 0;
	virtual bool Seek(int64 NewPosition) = 0;
	virtual bool SeekFromEnd(int64 NewPositionRelativeToEnd = 0) = 0;
	/** @return false unless all bytes were read. */
	virtual bool Read(uint8* Destination, int64 BytesToRead) = 0;
	/** @return false unless all bytes were written. */
	virtual bool Write(const uint8* Source, int64 BytesToWrite) = 0;
	/** Hands everything to the system, and to the disk on demand. */
	virtual bool Flush(bool bFullFlush = false) = 0;
	virtual bool Truncate(int64 NewSize) = 0;
	/** Bytes, or -1. */
	virtual int64 Size() = 0;
};

/** What the system knows of a file or directory. Times are UTC; the system keeps no time of creation. */
struct FFileStatData
{
	FDateTime CreationTime = FDateTime::MinValue();
	FDateTime AccessTime = FDateTime::MinValue();
	FDateTime ModificationTime = FDateTime::MinValue();
	/** Bytes; -1 for a directory. */
	int64 FileSize = -1;
	bool bIsDirectory = false;
	bool bIsReadOnly = false;
	/** Whether there is such a file or directory. */
	bool bIsValid = false;
};

/**
 * The file system. Paths may use either slash; relative ones begin at the process's working directory. Failures are the
 * result alone. Any thread.
 */
class IPlatformFile
{
public:
	class FDirectoryVisitor
	{
	public:
		virtual ~FDirectoryVisitor() = default;
		/** @return whether to go on. */
		virtual bool Visit(const TCHAR* FilenameOrDirectory, bool bIsDirectory) = 0;
	};
	using FDirectoryVisitorFunc = TFunctionRef<bool(const TCHAR*, bool)>;

	bool FileExists(const TCHAR* Filename);
	/** Bytes, or -1 when there is no such file. */
	int64 FileSize(const TCHAR* Filename);
	bool DeleteFile(const TCHAR* Filename);
	bool IsReadOnly(const TCHAR* Filename);
	bool SetReadOnly(const TCHAR* Filename, bool bNewReadOnlyValue);
	/** Replaces what is at To. Across file systems the content is copied and the old file then deleted. */
	bool MoveFile(const TCHAR* To, const TCHAR* From);
	/** Replaces what is at To as one step, and gives it From's mode. */
	bool CopyFile(const TCHAR* To, const TCHAR* From);
	/** The time of the last change, UTC; the first instant of the calendar when there is no such file. */
	FDateTime GetTimeStamp(const TCHAR* Filename);
	bool SetTimeStamp(const TCHAR* Filename, FDateTime DateTime);
	FFileStatData GetStatData(const TCHAR* FilenameOrDirectory);
	/** The path as the file system has it, symbolic links followed; the path itself when nothing is there. */
	FString GetFilenameOnDisk(const TCHAR* Filename);

	/** @return null when the file can't be opened; the caller deletes the handle. */
	IFileHandle* OpenRead(const TCHAR* Filename, bool bAllowWrite = false);
	IFileHandle* OpenWrite(const TCHAR* Filename, bool bAppend = false, bool bAllowRead = false);

	bool DirectoryExists(const TCHAR* Directory);
	/** True also when the directory is there already. */
	bool CreateDirectory(const TCHAR* Directory);
	bool CreateDirectoryTree(const TCHAR* Directory);
	/** Deletes an empty directory. */
	bool DeleteDirectory(const TCHAR* Directory);
	/** Deletes a directory with all it holds; symbolic links are deleted, never followed. The root is refused. */
	bool DeleteDirectoryRecursively(const TCHAR* Directory);

	/**
	 * Visits what is directly in a directory, in the file system's order. A symbolic link counts as what it leads to.
	 * @return false when the directory can't be read or the visitor ended the walk.
	 */
	bool IterateDirectory(const TCHAR* Directory, FDirectoryVisitor& Visitor);
	bool IterateDirectory(const TCHAR* Directory, FDirectoryVisitorFunc Visitor);

	/**
	 * As `IterateDirectory`, with the content of each directory after it. A linked directory is entered at most once,
	 * and not from within.
	 */
	bool IterateDirectoryRecursively(const TCHAR* Directory, FDirectoryVisitor& Visitor);
	bool IterateDirectoryRecursively(const TCHAR* Directory, FDirectoryVisitorFunc Visitor);
};
