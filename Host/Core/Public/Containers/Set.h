#pragma once

#include "Containers/Array.h"
#include "Containers/ScriptSet.h"
#include "Containers/StringView.h"

/** Names an element's place in a set or map. */
struct FSetElementId
{
	int32 Index = INDEX_NONE;

	bool IsValidId() const { return Index != INDEX_NONE; }
	int32 AsInteger() const { return Index; }
	static FSetElementId FromInteger(int32 Integer) { return {Integer}; }
	friend bool operator==(FSetElementId A, FSetElementId B) { return A.Index == B.Index; }
};

/** How a set finds its elements: the element is its own key. */
template <typename T>
struct DefaultKeyFuncs
{
	using KeyType = T;

	static const T& GetSetKey(const T& Element) { return Element; }
	template <typename A, typename B>
	static bool Matches(const A& Left, const B& Right)
	{
		return Left == Right;
	}
	template <typename A>
	static uint32 GetKeyHash(const A& Key)
	{
		return GetTypeHash(Key);
	}
};

/**
 * Elements without duplicates, found by hash. A walk shows them in the order of insertion as long as nothing was
 * removed; a freed place is the next to be used. Adding may move the elements. An element added again replaces the old
 * one.
 */
template <typename T, typename KeyFuncsType = DefaultKeyFuncs<T>>
class TSet
{
public:
	using ElementType = T;
	using KeyFuncs = KeyFuncsType;

	TSet() = default;
	TSet(std::initializer_list<T> List) { Append(List); }
	explicit TSet(const TArray<T>& Array) { Append(Array); }
	TSet(const TSet& Other) { CopyFrom(Other); }
	TSet(TSet&& Other) noexcept { Impl.Swap(Other.Impl); }
	~TSet() { DestroyAll(); }
	TSet& operator=(const TSet& Other)
	{
		if (this != &Other)
		{
			Reset();
			CopyFrom(Other);
		}
		return *this;
	}
	TSet& operator=(TSet&& Other) noexcept
	{
		if (this != &Other)
		{
			Empty();
			Impl.Swap(Other.Impl);
		}
		return *this;
	}

	int32 Num() const { return Impl.Num(); }
	bool IsEmpty() const { return Impl.Num() == 0; }
	int32 GetMaxIndex() const { return Impl.GetMaxIndex(); }
	bool IsValidId(FSetElementId Id) const { return Impl.IsValidIndex(Id.Index, Layout); }
	T& operator[](FSetElementId Id)
	{
		check(IsValidId(Id));
		return At(Id.Index);
	}
	const T& operator[](FSetElementId Id) const
	{
		check(IsValidId(Id));
		return At(Id.Index);
	}
	SIZE_T GetAllocatedSize() const { return Impl.GetAllocatedSize(Layout); }

	void Reserve(int32 Count) { Impl.Reserve(Count, Layout, Relocator()); }
	void Reset()
	{
		DestroyAll();
		Impl.Reset();
	}
	void Empty(int32 Slack = 0)
	{
		DestroyAll();
		Impl.Empty();
		Reserve(Slack);
	}

	FSetElementId Add(const T& Item, bool* bOutAlreadyInSet = nullptr) { return Emplace(Item, bOutAlreadyInSet); }
	FSetElementId Add(T&& Item, bool* bOutAlreadyInSet = nullptr)
	{
		return Emplace(MoveTempIfPossible(Item), bOutAlreadyInSet);
	}
	template <typename ArgType>
	FSetElementId Emplace(ArgType&& Arg, bool* bOutAlreadyInSet = nullptr)
	{
		T Item(Forward<ArgType>(Arg));
		const uint32 Hash = KeyFuncs::GetKeyHash(KeyFuncs::GetSetKey(Item));
		FSetElementId Id = FindIdByHash(Hash, KeyFuncs::GetSetKey(Item));
		if (bOutAlreadyInSet)
		{
			*bOutAlreadyInSet = Id.IsValidId();
		}
		if (Id.IsValidId())
		{
			At(Id.Index) = MoveTempIfPossible(Item);
			return Id;
		}
		return AddNew(Hash, MoveTempIfPossible(Item));
	}
	/** Adds an element whose key the caller knows not to be there, with the key's hash. */
	template <typename... ArgTypes>
	FSetElementId AddNew(uint32 Hash, ArgTypes&&... Args)
	{
		const int32 Index = Impl.Add(Hash, Layout, Relocator());
		new (Impl.GetData(Index, Layout)) T(Forward<ArgTypes>(Args)...);
		return {Index};
	}
	template <typename RangeType>
	void Append(const RangeType& Range)
	{
		for (const T& Item : Range)
		{
			Add(Item);
		}
	}

