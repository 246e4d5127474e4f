#pragma once

#include "Containers/Array.h"
#include "Containers/StringView.h"
#include "Containers/UnrealString.h"

#include <atomic>
#include <cstddef>
#include <string_view>

/** A member name. Immutable once made, so that all objects of one parse can share it. */
struct FJsonKey
{
	/** First, so that a member's reference to its name leads back here. */
	FString Text;
	/** Ignores case. */
	uint32 Hash = 0;
	/** Counts the names of a table from 1; 0 for one that belongs to its only member. */
	uint32 Number = 0;
	/** The first name of the table that differs in case alone, maybe this one; of use to tell doubles from each other.
	 */
	const FJsonKey* Same = nullptr;

	static const FJsonKey& Of(const FString& Name) { return reinterpret_cast<const FJsonKey&>(Name); }
	static FJsonKey* Create(FStringView Text);
	/** Frees the name unless a table holds it. */
	static void Release(const FString& Name);
	bool BelongsToTable() const { return Number != 0; }
};

/**
 * The names that one parse met, each once. Filled by the parse alone, then only read; freed with the last object that
 * was made with it.
 */
class FJsonKeyTable
{
public:
	FJsonKeyTable();

	/** @param Name valid UTF-8. @param Previous the name met before, a hint; may be null. */
	const FJsonKey& Intern(std::string_view Name, const FJsonKey* Previous);

	void AddOwners(int32 Count) { Owners.fetch_add(Count, std::memory_order_relaxed); }
	/** The caller's share ends; the last one frees the table. */
	void Release();

private:
	/** A name with what only the parse needs. */
	struct FEntry
	{
		FJsonKey Key;
		uint64 Utf8Hash = 0;
		const char* Utf8 = nullptr;
		uint32 Utf8Bytes = 0;
		/** The name that followed this one when it was last met. */
		uint32 Next = 0;
	};

	~FJsonKeyTable();
	FEntry& EntryOf(uint32 Number) { return Pages[(int32)((Number - 1) / PageSize)][(Number - 1) % PageSize]; }
	uint32 Add(std::string_view Name, uint64 Utf8Hash);
	void LinkSame(FEntry& Entry);
	void GrowIndexes();

	static constexpr uint32 PageSize = 64;

	std::atomic<int32> Owners{1};
	uint32 Count = 0;
	/** Entries never move: members refer to them. */
	TArray<FEntry*> Pages;
	/** Open addressing, numbers of entries, 0 where free: by the exact bytes, and by the name without its case. */
	TArray<uint32> ByBytes;
	TArray<uint32> ByName;
};
