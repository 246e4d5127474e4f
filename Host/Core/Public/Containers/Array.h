#pragma once

#include "Containers/ArrayView.h"
#include "Containers/ContainerAllocationPolicies.h"
#include "Templates/Less.h"
#include "Templates/TypeHash.h"

#include <algorithm>

/** Whether a removal gives memory back. */
enum class EAllowShrinking : uint8
{
	No,
	Yes
};

/**
 * A growing array. Elements lie side by side and move to another address when the array grows, so no reference to an
 * element outlives a call that adds. An index outside the array is a programmer's mistake and aborts.
 */
template <typename T, typename AllocatorType = FDefaultAllocator>
class TArray
{
public:
	using ElementType = T;
	using SizeType = int32;

	TArray()
		: ArrayMax(Storage.InitialMax())
	{
	}
	TArray(std::initializer_list<T> List)
		: TArray()
	{
		Append(List.begin(), (int32)List.size());
	}
	TArray(const T* Source, int32 Count)
		: TArray()
	{
		Append(Source, Count);
	}
	template <typename OtherType>
	explicit TArray(TArrayView<OtherType> View)
		: TArray()
	{
		Append(View.GetData(), View.Num());
	}
	TArray(const TArray& Other)
		: TArray()
	{
		Append(Other.GetData(), Other.Num());
	}
	template <typename OtherAllocator>
	explicit TArray(const TArray<T, OtherAllocator>& Other)
		: TArray()
	{
		Append(Other.GetData(), Other.Num());
	}
	TArray(TArray&& Other) noexcept
		: TArray()
	{
		MoveFrom(Other);
	}
	~TArray() { DestructItems(GetData(), ArrayNum); }

	TArray& operator=(const TArray& Other)
	{
		if (this != &Other)
		{
			Reset(Other.Num());
			Append(Other.GetData(), Other.Num());
		}
		return *this;
	}
	TArray& operator=(TArray&& Other) noexcept
	{
		if (this != &Other)
		{
			Reset();
			MoveFrom(Other);
		}
		return *this;
	}
	TArray& operator=(std::initializer_list<T> List)
	{
		Reset((int32)List.size());
		Append(List.begin(), (int32)List.size());
		return *this;
	}

	T* GetData() { return Storage.GetAllocation(); }
	const T* GetData() const { return Storage.GetAllocation(); }
	int32 Num() const { return ArrayNum; }
	int32 Max() const { return ArrayMax; }
	int32 GetSlack() const { return ArrayMax - ArrayNum; }
	bool IsEmpty() const { return ArrayNum == 0; }
	bool IsValidIndex(int32 Index) const { return (uint32)Index < (uint32)ArrayNum; }
	SIZE_T GetAllocatedSize() const { return sizeof(T) * (SIZE_T)ArrayMax; }
	static constexpr uint32 GetTypeSize() { return sizeof(T); }

	T& operator[](int32 Index)
	{
		check(IsValidIndex(Index));
		return GetData()[Index];
	}
	const T& operator[](int32 Index) const
	{
		check(IsValidIndex(Index));
		return GetData()[Index];
	}
	T& Last(int32 IndexFromTheEnd = 0) { return (*this)[ArrayNum - IndexFromTheEnd - 1]; }
	const T& Last(int32 IndexFromTheEnd = 0) const { return (*this)[ArrayNum - IndexFromTheEnd - 1]; }
	T& Top() { return Last(); }
	const T& Top() const { return Last(); }

	/** Makes room for Count further elements without constructing them. @return the index of the first. */
	int32 AddUninitialized(int32 Count = 1)
	{
		check(Count >= 0 && Count <= MAX_int32 - ArrayNum);
		const int32 Index = ArrayNum;
		if (ArrayNum + Count > ArrayMax)
		{
			ArrayMax = Storage.Resize(ArrayNum, CalculateSlackGrow(ArrayNum + Count, ArrayMax));
		}
		ArrayNum += Count;
		return Index;
	}
	int32 AddZeroed(int32 Count = 1)
	{
		const int32 Index = AddUninitialized(Count);
		FMemory::Memzero((void*)(GetData() + Index), sizeof(T) * (SIZE_T)Count);
		return Index;
	}
	int32 AddDefaulted(int32 Count = 1)
	{
		const int32 Index = AddUninitialized(Count);
		for (int32 Each = 0; Each < Count; ++Each)
		{
			new ((void*)(GetData() + Index + Each)) T();
		}
		return Index;
	}
	T& AddDefaulted_GetRef() { return AtIndex(AddDefaulted()); }

