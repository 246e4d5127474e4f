#include "Misc/Crc.h"

#include <zlib.h>

uint32 FCrc::MemCrc32(const void* Data, int32 Length, uint32 Crc)
{
	return (uint32)crc32(Crc, (const Bytef*)Data, (uInt)Length);
}
