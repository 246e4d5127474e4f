#pragma once

#include "Containers/Set.h"
#include "Containers/UnrealString.h"
#include "Templates/Tuple.h"

/** How a map finds its pairs. Text keys hash and compare without regard to case. */
template <typename KeyT, typename ValueT>
struct TDefaultMapKeyFuncs
{
	using KeyType = KeyT;

	static const KeyT& GetSetKey(const TPair<KeyT, ValueT>& Element) { return Element.Key; }
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

/** Key functions for text keys that differ by case. */
template <typename ValueT>
struct TCaseSensitiveMapKeyFuncs
{
	using KeyType = FString;

	static const FString& GetSetKey(const TPair<FString, ValueT>& Element) { return Element.Key; }
	static bool Matches(FStringView Left, FStringView Right) { return Left.Equals(Right); }
	static uint32 GetKeyHash(FStringView Key) { return StringSearch::HashCaseSensitive(Key.GetData(), Key.Len()); }
};

/**
 * Values found by key. A walk shows the pairs in the order of insertion as long as nothing was removed; a freed place
 * is the next to be used. Adding may move the pairs, so no pointer to a value outlives an addition. Adding a key that
 * is there replaces its value and keeps its place.
 */
template <typename KeyT, typename ValueT, typename KeyFuncsType = TDefaultMapKeyFuncs<KeyT, ValueT>>
class TMap
{
public:
	using KeyType = KeyT;
	using ValueType = ValueT;
	using ElementType = TPair<KeyT, ValueT>;
	using SetType = TSet<ElementType, KeyFuncsType>;

	TMap() = default;
	TMap(std::initializer_list<ElementType> List)
	{
		for (const ElementType& Pair : List)
		{
			Add(Pair.Key, Pair.Value);
		}
	}

	int32 Num() const { return Pairs.Num(); }
	bool IsEmpty() const { return Pairs.IsEmpty(); }
	void Reserve(int32 Count) { Pairs.Reserve(Count); }
	void Reset() { Pairs.Reset(); }
	void Empty(int32 Slack = 0) { Pairs.Empty(Slack); }
	SIZE_T GetAllocatedSize() const { return Pairs.GetAllocatedSize(); }

	template <typename KeyArg = KeyT, typename ValueArg = ValueT>
	ValueT& Add(KeyArg&& Key, ValueArg&& Value)
	{
		return Emplace(Forward<KeyArg>(Key), Forward<ValueArg>(Value));
	}
	template <typename KeyArg = KeyT>
	ValueT& Add(KeyArg&& Key)
	{
		return Emplace(Forward<KeyArg>(Key), ValueT());
	}
	ValueT& Add(const ElementType& Pair) { return Emplace(Pair.Key, Pair.Value); }
	template <typename KeyArg, typename ValueArg>
	ValueT& Emplace(KeyArg&& Key, ValueArg&& Value)
	{
		return Pairs[Pairs.Emplace(ElementType(Forward<KeyArg>(Key), Forward<ValueArg>(Value)))].Value;
	}
	void Append(const TMap& Other)
	{
		for (const ElementType& Pair : Other)
		{
			Add(Pair.Key, Pair.Value);
		}
	}
	TMap& operator+=(const TMap& Other)
	{
		Append(Other);
		return *this;
	}

	/** Look-ups take any type that hashes and compares as the key does, such as a view for a text. */
	template <typename ComparableType>
	ValueT* Find(const ComparableType& Key)
	{
		const FSetElementId Id = Pairs.FindId(Key);
		return Id.IsValidId() ? &Pairs[Id].Value : nullptr;
	}
	template <typename ComparableType>
	const ValueT* Find(const ComparableType& Key) const
	{
		return const_cast<TMap*>(this)->Find(Key);
	}
	/** A copy of the value, or a default one. */
	template <typename ComparableType>
	ValueT FindRef(const ComparableType& Key, const ValueT& Default = ValueT()) const
	{
		const ValueT* Found = Find(Key);
		return Found ? *Found : Default;
	}
	template <typename ComparableType>
	ValueT& FindChecked(const ComparableType& Key)
	{
		ValueT* Found = Find(Key);
		check(Found != nullptr);
		return *Found;
	}
	template <typename ComparableType>
	const ValueT& FindChecked(const ComparableType& Key) const
	{
		return const_cast<TMap*>(this)->FindChecked(Key);
	}
	template <typename ComparableType>
	ValueT& operator[](const ComparableType& Key)
	{
		return FindChecked(Key);
	}
	template <typename ComparableType>
	const ValueT& operator[](const ComparableType& Key) const
	{
		return FindChecked(Key);
	}
	ValueT& FindOrAdd(const KeyT& Key) { return FindOrEmplace(Key, ValueT()); }
	ValueT& FindOrAdd(const KeyT& Key, const ValueT& Value) { return FindOrEmplace(Key, Value); }
	template <typename ComparableType>
	const KeyT* FindKey(const ComparableType& Value) const
	{
		for (const ElementType& Pair : Pairs)
		{
			if (Pair.Value == Value)
			{
				return &Pair.Key;
			}
		}
		return nullptr;
	}
	template <typename ComparableType>
	bool Contains(const ComparableType& Key) const
	{
		return Pairs.FindId(Key).IsValidId();
	}

