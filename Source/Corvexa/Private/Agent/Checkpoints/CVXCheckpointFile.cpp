#include "Agent/Checkpoints/CVXCheckpointFile.h"

#include "Agent/Checkpoints/CVXCheckpointLog.h"
#include "Containers/StringConv.h"
#include "HAL/FileManager.h"
#include "Misc/Compression.h"
#include "Misc/FileHelper.h"

#include <zlib.h>

DEFINE_LOG_CATEGORY(LogCVXCheckpoint);

namespace
{
/** Behind a compressed file's first four bytes, the size of its text, stands the compressed data. */
constexpr int32 SizeBytes = 4;
constexpr uint32 MinClaimedSize = 3;
constexpr uint32 MaxClaimedSize = 209715199;
/** zlib's window of 15 bits, and 32 to take zlib's header and gzip's alike (zlib manual, inflateInit2). */
constexpr int AnyHeaderWindowBits = 47;

/** @return an empty array when it can't be compressed. */
TArray<uint8> Compress(const FString& Json)
{
	const FTCHARToUTF8 Text(*Json, Json.Len());
	int32 Size = FCompression::CompressMemoryBound(NAME_Zlib, Text.Length());
	TArray<uint8> Bytes;
	Bytes.SetNumUninitialized(SizeBytes + Size);
	const uint32 Claim = static_cast<uint32>(Text.Length());
	for (int32 Index = 0; Index < SizeBytes; ++Index)
	{
		Bytes[Index] = static_cast<uint8>(Claim >> (8 * Index));
	}
	// The quickest level: a conversation is saved often and read seldom.
	const bool bDone = FCompression::CompressMemory(
		NAME_Zlib, Bytes.GetData() + SizeBytes, Size, Text.Get(), Text.Length(), COMPRESS_BiasSpeed);
	Bytes.SetNum(bDone ? SizeBytes + Size : 0);
	return Bytes;
}

/** Inflates data of a header of its own kind. @return whether the stream reached its end within the bound. */
bool Inflate(const uint8* Data, int32 Size, TArray<uint8>& Out)
{
	z_stream Stream = {};
	if (inflateInit2(&Stream, AnyHeaderWindowBits) != Z_OK)
	{
		return false;
	}
	Stream.next_in = const_cast<Bytef*>(Data);
	Stream.avail_in = static_cast<uInt>(Size);
	int64 Room = FMath::Max<int64>(4096, 4 * static_cast<int64>(Size));
	int Status = Z_OK;
	Out.Reset();
	while (Status == Z_OK && Room <= CVXCheckpointFile::MaxInflatedBytes)
	{
		Out.SetNumUninitialized(static_cast<int32>(Room));
		Stream.next_out = Out.GetData() + Stream.total_out;
		Stream.avail_out = static_cast<uInt>(Room - static_cast<int64>(Stream.total_out));
		Status = inflate(&Stream, Z_NO_FLUSH);
		Room *= 2;
	}
	Out.SetNum(Status == Z_STREAM_END ? static_cast<int32>(Stream.total_out) : 0);
	inflateEnd(&Stream);
	return Status == Z_STREAM_END;
}

uint32 ReadClaimedSize(const TArray<uint8>& Bytes)
{
	uint32 Size = 0;
	for (int32 Index = 0; Index < SizeBytes; ++Index)
	{
		Size |= static_cast<uint32>(Bytes[Index]) << (8 * Index);
	}
	return Size;
}

bool Decompress(const TArray<uint8>& Bytes, FString& OutText)
{
	TArray<uint8> Plain;
	bool bDone = false;
	if (Bytes.Num() > 2 * SizeBytes)
	{
		const uint32 Claim = ReadClaimedSize(Bytes);
		bDone = Claim >= MinClaimedSize && Claim <= MaxClaimedSize &&
			Inflate(Bytes.GetData() + SizeBytes, Bytes.Num() - SizeBytes, Plain);
	}
	if (!bDone && !Inflate(Bytes.GetData(), Bytes.Num(), Plain))
	{
		return false;
	}
	if (!Plain.IsEmpty() && Plain.Last() == 0)
	{
		Plain.Pop();
	}
	const FUTF8ToTCHAR Text(reinterpret_cast<const char*>(Plain.GetData()), Plain.Num());
	OutText = FString(Text.Length(), Text.Get());
	return true;
}
} // namespace

bool CVXCheckpointFile::Write(const FString& Path, const FString& Json, bool bCompress)
{
	if (bCompress)
	{
		const TArray<uint8> Bytes = Compress(Json);
		if (!Bytes.IsEmpty())
		{
			return FFileHelper::SaveArrayToFile(
				Bytes, *(Path + TEXT(".gz")), &IFileManager::Get(), FILEWRITE_NoReplaceExisting);
		}
		UE_LOG(LogCVXCheckpoint, Warning, TEXT("Zlib compression failed, saving uncompressed: %s"), *Path);
	}
	return FFileHelper::SaveStringToFile(
		Json, *Path, FFileHelper::EEncodingOptions::AutoDetect, &IFileManager::Get(), FILEWRITE_NoReplaceExisting);
}

bool CVXCheckpointFile::Read(const FString& Path, FString& OutJson)
{
	const FString Compressed = Path + TEXT(".gz");
	TArray<uint8> Bytes;
	const int64 Size = IFileManager::Get().FileSize(*Compressed);
	if (Size >= 0 && Size <= MaxInflatedBytes && FFileHelper::LoadFileToArray(Bytes, *Compressed))
	{
		if (Decompress(Bytes, OutJson))
		{
			return true;
		}
		UE_LOG(LogCVXCheckpoint, Warning,
			TEXT("Failed to decompress checkpoint with all methods: %s — trying uncompressed fallback"), *Compressed);
	}
	return IFileManager::Get().FileSize(*Path) <= MaxInflatedBytes && FFileHelper::LoadFileToString(OutJson, *Path);
}
