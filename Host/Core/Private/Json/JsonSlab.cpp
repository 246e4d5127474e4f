#include "Json/JsonSlab.h"

#include "HAL/UnrealMemory.h"
#include "Json/JsonMemory.h"

FJsonSlab* FJsonSlab::Create(SIZE_T Bytes)
{
	const SIZE_T Whole = sizeof(FJsonSlab) + Bytes;
	uint8* Memory = (uint8*)FMemory::Malloc(Whole, Bytes < JsonMemory::HugePageBytes ? 0 : JsonMemory::HugePageBytes);
	JsonMemory::PreferHugePages(Memory, Whole);
	FJsonSlab* Slab = new ((void*)Memory) FJsonSlab();
	Slab->Next = Memory + sizeof(FJsonSlab);
	Slab->End = Slab->Next + Bytes;
	return Slab;
}

void FJsonSlab::Seal()
{
	if (Alive.fetch_add(Made, std::memory_order_acq_rel) + Made == 0)
	{
		FMemory::Free(this);
	}
}

void FJsonSlab::ReleaseNode()
{
	// During the parse the count is below 0, so that 1 means the last node of a sealed slab and nothing else.
	if (Alive.fetch_sub(1, std::memory_order_acq_rel) == 1)
	{
		FMemory::Free(this);
	}
}