	template <typename ComparableType>
	FSetElementId FindIdByHash(uint32 Hash, const ComparableType& Key) const
	{
		return {Impl.Find(
			Hash, Layout, [&](int32 Index) { return KeyFuncs::Matches(KeyFuncs::GetSetKey(At(Index)), Key); })};
	}
	/** Looks up by any type that hashes and compares as the key does. A text literal is looked up as a view. */
	template <typename ComparableType>
	FSetElementId FindId(const ComparableType& Key) const
	{
		using FKey = typename KeyFuncs::KeyType;
		if constexpr (std::is_scalar_v<FKey>)
		{
			return FindIdByHash(KeyFuncs::GetKeyHash((FKey)Key), (FKey)Key);
		}
		else if constexpr (std::is_convertible_v<const ComparableType&, const TCHAR*>)
		{
			return FindIdByHash(KeyFuncs::GetKeyHash(FStringView(Key)), FStringView(Key));
		}
		else
		{
			return FindIdByHash(KeyFuncs::GetKeyHash(Key), Key);
		}
	}
	T* Find(const typename KeyFuncs::KeyType& Key) { return AtOrNull(FindId(Key)); }
	const T* Find(const typename KeyFuncs::KeyType& Key) const { return AtOrNull(FindId(Key)); }
	T& FindOrAdd(const T& Item)
	{
		const FSetElementId Id = FindId(KeyFuncs::GetSetKey(Item));
		return At(Id.IsValidId() ? Id.Index : Add(Item).Index);
	}
	template <typename ComparableType>
	bool Contains(const ComparableType& Key) const
	{
		return FindId(Key).IsValidId();
	}

	template <typename ComparableType>
	int32 Remove(const ComparableType& Key)
	{
		const FSetElementId Id = FindId(Key);
		if (!Id.IsValidId())
		{
			return 0;
		}
		Remove(Id);
		return 1;
	}
	void Remove(FSetElementId Id)
	{
		(*this)[Id].~T();
		Impl.RemoveAt(Id.Index, Layout);
	}

	TSet Intersect(const TSet& Other) const
	{
		return Filter([&Other](const T& Item) { return Other.Contains(KeyFuncs::GetSetKey(Item)); });
	}
	TSet Difference(const TSet& Other) const
	{
		return Filter([&Other](const T& Item) { return !Other.Contains(KeyFuncs::GetSetKey(Item)); });
	}
	TSet Union(const TSet& Other) const
	{
		TSet Result(*this);
		Result.Append(Other);
		return Result;
	}
	/** Whether all elements of the other set are in this one. */
	bool Includes(const TSet& Other) const { return Other.Difference(*this).IsEmpty(); }
	TArray<T> Array() const
	{
		TArray<T> Result;
		Result.Reserve(Num());
		for (const T& Item : *this)
		{
			Result.Add(Item);
		}
		return Result;
	}
	/** Puts the elements into this order and closes the free places. */
	template <typename PredicateType>
	void Sort(const PredicateType& Predicate)
	{
		TArray<T> Items = MoveOutAll();
		Items.Sort(Predicate);
		Refill(MoveTemp(Items));
	}
	template <typename PredicateType>
	void StableSort(const PredicateType& Predicate)
	{
		TArray<T> Items = MoveOutAll();
		Items.StableSort(Predicate);
		Refill(MoveTemp(Items));
	}
	/** Closes the free places and keeps the order. */
	void CompactStable() { Refill(MoveOutAll()); }

