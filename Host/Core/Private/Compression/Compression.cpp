#include "Misc/Compression.h"

#include <zlib.h>

const FName NAME_Zlib(TEXT("Zlib"));
const FName NAME_Gzip(TEXT("Gzip"));

namespace
{
constexpr int32 GzipHeaderBytes = 18;
constexpr int32 MemoryLevel = 8;

/** zlib's number for a format: its window of 32 KiB, plus 16 for gzip's wrapping; 0 for an unknown one. */
int32 WindowBits(FName FormatName)
{
	if (FormatName == NAME_Zlib)
	{
		return MAX_WBITS;
	}
	return FormatName == NAME_Gzip ? MAX_WBITS + 16 : 0;
}

int32 Level(ECompressionFlags Flags)
{
	if (Flags & COMPRESS_BiasSpeed)
	{
		return Z_BEST_SPEED;
	}
	return Flags & COMPRESS_BiasMemory ? Z_BEST_COMPRESSION : Z_DEFAULT_COMPRESSION;
}

void SetBuffers(z_stream& Stream, const void* Source, int32 SourceSize, void* Dest, int32 DestSize)
{
	Stream.next_in = (Bytef*)Source;
	Stream.avail_in = (uInt)SourceSize;
	Stream.next_out = (Bytef*)Dest;
	Stream.avail_out = (uInt)DestSize;
}
} // namespace

int32 FCompression::CompressMemoryBound(FName FormatName, int32 UncompressedSize, ECompressionFlags)
{
	if (WindowBits(FormatName) == 0 || UncompressedSize < 0)
	{
		return INDEX_NONE;
	}
	const uint64 Bound = compressBound((uLong)UncompressedSize) + GzipHeaderBytes;
	return Bound > (uint64)MAX_int32 ? MAX_int32 : (int32)Bound;
}

bool FCompression::CompressMemory(FName FormatName, void* CompressedBuffer, int32& CompressedSize,
	const void* UncompressedBuffer, int32 UncompressedSize, ECompressionFlags Flags)
{
	const int32 Bits = WindowBits(FormatName);
	z_stream Stream = {};
	if (Bits == 0 || CompressedSize < 0 || UncompressedSize < 0 ||
		deflateInit2(&Stream, Level(Flags), Z_DEFLATED, Bits, MemoryLevel, Z_DEFAULT_STRATEGY) != Z_OK)
	{
		return false;
	}
	SetBuffers(Stream, UncompressedBuffer, UncompressedSize, CompressedBuffer, CompressedSize);
	const bool bWhole = deflate(&Stream, Z_FINISH) == Z_STREAM_END;
	CompressedSize = bWhole ? (int32)Stream.total_out : CompressedSize;
	deflateEnd(&Stream);
	return bWhole;
}

bool FCompression::UncompressMemory(FName FormatName, void* UncompressedBuffer, int32 UncompressedSize,
	const void* CompressedBuffer, int32 CompressedSize, ECompressionFlags)
{
	const int32 Bits = WindowBits(FormatName);
	z_stream Stream = {};
	if (Bits == 0 || CompressedSize < 0 || UncompressedSize < 0 || inflateInit2(&Stream, Bits) != Z_OK)
	{
		return false;
	}
	SetBuffers(Stream, CompressedBuffer, CompressedSize, UncompressedBuffer, UncompressedSize);
	const bool bWhole = inflate(&Stream, Z_FINISH) == Z_STREAM_END && (int32)Stream.total_out == UncompressedSize;
	inflateEnd(&Stream);
	return bWhole;
}
