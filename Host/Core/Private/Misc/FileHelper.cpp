#include "Misc/FileHelper.h"

#include "HAL/AtomicFile.h"
#include "HAL/PlatformFileManager.h"
#include "Logging/LogMacros.h"
#include "Misc/Paths.h"

#include <cerrno>
#include <fcntl.h>

DEFINE_LOG_CATEGORY_STATIC(LogFileHelper, Log, All);

namespace
{
constexpr int64 ReadStep = 64 * 1024;
/** Of what isn't a regular file, such as a device that never ends, no more is read. */
constexpr int64 MaxStreamBytes = 64 * 1024 * 1024;

bool Fail(const TCHAR* What, const TCHAR* Filename, int Error, bool bQuiet = false)
{
	UE_CLOG(!bQuiet, LogFileHelper, Warning, TEXT("%s %s: %s"), What, Filename, *PosixFile::ErrorText(Error));
	return false;
}

/** Reads to the end, whatever size the system claims: the file may grow, and some files have no size. */
bool ReadToEnd(int Descriptor, int64 SizeHint, int64 MaxBytes, TArray<uint8>& Result)
{
	Result.Reset();
	for (int64 Step = SizeHint + 1;; Step = ReadStep)
	{
		if (Step > MaxBytes - Result.Num())
		{
			errno = EFBIG;
			return false;
		}
		const int32 At = Result.AddUninitialized((int32)Step);
		const int64 Got = PosixFile::Read(Descriptor, Result.GetData() + At, Step);
		Result.SetNumUninitialized(At + (int32)std::max<int64>(Got, 0), EAllowShrinking::No);
		if (Got < Step)
		{
			return Got >= 0;
		}
	}
}

void AppendUtf16(FString& Result, const uint8* Bytes, int32 Count, bool bBigEndian)
{
	const int32 Units = Count / 2;
	TCHAR* Dest = Units > 0 ? Result.AppendUninitialized(Units) : nullptr;
	for (int32 Index = 0; Index < Units; ++Index)
	{
		const uint8 First = Bytes[Index * 2];
		const uint8 Second = Bytes[Index * 2 + 1];
		Dest[Index] = (TCHAR)(bBigEndian ? First << 8 | Second : Second << 8 | First);
	}
}

bool AppendInPlace(TArrayView<const uint8> Bytes, const TCHAR* Filename)
{
	const FDescriptor File = PosixFile::Open(*FNativePath(Filename), O_WRONLY | O_CREAT | O_APPEND);
	struct stat Status = {};
	if (!File.IsValid() || ::fstat(File.Get(), &Status) != 0)
	{
		return false;
	}
	if (PosixFile::Write(File.Get(), Bytes.GetData(), Bytes.Num()))
	{
		return true;
	}
	// Half a record is worse than none.
	const int Error = errno;
	(void)PosixFile::Truncate(File.Get(), Status.st_size);
	errno = Error;
	return false;
}

bool Replace(TArrayView<const uint8> Bytes, const TCHAR* Filename, uint32 WriteFlags)
{
	FAtomicFile File;
	return File.Open(Filename, (WriteFlags & FILEWRITE_EvenIfReadOnly) != 0,
			   (WriteFlags & FILEWRITE_NoReplaceExisting) == 0) &&
		File.Write(Bytes.GetData(), Bytes.Num()) && File.Commit();
}

bool EnsureDirectory(const TCHAR* Filename)
{
	const FString Directory = FPaths::GetPath(Filename);
	return Directory.IsEmpty() || FPlatformFileManager::Get().GetPlatformFile().CreateDirectoryTree(*Directory);
}
} // namespace

bool FFileHelper::LoadFileToArray(TArray<uint8>& Result, const TCHAR* Filename, uint32 Flags)
{
	const bool bQuiet = (Flags & FILEREAD_Silent) != 0;
	const FDescriptor File = PosixFile::Open(*FNativePath(Filename), O_RDONLY | O_NONBLOCK);
	struct stat Status = {};
	Result.Reset();
	if (!File.IsValid() || ::fstat(File.Get(), &Status) != 0)
	{
		return Fail(TEXT("Cannot read"), Filename, errno, bQuiet);
	}
	const int64 MaxBytes = S_ISREG(Status.st_mode) ? (int64)MAX_int32 : MaxStreamBytes;
	if (!ReadToEnd(File.Get(), (int64)Status.st_size, MaxBytes, Result))
	{
		Result.Empty();
		return Fail(TEXT("Cannot read"), Filename, errno, bQuiet);
	}
	return true;
}