	template <typename... ArgTypes>
	int32 Emplace(ArgTypes&&... Args)
	{
		return EmplaceAt(Forward<ArgTypes>(Args)...);
	}
	template <typename... ArgTypes>
	T& Emplace_GetRef(ArgTypes&&... Args)
	{
		return AtIndex(EmplaceAt(Forward<ArgTypes>(Args)...));
	}
	int32 Add(const T& Item) { return EmplaceAt(Item); }
	int32 Add(T&& Item) { return EmplaceAt(MoveTempIfPossible(Item)); }
	T& Add_GetRef(const T& Item) { return AtIndex(EmplaceAt(Item)); }
	T& Add_GetRef(T&& Item) { return AtIndex(EmplaceAt(MoveTempIfPossible(Item))); }
	void Push(const T& Item) { Add(Item); }
	void Push(T&& Item) { Add(MoveTempIfPossible(Item)); }
	int32 AddUnique(const T& Item)
	{
		const int32 Found = Find(Item);
		return Found != INDEX_NONE ? Found : Add(Item);
	}

	/** Appends Count copies from Source, which may lie inside this array. */
	void Append(const T* Source, int32 Count)
	{
		const bool bInside = Source >= GetData() && Source < GetData() + ArrayNum;
		const PTRINT Offset = bInside ? Source - GetData() : 0;
		const int32 Index = AddUninitialized(Count);
		CopyConstruct(GetData() + Index, bInside ? GetData() + Offset : Source, Count);
	}
	void Append(std::initializer_list<T> List) { Append(List.begin(), (int32)List.size()); }
	void Append(TArrayView<const T> View) { Append(View.GetData(), View.Num()); }
	template <typename OtherAllocator>
	void Append(const TArray<T, OtherAllocator>& Other)
	{
		Append(Other.GetData(), Other.Num());
	}
	void Append(TArray&& Other)
	{
		check(this != &Other);
		if (IsEmpty())
		{
			*this = MoveTemp(Other);
			return;
		}
		const int32 Index = AddUninitialized(Other.ArrayNum);
		RelocateConstructItems(GetData() + Index, Other.GetData(), Other.ArrayNum);
		Other.ArrayNum = 0;
	}
	TArray& operator+=(const TArray& Other)
	{
		Append(Other);
		return *this;
	}
	TArray& operator+=(TArray&& Other)
	{
		Append(MoveTemp(Other));
		return *this;
	}
	TArray& operator+=(std::initializer_list<T> List)
	{
		Append(List);
		return *this;
	}

	void InsertUninitialized(int32 Index, int32 Count = 1)
	{
		check(Index >= 0 && Index <= ArrayNum);
		const int32 OldNum = AddUninitialized(Count);
		ShiftTail(Index, Index + Count, OldNum - Index);
	}
	void InsertZeroed(int32 Index, int32 Count = 1)
	{
		InsertUninitialized(Index, Count);
		FMemory::Memzero((void*)(GetData() + Index), sizeof(T) * (SIZE_T)Count);
	}
	void InsertDefaulted(int32 Index, int32 Count = 1)
	{
		InsertUninitialized(Index, Count);
		for (int32 Each = 0; Each < Count; ++Each)
		{
			new ((void*)(GetData() + Index + Each)) T();
		}
	}
	template <typename... ArgTypes>
	void EmplaceInsert(int32 Index, ArgTypes&&... Args)
	{
		T Item(Forward<ArgTypes>(Args)...);
		InsertUninitialized(Index);
		new ((void*)(GetData() + Index)) T(MoveTempIfPossible(Item));
	}
	int32 Insert(const T& Item, int32 Index)
	{
		EmplaceInsert(Index, Item);
		return Index;
	}
	int32 Insert(T&& Item, int32 Index)
	{
		EmplaceInsert(Index, MoveTempIfPossible(Item));
		return Index;
	}
	int32 Insert(const TArray& Items, int32 Index)
	{
		const TArray Copy = this == &Items ? Items : TArray();
		const TArray& Source = this == &Items ? Copy : Items;
		InsertUninitialized(Index, Source.Num());
		CopyConstruct(GetData() + Index, Source.GetData(), Source.Num());
		return Index;
	}