	template <typename ComparableType>
	int32 Remove(const ComparableType& Key)
	{
		const FSetElementId Id = Pairs.FindId(Key);
		if (!Id.IsValidId())
		{
			return 0;
		}
		Pairs.Remove(Id);
		return 1;
	}
	/** Moves the value out and removes the pair. @return false and no change without the key. */
	template <typename ComparableType>
	bool RemoveAndCopyValue(const ComparableType& Key, ValueT& OutValue)
	{
		const FSetElementId Id = Pairs.FindId(Key);
		if (!Id.IsValidId())
		{
			return false;
		}
		OutValue = MoveTemp(Pairs[Id].Value);
		Pairs.Remove(Id);
		return true;
	}

	int32 GetKeys(TArray<KeyT>& OutKeys) const
	{
		GenerateKeyArray(OutKeys);
		return OutKeys.Num();
	}
	void GenerateKeyArray(TArray<KeyT>& OutKeys) const
	{
		OutKeys.Reset(Num());
		for (const ElementType& Pair : Pairs)
		{
			OutKeys.Add(Pair.Key);
		}
	}
	void GenerateValueArray(TArray<ValueT>& OutValues) const
	{
		OutValues.Reset(Num());
		for (const ElementType& Pair : Pairs)
		{
			OutValues.Add(Pair.Value);
		}
	}
	template <typename PredicateType>
	void KeySort(const PredicateType& Predicate)
	{
		Pairs.Sort([&Predicate](const ElementType& A, const ElementType& B) { return Predicate(A.Key, B.Key); });
	}
	template <typename PredicateType>
	void ValueSort(const PredicateType& Predicate)
	{
		Pairs.Sort([&Predicate](const ElementType& A, const ElementType& B) { return Predicate(A.Value, B.Value); });
	}
	template <typename PredicateType>
	void ValueStableSort(const PredicateType& Predicate)
	{
		Pairs.StableSort(
			[&Predicate](const ElementType& A, const ElementType& B) { return Predicate(A.Value, B.Value); });
	}
	void CompactStable() { Pairs.CompactStable(); }

	/** The same keys with equal values, in any order. */
	bool OrderIndependentCompareEqual(const TMap& Other) const
	{
		if (Num() != Other.Num())
		{
			return false;
		}
		for (const ElementType& Pair : Pairs)
		{
			const ValueT* Found = Other.Find(Pair.Key);
			if (!Found || !(*Found == Pair.Value))
			{
				return false;
			}
		}
		return true;
	}

	template <typename IteratorType>
	class TPairIterator : public IteratorType
	{
	public:
		using IteratorType::IteratorType;
		TPairIterator(const IteratorType& Base)
			: IteratorType(Base)
		{
		}
		const KeyT& Key() const { return (**this).Key; }
		auto& Value() const { return (**this).Value; }
	};
	using TIterator = TPairIterator<typename SetType::TIterator>;
	using TConstIterator = TPairIterator<typename SetType::TConstIterator>;

	TIterator CreateIterator() { return TIterator(Pairs.CreateIterator()); }
	TConstIterator CreateConstIterator() const { return TConstIterator(Pairs.CreateConstIterator()); }
	auto begin() { return Pairs.begin(); }
	auto end() { return Pairs.end(); }
	auto begin() const { return Pairs.begin(); }
	auto end() const { return Pairs.end(); }

private:
	template <typename ValueArg>
	ValueT& FindOrEmplace(const KeyT& Key, ValueArg&& Value)
	{
		const uint32 Hash = KeyFuncsType::GetKeyHash(Key);
		const FSetElementId Id = Pairs.FindIdByHash(Hash, Key);
		if (Id.IsValidId())
		{
			return Pairs[Id].Value;
		}
		ElementType Pair(Key, Forward<ValueArg>(Value));
		return Pairs[Pairs.AddNew(Hash, MoveTemp(Pair))].Value;
	}

	SetType Pairs;
};

template <typename KeyT, typename ValueT, typename KeyFuncsType>
struct TIsRelocatable<TMap<KeyT, ValueT, KeyFuncsType>> : std::true_type
{
};