bool FFileHelper::LoadFileToString(FString& Result, const TCHAR* Filename, EHashOptions, uint32 ReadFlags)
{
	TArray<uint8> Bytes;
	Result.Reset();
	if (!LoadFileToArray(Bytes, Filename, ReadFlags))
	{
		return false;
	}
	BufferToString(Result, Bytes.GetData(), Bytes.Num());
	return true;
}

bool FFileHelper::LoadFileToStringArray(TArray<FString>& Result, const TCHAR* Filename)
{
	FString Text;
	Result.Reset();
	if (!LoadFileToString(Text, Filename))
	{
		return false;
	}
	Text.ParseIntoArrayLines(Result, false);
	if (!Result.IsEmpty() && Result.Last().IsEmpty())
	{
		Result.Pop();
	}
	return true;
}

void FFileHelper::BufferToString(FString& Result, const uint8* Buffer, int32 Size)
{
	Result.Reset();
	const auto StartsWith = [&](std::initializer_list<uint8> Mark)
	{ return Size >= (int32)Mark.size() && FMemory::Memcmp(Buffer, Mark.begin(), Mark.size()) == 0; };
	if (StartsWith({0xFF, 0xFE}) || StartsWith({0xFE, 0xFF}))
	{
		AppendUtf16(Result, Buffer + 2, Size - 2, Buffer[0] == 0xFE);
		return;
	}
	const int32 Skip = StartsWith({0xEF, 0xBB, 0xBF}) ? 3 : 0;
	Result.AppendUtf8((const ANSICHAR*)Buffer + Skip, Size - Skip);
}

bool FFileHelper::SaveArrayToFile(
	TArrayView<const uint8> Array, const TCHAR* Filename, IFileManager*, uint32 WriteFlags)
{
	const bool bAppend = (WriteFlags & FILEWRITE_Append) != 0;
	const bool bSaved =
		EnsureDirectory(Filename) && (bAppend ? AppendInPlace(Array, Filename) : Replace(Array, Filename, WriteFlags));
	return bSaved || Fail(TEXT("Cannot write"), Filename, errno, (WriteFlags & FILEWRITE_Silent) != 0);
}

bool FFileHelper::SaveStringToFile(FStringView String, const TCHAR* Filename, EEncodingOptions EncodingOptions,
	IFileManager* FileManager, uint32 WriteFlags)
{
	TArray<uint8> Bytes;
	if (EncodingOptions == EEncodingOptions::ForceUnicode)
	{
		Bytes.Append({0xFF, 0xFE});
		Bytes.Append((const uint8*)String.GetData(), String.Len() * (int32)sizeof(TCHAR));
		return SaveArrayToFile(Bytes, Filename, FileManager, WriteFlags);
	}
	const int32 Mark = EncodingOptions == EEncodingOptions::ForceUTF8 ? 3 : 0;
	const int64 Length = Unicode::Utf16ToUtf8Length(String.GetData(), String.Len());
	if (Length > MAX_int32 - Mark)
	{
		return Fail(TEXT("Cannot write"), Filename, EFBIG);
	}
	Bytes.Append({0xEF, 0xBB, 0xBF});
	Bytes.SetNumUninitialized(Mark + (int32)Length);
	Unicode::Utf16ToUtf8(String.GetData(), String.Len(), (char*)Bytes.GetData() + Mark);
	return SaveArrayToFile(Bytes, Filename, FileManager, WriteFlags);
}

bool FFileHelper::SaveStringArrayToFile(const TArray<FString>& Lines, const TCHAR* Filename,
	EEncodingOptions EncodingOptions, IFileManager* FileManager, uint32 WriteFlags)
{
	FString Text;
	for (const FString& Line : Lines)
	{
		Text += Line;
		Text += u'\n';
	}
	return SaveStringToFile(Text, Filename, EncodingOptions, FileManager, WriteFlags);
}