	/** Walks the elements; RemoveCurrent leaves the walk valid. */
	template <typename SetType, typename ItemType>
	class TBaseIterator
	{
	public:
		TBaseIterator(SetType& InSet, int32 InIndex)
			: Set(&InSet)
			, Index(InIndex)
		{
			SkipFree();
		}
		explicit operator bool() const { return Index < Set->GetMaxIndex(); }
		TBaseIterator& operator++()
		{
			++Index;
			SkipFree();
			return *this;
		}
		ItemType& operator*() const { return Set->At(Index); }
		ItemType* operator->() const { return &Set->At(Index); }
		bool operator!=(const TBaseIterator& Other) const { return Index != Other.Index; }
		bool operator==(const TBaseIterator& Other) const { return Index == Other.Index; }
		FSetElementId GetId() const { return {Index}; }
		void RemoveCurrent() { Set->Remove(FSetElementId{Index}); }

	private:
		void SkipFree()
		{
			while (Index < Set->GetMaxIndex() && !Set->IsValidId({Index}))
			{
				++Index;
			}
		}
		SetType* Set;
		int32 Index;
	};
	using TIterator = TBaseIterator<TSet, T>;
	using TConstIterator = TBaseIterator<const TSet, const T>;

	TIterator CreateIterator() { return TIterator(*this, 0); }
	TConstIterator CreateConstIterator() const { return TConstIterator(*this, 0); }
	TIterator begin() { return TIterator(*this, 0); }
	TIterator end() { return TIterator(*this, GetMaxIndex()); }
	TConstIterator begin() const { return TConstIterator(*this, 0); }
	TConstIterator end() const { return TConstIterator(*this, GetMaxIndex()); }

private:
	static constexpr FScriptSetLayout Layout = FScriptSetLayout::For(sizeof(T), alignof(T));

	static constexpr FScriptSet::FRelocate Relocator()
	{
		if constexpr (TIsRelocatable<T>::value)
		{
			return nullptr;
		}
		else
		{
			return [](void* Dest, void* Source) { RelocateConstructItems((T*)Dest, (T*)Source, 1); };
		}
	}

	T& At(int32 Index) { return *(T*)Impl.GetData(Index, Layout); }
	const T& At(int32 Index) const { return *(const T*)Impl.GetData(Index, Layout); }
	T* AtOrNull(FSetElementId Id) { return Id.IsValidId() ? &At(Id.Index) : nullptr; }
	const T* AtOrNull(FSetElementId Id) const { return Id.IsValidId() ? &At(Id.Index) : nullptr; }

	void CopyFrom(const TSet& Other)
	{
		Reserve(Other.Num());
		for (TConstIterator It = Other.begin(); It; ++It)
		{
			AddNew(Other.Impl.GetHash(It.GetId().Index, Layout), *It);
		}
	}
	void DestroyAll()
	{
		if constexpr (!std::is_trivially_destructible_v<T>)
		{
			for (T& Item : *this)
			{
				Item.~T();
			}
		}
	}
	template <typename PredicateType>
	TSet Filter(const PredicateType& Predicate) const
	{
		TSet Result;
		for (const T& Item : *this)
		{
			if (Predicate(Item))
			{
				Result.Add(Item);
			}
		}
		return Result;
	}
	TArray<T> MoveOutAll()
	{
		TArray<T> Items;
		Items.Reserve(Num());
		for (T& Item : *this)
		{
			Items.Add(MoveTemp(Item));
		}
		return Items;
	}
	void Refill(TArray<T>&& Items)
	{
		Reset();
		for (T& Item : Items)
		{
			const uint32 Hash = KeyFuncs::GetKeyHash(KeyFuncs::GetSetKey(Item));
			AddNew(Hash, MoveTemp(Item));
		}
	}

	FScriptSet Impl;
};

template <typename T, typename KeyFuncsType>
struct TIsRelocatable<TSet<T, KeyFuncsType>> : std::true_type
{
};