	void RemoveAt(int32 Index, int32 Count = 1, EAllowShrinking AllowShrinking = EAllowShrinking::Yes)
	{
		check(Count >= 0 && Index >= 0 && Index <= ArrayNum - Count);
		DestructItems(GetData() + Index, Count);
		ShiftTail(Index + Count, Index, ArrayNum - Index - Count);
		ArrayNum -= Count;
		ShrinkIfWasteful(AllowShrinking);
	}
	/** Removes an element by putting the last one in its place. */
	void RemoveAtSwap(int32 Index, EAllowShrinking AllowShrinking = EAllowShrinking::Yes)
	{
		check(IsValidIndex(Index));
		T* Data = GetData();
		Data[Index].~T();
		--ArrayNum;
		if (Index != ArrayNum)
		{
			RelocateConstructItems(Data + Index, Data + ArrayNum, 1);
		}
		ShrinkIfWasteful(AllowShrinking);
	}
	template <typename PredicateType>
	int32 RemoveAll(const PredicateType& Predicate)
	{
		T* Data = GetData();
		int32 Write = 0;
		for (int32 Read = 0; Read < ArrayNum; ++Read)
		{
			if (Predicate(Data[Read]))
			{
				Data[Read].~T();
				continue;
			}
			if (Write != Read)
			{
				RelocateConstructItems(Data + Write, Data + Read, 1);
			}
			++Write;
		}
		return Exchange(ArrayNum, Write) - Write;
	}
	int32 Remove(const T& Item)
	{
		const T Copy(Item);
		return RemoveAll([&Copy](const T& Each) { return Each == Copy; });
	}
	int32 RemoveSingle(const T& Item)
	{
		const int32 Index = Find(Item);
		if (Index == INDEX_NONE)
		{
			return 0;
		}
		RemoveAt(Index);
		return 1;
	}
	int32 RemoveSingleSwap(const T& Item)
	{
		const int32 Index = Find(Item);
		if (Index == INDEX_NONE)
		{
			return 0;
		}
		RemoveAtSwap(Index);
		return 1;
	}
	T Pop(EAllowShrinking AllowShrinking = EAllowShrinking::Yes)
	{
		T Result = MoveTemp(Last());
		RemoveAt(ArrayNum - 1, 1, AllowShrinking);
		return Result;
	}

	/** Destroys all elements and leaves room for Slack. */
	void Empty(int32 Slack = 0)
	{
		DestructItems(GetData(), ArrayNum);
		ArrayNum = 0;
		if (ArrayMax != Slack)
		{
			ArrayMax = Storage.Resize(0, Slack);
		}
	}
	/** Destroys all elements, keeps the memory, and makes room for NewSize. */
	void Reset(int32 NewSize = 0)
	{
		DestructItems(GetData(), ArrayNum);
		ArrayNum = 0;
		Reserve(NewSize);
	}
	void Reserve(int32 Count)
	{
		if (Count > ArrayMax)
		{
			ArrayMax = Storage.Resize(ArrayNum, Count);
		}
	}
	void Shrink()
	{
		if (ArrayMax != ArrayNum)
		{
			ArrayMax = Storage.Resize(ArrayNum, ArrayNum);
		}
	}
	void SetNum(int32 NewNum, EAllowShrinking AllowShrinking = EAllowShrinking::Yes)
	{
		NewNum > ArrayNum ? (void)AddDefaulted(NewNum - ArrayNum) : Truncate(NewNum, AllowShrinking);
	}
	void SetNumZeroed(int32 NewNum, EAllowShrinking AllowShrinking = EAllowShrinking::Yes)
	{
		NewNum > ArrayNum ? (void)AddZeroed(NewNum - ArrayNum) : Truncate(NewNum, AllowShrinking);
	}
	void SetNumUninitialized(int32 NewNum, EAllowShrinking AllowShrinking = EAllowShrinking::Yes)
	{
		NewNum > ArrayNum ? (void)AddUninitialized(NewNum - ArrayNum) : Truncate(NewNum, AllowShrinking);
	}
	void Init(const T& Element, int32 Count)
	{
		Empty(Count);
		for (int32 Index = 0; Index < Count; ++Index)
		{
			Add(Element);
		}
	}
	void Swap(int32 A, int32 B) { std::swap((*this)[A], (*this)[B]); }
	void SwapMemory(int32 A, int32 B) { Swap(A, B); }

