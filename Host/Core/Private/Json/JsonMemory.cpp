#include "Json/JsonMemory.h"

#include <sys/mman.h>

void JsonMemory::PreferHugePages(void* Block, SIZE_T Bytes)
{
	if (Bytes < 2 * HugePageBytes)
	{
		return;
	}
	const UPTRINT First = ((UPTRINT)Block + HugePageBytes - 1) & ~(UPTRINT)(HugePageBytes - 1);
	const UPTRINT Last = ((UPTRINT)Block + Bytes) & ~(UPTRINT)(HugePageBytes - 1);
	// Advice only: where it is refused, the memory serves all the same.
	(void)madvise((void*)First, Last - First, MADV_HUGEPAGE);
}
