#pragma once

#include "CoreTypes.h"

/** Memory of large documents. */
namespace JsonMemory
{
constexpr SIZE_T HugePageBytes = 2 * 1024 * 1024;

/**
 * Asks for huge pages behind a block that is about to be filled: large documents spend more time on the faults of small
 * pages than on parsing. Does nothing for blocks smaller than two huge pages, nor where the system has none.
 */
void PreferHugePages(void* Block, SIZE_T Bytes);
}