	template <typename KeyType>
	int32 IndexOfByKey(const KeyType& Key) const
	{
		return IndexOfByPredicate([&Key](const T& Item) { return Item == Key; });
	}
	template <typename PredicateType>
	int32 IndexOfByPredicate(const PredicateType& Predicate) const
	{
		const T* Data = GetData();
		for (int32 Index = 0; Index < ArrayNum; ++Index)
		{
			if (Predicate(Data[Index]))
			{
				return Index;
			}
		}
		return INDEX_NONE;
	}
	int32 Find(const T& Item) const { return IndexOfByKey(Item); }
	bool Find(const T& Item, int32& OutIndex) const
	{
		OutIndex = Find(Item);
		return OutIndex != INDEX_NONE;
	}
	int32 FindLast(const T& Item) const
	{
		return FindLastByPredicate([&Item](const T& Each) { return Each == Item; });
	}
	template <typename PredicateType>
	int32 FindLastByPredicate(const PredicateType& Predicate) const
	{
		int32 Index = ArrayNum - 1;
		while (Index >= 0 && !Predicate(GetData()[Index]))
		{
			--Index;
		}
		return Index;
	}
	template <typename KeyType>
	T* FindByKey(const KeyType& Key)
	{
		return AtOrNull(IndexOfByKey(Key));
	}
	template <typename KeyType>
	const T* FindByKey(const KeyType& Key) const
	{
		return AtOrNull(IndexOfByKey(Key));
	}
	template <typename PredicateType>
	T* FindByPredicate(const PredicateType& Predicate)
	{
		return AtOrNull(IndexOfByPredicate(Predicate));
	}
	template <typename PredicateType>
	const T* FindByPredicate(const PredicateType& Predicate) const
	{
		return AtOrNull(IndexOfByPredicate(Predicate));
	}
	template <typename PredicateType>
	TArray FilterByPredicate(const PredicateType& Predicate) const
	{
		TArray Result;
		for (const T& Item : *this)
		{
			if (Predicate(Item))
			{
				Result.Add(Item);
			}
		}
		return Result;
	}
	template <typename KeyType>
	bool Contains(const KeyType& Key) const
	{
		return IndexOfByKey(Key) != INDEX_NONE;
	}
	template <typename PredicateType>
	bool ContainsByPredicate(const PredicateType& Predicate) const
	{
		return IndexOfByPredicate(Predicate) != INDEX_NONE;
	}

	void Sort() { Sort(TLess<>()); }
	template <typename PredicateType>
	void Sort(const PredicateType& Predicate)
	{
		std::sort(begin(), end(), [&Predicate](const T& A, const T& B) { return CallPredicate(Predicate, A, B); });
	}
	void StableSort() { StableSort(TLess<>()); }
	template <typename PredicateType>
	void StableSort(const PredicateType& Predicate)
	{
		std::stable_sort(
			begin(), end(), [&Predicate](const T& A, const T& B) { return CallPredicate(Predicate, A, B); });
	}

	/** Heap operations: the smallest element by the predicate is at the top. */
	template <typename PredicateType = TLess<>>
	void Heapify(const PredicateType& Predicate = PredicateType())
	{
		std::make_heap(begin(), end(), [&Predicate](const T& A, const T& B) { return Predicate(B, A); });
	}
	template <typename PredicateType = TLess<>>
	void HeapPush(const T& Item, const PredicateType& Predicate = PredicateType())
	{
		Add(Item);
		std::push_heap(begin(), end(), [&Predicate](const T& A, const T& B) { return Predicate(B, A); });
	}
	template <typename PredicateType = TLess<>>
	void HeapPop(T& OutItem, const PredicateType& Predicate = PredicateType())
	{
		std::pop_heap(begin(), end(), [&Predicate](const T& A, const T& B) { return Predicate(B, A); });
		OutItem = Pop(EAllowShrinking::No);
	}
	const T& HeapTop() const { return (*this)[0]; }

	template <typename OtherAllocator>
	bool operator==(const TArray<T, OtherAllocator>& Other) const
	{
		return ArrayNum == Other.Num() && std::equal(begin(), end(), Other.begin());
	}

	T* begin() { return GetData(); }
	const T* begin() const { return GetData(); }
	T* end() { return GetData() + ArrayNum; }
	const T* end() const { return GetData() + ArrayNum; }

	/** Walks the array by index and can remove the element that it stands on. */
	class TIterator
	{
	public:
		explicit TIterator(TArray& InArray)
			: Array(InArray)
		{
		}
		explicit operator bool() const { return Array.IsValidIndex(Index); }
		TIterator& operator++()
		{
			++Index;
			return *this;
		}
		T& operator*() const { return Array[Index]; }
		T* operator->() const { return &Array[Index]; }
		int32 GetIndex() const { return Index; }
		void RemoveCurrent() { Array.RemoveAt(Index--); }

