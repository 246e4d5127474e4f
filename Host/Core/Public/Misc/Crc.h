#pragma once

#include "CoreTypes.h"

/** Checksums and quick hashes of memory. Any thread. */
struct FCrc
{
	/** CRC-32 as zlib and gzip use it (polynomial 0xEDB88320). @param Crc the checksum of what came before, or 0. */
	static uint32 MemCrc32(const void* Data, int32 Length, uint32 Crc = 0);
};
