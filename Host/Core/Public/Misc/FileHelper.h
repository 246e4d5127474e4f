#pragma once

#include "Containers/UnrealString.h"
#include "HAL/FileManager.h"

/**
 * Whole files at once. Loading honours byte order marks and takes unmarked text for UTF-8; malformed bytes become
 * U+FFFD. Saving makes the directories on the way and replaces the file as one step: a reader sees the old or the new
 * file, never a part, and a failed save leaves the old one. A symbolic link stays, its target is replaced; the file's
 * mode is kept; a read-only file is refused without FILEWRITE_EvenIfReadOnly. FILEWRITE_NoReplaceExisting wants a free
 * name: of several threads or processes that save under one name at once, one succeeds. Appending writes in place.
 * Failures are false and a warning in the log. Files of 2 GB and more, and devices and pipes that give more than 64 MB,
 * aren't loaded. Any thread.
 */
struct FFileHelper
{
	enum class EEncodingOptions
	{
		/** UTF-8 without a mark. */
		AutoDetect,
		ForceAnsi,
		/** UTF-16, little-endian, with a mark. */
		ForceUnicode,
		/** UTF-8 with a mark. */
		ForceUTF8,
		ForceUTF8WithoutBOM
	};
	enum class EHashOptions
	{
		None
	};

	static bool LoadFileToArray(TArray<uint8>& Result, const TCHAR* Filename, uint32 Flags = 0);
	static bool LoadFileToString(
		FString& Result, const TCHAR* Filename, EHashOptions VerifyFlags = EHashOptions::None, uint32 ReadFlags = 0);
	/** The lines without their ends; an end at the end of the file begins no further line. */
	static bool LoadFileToStringArray(TArray<FString>& Result, const TCHAR* Filename);
	/** The text of bytes as a file holds them. */
	static void BufferToString(FString& Result, const uint8* Buffer, int32 Size);

	static bool SaveArrayToFile(TArrayView<const uint8> Array, const TCHAR* Filename,
		IFileManager* FileManager = &IFileManager::Get(), uint32 WriteFlags = 0);
	static bool SaveStringToFile(FStringView String, const TCHAR* Filename,
		EEncodingOptions EncodingOptions = EEncodingOptions::AutoDetect,
		IFileManager* FileManager = &IFileManager::Get(), uint32 WriteFlags = 0);
	/** Each line ends with a line feed. */
	static bool SaveStringArrayToFile(const TArray<FString>& Lines, const TCHAR* Filename,
		EEncodingOptions EncodingOptions = EEncodingOptions::AutoDetect,
		IFileManager* FileManager = &IFileManager::Get(), uint32 WriteFlags = 0);
};