	private:
		TArray& Array;
		int32 Index = 0;
	};
	TIterator CreateIterator() { return TIterator(*this); }

	friend uint32 GetTypeHash(const TArray& Array)
	{
		uint32 Hash = 0;
		for (const T& Item : Array)
		{
			Hash = HashCombine(Hash, GetTypeHash(Item));
		}
		return Hash;
	}

private:
	using StorageType = typename AllocatorType::template ForElementType<T>;

	/** The address is taken here, behind the growth that made the index. */
	T& AtIndex(int32 Index) { return GetData()[Index]; }

	template <typename PredicateType>
	static bool CallPredicate(const PredicateType& Predicate, const T& A, const T& B)
	{
		if constexpr (std::is_pointer_v<T> && !std::is_invocable_v<const PredicateType&, T, T>)
		{
			return Predicate(*A, *B);
		}
		else
		{
			return Predicate(A, B);
		}
	}

	template <typename... ArgTypes>
	int32 EmplaceAt(ArgTypes&&... Args)
	{
		if (LIKELY(ArrayNum < ArrayMax))
		{
			new ((void*)(GetData() + ArrayNum)) T(Forward<ArgTypes>(Args)...);
			return ArrayNum++;
		}
		// The argument may live in this array, so it is used before the elements move.
		T Item(Forward<ArgTypes>(Args)...);
		const int32 Index = AddUninitialized();
		new ((void*)(GetData() + Index)) T(MoveTempIfPossible(Item));
		return Index;
	}

	static void CopyConstruct(T* Dest, const T* Source, int32 Count)
	{
		if constexpr (std::is_trivially_copyable_v<T>)
		{
			FMemory::Memcpy((void*)Dest, (const void*)Source, sizeof(T) * (SIZE_T)Count);
		}
		else
		{
			for (int32 Index = 0; Index < Count; ++Index)
			{
				new ((void*)(Dest + Index)) T(Source[Index]);
			}
		}
	}

	/** Relocates Count elements from index From to index To; the ranges may overlap. */
	void ShiftTail(int32 From, int32 To, int32 Count)
	{
		T* Data = GetData();
		if constexpr (TIsRelocatable<T>::value)
		{
			FMemory::Memmove((void*)(Data + To), (void*)(Data + From), sizeof(T) * (SIZE_T)Count);
		}
		else if (To != From)
		{
			for (int32 Step = 0; Step < Count; ++Step)
			{
				const int32 Index = To < From ? Step : Count - 1 - Step;
				RelocateConstructItems(Data + To + Index, Data + From + Index, 1);
			}
		}
	}

	void Truncate(int32 NewNum, EAllowShrinking AllowShrinking)
	{
		check(NewNum >= 0);
		RemoveAt(NewNum, ArrayNum - NewNum, AllowShrinking);
	}

	void ShrinkIfWasteful(EAllowShrinking AllowShrinking)
	{
		const bool bWasteful = ArrayMax > 64 && ArrayNum < ArrayMax / 4;
		if (AllowShrinking == EAllowShrinking::Yes && bWasteful)
		{
			ArrayMax = Storage.Resize(ArrayNum, ArrayNum + ArrayNum / 2);
		}
	}

	void MoveFrom(TArray& Other)
	{
		if constexpr (AllocatorType::bMovesByPointer)
		{
			Storage.MoveToEmpty(Other.Storage);
			ArrayMax = Exchange(Other.ArrayMax, 0);
		}
		else
		{
			Reserve(Other.ArrayNum);
			RelocateConstructItems(GetData(), Other.GetData(), Other.ArrayNum);
		}
		ArrayNum = Exchange(Other.ArrayNum, 0);
	}

	T* AtOrNull(int32 Index) { return Index == INDEX_NONE ? nullptr : GetData() + Index; }
	const T* AtOrNull(int32 Index) const { return Index == INDEX_NONE ? nullptr : GetData() + Index; }

	StorageType Storage;
	int32 ArrayNum = 0;
	int32 ArrayMax;

	template <typename OtherType, typename OtherAllocator>
	friend class TArray;
};

template <typename T, typename AllocatorType>
struct TIsRelocatable<TArray<T, AllocatorType>> : std::bool_constant<AllocatorType::bMovesByPointer>
{
};

/** A heap array of untyped elements: the memory layout of every `TArray` with the default allocator. */
struct FScriptArray
{
	void* Data = nullptr;
	int32 ArrayNum = 0;
	int32 ArrayMax = 0;
};
static_assert(sizeof(FScriptArray) == sizeof(TArray<int32>));
