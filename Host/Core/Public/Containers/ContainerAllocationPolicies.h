#pragma once

#include "HAL/UnrealMemory.h"
#include "Misc/AssertionMacros.h"
#include "Templates/UnrealTemplate.h"

#include <new>

/** Moves Count objects to uninitialised memory and ends the originals' life. The ranges don't overlap. */
template <typename T>
void RelocateConstructItems(T* Dest, T* Source, int32 Count)
{
	if constexpr (TIsRelocatable<T>::value)
	{
		FMemory::Memcpy((void*)Dest, (void*)Source, sizeof(T) * (SIZE_T)Count);
	}
	else
	{
		for (int32 Index = 0; Index < Count; ++Index)
		{
			new ((void*)(Dest + Index)) T(MoveTemp(Source[Index]));
			Source[Index].~T();
		}
	}
}

template <typename T>
void DestructItems(T* First, int32 Count)
{
	if constexpr (!std::is_trivially_destructible_v<T>)
	{
		for (int32 Index = 0; Index < Count; ++Index)
		{
			First[Index].~T();
		}
	}
}

/** The capacity to grow to when NewNum elements are needed: half again, so that appends cost constant time. */
constexpr int32 CalculateSlackGrow(int32 NewNum, int32 CurrentMax)
{
	const int64 Grown = (int64)NewNum + (CurrentMax == 0 && NewNum <= 4 ? 4 - NewNum : (int64)NewNum / 2 + 8);
	return Grown > MAX_int32 ? MAX_int32 : (int32)Grown;
}

/** Keeps elements on the heap. */
class FDefaultAllocator
{
public:
	static constexpr bool bMovesByPointer = true;

	template <typename T>
	class ForElementType
	{
	public:
		ForElementType() = default;
		~ForElementType() { FMemory::Free((void*)Data); }
		ForElementType(const ForElementType&) = delete;
		ForElementType& operator=(const ForElementType&) = delete;

		static constexpr int32 InitialMax() { return 0; }
		T* GetAllocation() const { return Data; }

		/** Makes room for NewMax elements and keeps the first Num. @return the room made. */
		int32 Resize(int32 Num, int32 NewMax)
		{
			const SIZE_T Bytes = sizeof(T) * (SIZE_T)NewMax;
			if constexpr (TIsRelocatable<T>::value)
			{
				Data = (T*)FMemory::Realloc((void*)Data, Bytes, alignof(T));
			}
			else
			{
				T* NewData = (T*)FMemory::Malloc(Bytes, alignof(T));
				RelocateConstructItems(NewData, Data, Num);
				FMemory::Free((void*)Data);
				Data = NewData;
			}
			return NewMax;
		}

		/** Takes the other's memory. This one's must be free of elements. */
		void MoveToEmpty(ForElementType& Other)
		{
			FMemory::Free((void*)Data);
			Data = Other.Data;
			Other.Data = nullptr;
		}

	private:
		T* Data = nullptr;
	};
};

using FHeapAllocator = FDefaultAllocator;

/** Keeps up to InlineCount elements inside the container, and more on the heap. */
template <uint32 InlineCount>
class TInlineAllocator
{
public:
	static constexpr bool bMovesByPointer = false;

	template <typename T>
	class ForElementType
	{
	public:
		ForElementType() = default;
		~ForElementType() { FMemory::Free((void*)Heap); }
		ForElementType(const ForElementType&) = delete;
		ForElementType& operator=(const ForElementType&) = delete;

		static constexpr int32 InitialMax() { return (int32)InlineCount; }
		T* GetAllocation() const { return Heap ? Heap : (T*)Inline; }

		int32 Resize(int32 Num, int32 NewMax)
		{
			if (NewMax <= (int32)InlineCount && !Heap)
			{
				return (int32)InlineCount;
			}
			const bool bToInline = NewMax <= (int32)InlineCount;
			T* Target = bToInline ? (T*)Inline : (T*)FMemory::Malloc(sizeof(T) * (SIZE_T)NewMax, alignof(T));
			RelocateConstructItems(Target, GetAllocation(), Num);
			FMemory::Free((void*)Heap);
			Heap = bToInline ? nullptr : Target;
			return bToInline ? (int32)InlineCount : NewMax;
		}

	private:
		T* Heap = nullptr;
		alignas(T) mutable uint8 Inline[sizeof(T) * InlineCount];
	};
};
