#pragma once

#include "CoreTypes.h"
#include "Templates/SharedPointer.h"

#include <atomic>
#include <new>

/**
 * Memory for the nodes of one parse, given out in order. Each node is owned on its own by shared pointers; the memory
 * goes when its last node does, so a small part of a large document that somebody keeps holds a few slabs at most.
 */
class FJsonSlab
{
public:
	/** @param Bytes room for nodes. */
	static FJsonSlab* Create(SIZE_T Bytes);

	/** @return aligned to 8, or null when the rest of the slab is too small. */
	void* TryAllocate(SIZE_T Bytes)
	{
		const SIZE_T Rounded = (Bytes + 7) & ~(SIZE_T)7;
		if (Rounded > (SIZE_T)(End - Next))
		{
			return nullptr;
		}
		void* Result = Next;
		Next += Rounded;
		return Result;
	}
	/** Counts a node that was made. By the parse alone. */
	void CountNode() { ++Made; }
	/** The parse has put all nodes in that it will: from now on they own the slab. */
	void Seal();
	/** A node has ended. The last one frees the slab. */
	void ReleaseNode();

	uint32 OffsetOf(const void* Inside) const { return (uint32)((const uint8*)Inside - (const uint8*)this); }
	static FJsonSlab* At(void* Inside, uint32 Offset) { return (FJsonSlab*)((uint8*)Inside - Offset); }

private:
	FJsonSlab() = default;

	uint8* Next = nullptr;
	uint8* End = nullptr;
	/** Not atomic: only the parse counts up. */
	int64 Made = 0;
	/** Below 0 while the parse runs, by the nodes that have ended already; then the nodes alive. */
	std::atomic<int64> Alive{0};
};

/** An object in a slab with its reference counts. */
template <typename T>
class TJsonNode final : public SharedPointer::FOwner
{
public:
	template <typename... ArgTypes>
	explicit TJsonNode(FJsonSlab& Slab, ArgTypes&&... Args)
		: SlabOffset(Slab.OffsetOf(this))
	{
		new ((void*)Memory) T(Forward<ArgTypes>(Args)...);
		Slab.CountNode();
	}
	T* Get() { return (T*)Memory; }
	void DestroyObject() override { Get()->~T(); }
	void DestroyOwner() override { FJsonSlab::At(this, SlabOffset)->ReleaseNode(); }

private:
	uint32 SlabOffset;
	alignas(8) uint8 Memory[sizeof(T)];
};
