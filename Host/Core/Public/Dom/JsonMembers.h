#pragma once

#include "Containers/Array.h"
#include "Containers/StringView.h"
#include "Containers/UnrealString.h"
#include "Templates/SharedPointer.h"
#include "Templates/Tuple.h"

class FJsonKeyTable;
class FJsonValue;
struct FJsonKey;

/** One name of an object with its value. */
struct FJsonMember
{
	const FString& Key;
	TSharedPtr<FJsonValue> Value;

	operator TPair<FString, TSharedPtr<FJsonValue>>() const { return {Key, Value}; }
};

/**
 * The members of a JSON object: a map from names to values that keeps the order in which names were first set.
 *
 * It works as the host's `TMap<FString, TSharedPtr<FJsonValue>>` does: names that differ only in case are one name.
 * Setting a name again keeps its place and takes over the new value and spelling. Adding invalidates iterators and
 * references; removing invalidates those to the removed member and behind it. One thread at a time may change it.
 */
class FJsonMembers
{
	/** Stands in the place of a removed member until the next compaction. Known by its address. */
	static const FString& RemovedName()
	{
		static const FString Name;
		return Name;
	}

	template <typename MemberType>
	class TIterator
	{
	public:
		TIterator(MemberType* InAt, MemberType* InEnd)
			: At(InAt)
			, End(InEnd)
		{
			SkipRemoved();
		}
		MemberType& operator*() const { return *At; }
		MemberType* operator->() const { return At; }
		const FString& Key() const { return At->Key; }
		auto& Value() const { return At->Value; }
		explicit operator bool() const { return At != End; }
		TIterator& operator++()
		{
			++At;
			SkipRemoved();
			return *this;
		}
		bool operator==(const TIterator& Other) const { return At == Other.At; }

	private:
		void SkipRemoved()
		{
			while (At != End && &At->Key == &RemovedName())
			{
				++At;
			}
		}

		MemberType* At;
		MemberType* End;
	};

public:
	FJsonMembers() = default;
	FJsonMembers(const FJsonMembers& Other);
	FJsonMembers(FJsonMembers&& Other) noexcept { Exchange(Other); }
	FJsonMembers& operator=(FJsonMembers Other) noexcept
	{
		Exchange(Other);
		return *this;
	}
	~FJsonMembers();

	int32 Num() const { return Used - Removed; }
	bool IsEmpty() const { return Num() == 0; }
	bool Contains(FStringView Name) const { return Find(Name) != nullptr; }
	/** @return the value's place, or null when the name isn't there. */
	const TSharedPtr<FJsonValue>* Find(FStringView Name) const;
	TSharedPtr<FJsonValue>* Find(FStringView Name)
	{
		return const_cast<TSharedPtr<FJsonValue>*>(static_cast<const FJsonMembers*>(this)->Find(Name));
	}
	/** @return the value, or a null pointer when the name isn't there. */
	TSharedPtr<FJsonValue> FindRef(FStringView Name) const;
	/** The name must be there. */
	const TSharedPtr<FJsonValue>& operator[](FStringView Name) const;
	TSharedPtr<FJsonValue>& operator[](FStringView Name)
	{
		return const_cast<TSharedPtr<FJsonValue>&>(static_cast<const FJsonMembers*>(this)->operator[](Name));
	}

	TSharedPtr<FJsonValue>& Add(FStringView Name, TSharedPtr<FJsonValue> Value);
	TSharedPtr<FJsonValue>& Emplace(FStringView Name, TSharedPtr<FJsonValue> Value)
	{
		return Add(Name, MoveTemp(Value));
	}
	/** The value's place, made with a null pointer when the name isn't there. */
	TSharedPtr<FJsonValue>& FindOrAdd(FStringView Name);
	/** @return the number of members removed, 0 or 1. */
	int32 Remove(FStringView Name);
	/** Adds all of the other's members. */
	void Append(const FJsonMembers& Other);
	void Reserve(int32 Count);
	void Empty(int32 Slack = 0);
	void Reset() { Empty(Num()); }

	/** Fills the array with the names, in order. @return their number. */
	int32 GetKeys(TArray<FString>& OutKeys) const;
	void GenerateKeyArray(TArray<FString>& OutKeys) const { GetKeys(OutKeys); }
	void GenerateValueArray(TArray<TSharedPtr<FJsonValue>>& OutValues) const;

	TIterator<FJsonMember> begin() { return {Members, Members + Used}; }
	TIterator<FJsonMember> end() { return {Members + Used, Members + Used}; }
	TIterator<const FJsonMember> begin() const { return {Members, Members + Used}; }
	TIterator<const FJsonMember> end() const { return {Members + Used, Members + Used}; }
	TIterator<FJsonMember> CreateIterator() { return begin(); }
	TIterator<const FJsonMember> CreateConstIterator() const { return begin(); }

private:
	friend class FJsonTreeBuilder;

	/** From so many members on, an index finds names; below, looking at each is quicker. */
	static constexpr int32 IndexThreshold = 16;

	void Exchange(FJsonMembers& Other) noexcept;
	int32 FindPlace(FStringView Name, uint32 Hash) const;
	int32 FindPlace(FStringView Name) const;
	int32 FindPlace(const FJsonKey& Key) const;
	template <typename MatchType>
	int32 FindInIndex(uint32 Hash, const MatchType& Matches) const;
	FJsonMember& Append(const FJsonKey& Key, TSharedPtr<FJsonValue>&& Value);
	void SetAt(int32 Place, const FJsonKey& Key, TSharedPtr<FJsonValue>&& Value);
	void RemoveAt(int32 Place);
	void Grow(int32 NewMax);
	void Compact();
	void AddToIndex(int32 Place);
	void RebuildIndex(int32 ForCount);
	void Destroy();

	/** Used places in order, removed ones among them. On the heap unless bBorrowed. */
	FJsonMember* Members = nullptr;
	int32 Used = 0;
	int32 Max = 0;
	/** Open-addressing table of places + 1, 0 where free; null while there are few members. */
	int32* Index = nullptr;
	uint32 IndexMask = 0;
	int32 Removed = 0;
	/** Keeps the names that a parse made alive; null when all names are this object's own. */
	FJsonKeyTable* Table = nullptr;
	/** The places lie in the memory of the parse that made this object. */
	bool bBorrowed = false;
};
