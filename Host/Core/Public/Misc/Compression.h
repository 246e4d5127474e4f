#pragma once

#include "UObject/NameTypes.h"

extern const FName NAME_Zlib;
extern const FName NAME_Gzip;

/** How hard to compress. */
enum ECompressionFlags
{
	COMPRESS_None = 0,
	COMPRESS_BiasMemory = 0x10,
	COMPRESS_BiasSpeed = 0x20
};

/** Compression of whole buffers in the zlib and gzip formats (RFC 1950, RFC 1952). Any thread. */
struct FCompression
{
	/** Bytes that the compressed form needs at most; -1 for an unknown format. */
	static int32 CompressMemoryBound(FName FormatName, int32 UncompressedSize, ECompressionFlags Flags = COMPRESS_None);

	/**
	 * @param CompressedSize the room of the buffer, and on success the bytes written. COMPRESS_BiasSpeed takes the
	 * quickest level, COMPRESS_BiasMemory the densest. @return false when the room is too small or the format unknown.
	 */
	static bool CompressMemory(FName FormatName, void* CompressedBuffer, int32& CompressedSize,
		const void* UncompressedBuffer, int32 UncompressedSize, ECompressionFlags Flags = COMPRESS_None);

	/** @param UncompressedSize exactly what the data must hold. @return false for damaged or other data. */
	static bool UncompressMemory(FName FormatName, void* UncompressedBuffer, int32 UncompressedSize,
		const void* CompressedBuffer, int32 CompressedSize, ECompressionFlags Flags = COMPRESS_None);
};
