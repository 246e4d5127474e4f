#pragma once

#include "GenericPlatform/GenericPlatformFile.h"

class FArchive;

enum EFileWrite
{
	FILEWRITE_None = 0x00,
	FILEWRITE_NoFail = 0x01,
	FILEWRITE_NoReplaceExisting = 0x02,
	FILEWRITE_EvenIfReadOnly = 0x04,
	FILEWRITE_Append = 0x08,
	FILEWRITE_AllowRead = 0x10,
	FILEWRITE_Silent = 0x20
};

enum EFileRead
{
	FILEREAD_None = 0x00,
	FILEREAD_NoFail = 0x01,
	FILEREAD_Silent = 0x02
};

enum ECopyResult
{
	COPY_OK = 0x00,
	COPY_Fail = 0x01,
	COPY_Canceled = 0x02
};

/**
 * Files and directories by path. Paths may use either slash; relative ones begin at the process's working directory.
 * Failures that aren't asked to be quiet are logged as warnings. Any thread.
 */
class IFileManager
{
public:
	static IFileManager& Get();

	bool FileExists(const TCHAR* Filename);
	bool DirectoryExists(const TCHAR* Directory);
	/** Bytes, or -1 when there is no such file. */
	int64 FileSize(const TCHAR* Filename);
	bool IsReadOnly(const TCHAR* Filename);
	/** UTC; the first instant of the calendar when there is no such file. */
	FDateTime GetTimeStamp(const TCHAR* Filename);
	bool SetTimeStamp(const TCHAR* Filename, FDateTime DateTime);
	FFileStatData GetStatData(const TCHAR* FilenameOrDirectory);
	/** The path as the file system has it, symbolic links followed; the path itself when nothing is there. */
	FString GetFilenameOnDisk(const TCHAR* Filename);
	/** Seconds since the last change, or -1 when there is no such file. */
	double GetFileAgeSeconds(const TCHAR* Filename);

	/** True also when the file isn't there, unless bRequireExists. */
	bool Delete(const TCHAR* Filename, bool bRequireExists = false, bool bEvenReadOnly = false, bool bQuiet = false);
	bool Move(const TCHAR* Dest, const TCHAR* Src, bool bReplace = true, bool bEvenIfReadOnly = false,
		bool bAttributes = false, bool bDoNotRetryOrError = false);
	/** @return COPY_OK or COPY_Fail. */
	uint32 Copy(const TCHAR* Dest, const TCHAR* Src, bool bReplace = true, bool bEvenIfReadOnly = false,
		bool bAttributes = false);
	/** True also when the directory is there already. @param bTree makes its parents too. */
	bool MakeDirectory(const TCHAR* Path, bool bTree = false);
	/** True also when the directory isn't there, unless bRequireExists. @param bTree deletes all that it holds. */
	bool DeleteDirectory(const TCHAR* Path, bool bRequireExists = false, bool bTree = false);

	/**
	 * Names, without their directory, in the file system's order. @param Filename a directory and a pattern with `*`
	 * and
	 * `?` that ignores case; `*.*` and an empty pattern take everything.
	 */
	void FindFiles(TArray<FString>& FileNames, const TCHAR* Filename, bool bFiles, bool bDirectories);
	/** Names of files in a directory. @param FileExtension with or without its dot or `*.`; null takes every file. */
	void FindFiles(TArray<FString>& FoundFiles, const TCHAR* Directory, const TCHAR* FileExtension = nullptr);
	/**
	 * Paths that begin with StartDirectory: in each directory first what matches, then its directories one by one. In
	 * the file system's order. A directory behind a symbolic link is entered at most once, and not from within.
	 */
	void FindFilesRecursive(TArray<FString>& FileNames, const TCHAR* StartDirectory, const TCHAR* Filename, bool bFiles,
		bool bDirectories, bool bClearFileNames = true);

	bool IterateDirectory(const TCHAR* Directory, IPlatformFile::FDirectoryVisitor& Visitor);
	bool IterateDirectory(const TCHAR* Directory, IPlatformFile::FDirectoryVisitorFunc Visitor);
	bool IterateDirectoryRecursively(const TCHAR* Directory, IPlatformFile::FDirectoryVisitor& Visitor);
	bool IterateDirectoryRecursively(const TCHAR* Directory, IPlatformFile::FDirectoryVisitorFunc Visitor);

	/** @param ReadFlags of EFileRead. @return null on failure; the caller deletes the archive. */
	FArchive* CreateFileReader(const TCHAR* Filename, uint32 ReadFlags = 0);
	/** Writes in place, making the directories on the way. @param WriteFlags of EFileWrite. @return null on failure. */
	FArchive* CreateFileWriter(const TCHAR* Filename, uint32 WriteFlags = 0);

	FString ConvertToAbsolutePathForExternalAppForRead(const TCHAR* Filename);
	FString ConvertToAbsolutePathForExternalAppForWrite(const TCHAR* Filename);
};
