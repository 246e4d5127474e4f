#include "Json/JsonKeys.h"

#include <cstring>
#include <new>
#include <type_traits>

static_assert(std::is_standard_layout_v<FJsonKey> && offsetof(FJsonKey, Text) == 0,
	"a reference to a member's name is a reference to its key");

namespace
{
constexpr int32 FirstIndexSize = 64;

uint64 LoadWord(const char* Bytes, SIZE_T Count)
{
	uint64 Word = 0;
	std::memcpy(&Word, Bytes, Count);
	return Word;
}

/** Differs from run to run with the place that the program was loaded to, so that no document can aim at collisions. */
uint64 HashOf(std::string_view Bytes)
{
	static const char Anchor = 0;
	uint64 Hash = (uint64)(UPTRINT)&Anchor ^ (Bytes.size() * 0x9e3779b97f4a7c15ull);
	for (SIZE_T At = 0; At < Bytes.size(); At += 8)
	{
		const SIZE_T Left = Bytes.size() - At;
		const uint64 Word = LoadWord(Bytes.data() + At, Left < 8 ? Left : 8);
		const unsigned __int128 Product = (unsigned __int128)(Hash ^ Word) * 0xe7037ed1a0b428dbull;
		Hash = (uint64)Product ^ (uint64)(Product >> 64);
	}
	return Hash;
}
}

FJsonKey* FJsonKey::Create(FStringView Text)
{
	FJsonKey* Key = new FJsonKey{FString(Text), GetTypeHash(Text), 0, nullptr};
	Key->Same = Key;
	return Key;
}

void FJsonKey::Release(const FString& Name)
{
	const FJsonKey& Key = Of(Name);
	if (!Key.BelongsToTable())
	{
		delete &Key;
	}
}

FJsonKeyTable::FJsonKeyTable()
{
	ByBytes.SetNumZeroed(FirstIndexSize);
	ByName.SetNumZeroed(FirstIndexSize);
}

FJsonKeyTable::~FJsonKeyTable()
{
	for (uint32 Number = 1; Number <= Count; ++Number)
	{
		delete[] EntryOf(Number).Utf8;
	}
	for (FEntry* Page : Pages)
	{
		delete[] Page;
	}
}

void FJsonKeyTable::Release()
{
	if (Owners.fetch_sub(1, std::memory_order_acq_rel) == 1)
	{
		delete this;
	}
}

const FJsonKey& FJsonKeyTable::Intern(std::string_view Name, const FJsonKey* Previous)
{
	FEntry* Before = Previous ? &EntryOf(Previous->Number) : nullptr;
	if (Before && Before->Next != 0)
	{
		const FEntry& Likely = EntryOf(Before->Next);
		if (std::string_view(Likely.Utf8, Likely.Utf8Bytes) == Name)
		{
			return Likely.Key;
		}
	}
	const uint64 Hash = HashOf(Name);
	const uint32 Mask = (uint32)ByBytes.Num() - 1;
	uint32 Number = 0;
	for (uint32 Slot = (uint32)Hash & Mask; (Number = ByBytes.GetData()[Slot]) != 0; Slot = (Slot + 1) & Mask)
	{
		const FEntry& Entry = EntryOf(Number);
		if (Entry.Utf8Hash == Hash && std::string_view(Entry.Utf8, Entry.Utf8Bytes) == Name)
		{
			break;
		}
	}
	Number = Number ? Number : Add(Name, Hash);
	if (Before)
	{
		Before->Next = Number;
	}
	return EntryOf(Number).Key;
}

uint32 FJsonKeyTable::Add(std::string_view Name, uint64 Utf8Hash)
{
	if (Count % PageSize == 0)
	{
		Pages.Add(new FEntry[PageSize]);
	}
	const uint32 Number = ++Count;
	FEntry& Entry = EntryOf(Number);
	Entry.Key.Text = FString::FromUtf8(Name.data(), (int64)Name.size());
	Entry.Key.Hash = GetTypeHash(Entry.Key.Text);
	Entry.Key.Number = Number;
	Entry.Utf8Hash = Utf8Hash;
	char* Bytes = new char[Name.size()];
	std::memcpy(Bytes, Name.data(), Name.size());
	Entry.Utf8 = Bytes;
	Entry.Utf8Bytes = (uint32)Name.size();
	if (Count * 2 > (uint32)ByBytes.Num())
	{
		GrowIndexes();
		return Number;
	}
	const uint32 Mask = (uint32)ByBytes.Num() - 1;
	uint32 Slot = (uint32)Utf8Hash & Mask;
	while (ByBytes.GetData()[Slot] != 0)
	{
		Slot = (Slot + 1) & Mask;
	}
	ByBytes.GetData()[Slot] = Number;
	LinkSame(Entry);
	return Number;
}

/** Finds the first name that differs in case alone, or makes the entry that. */
void FJsonKeyTable::LinkSame(FEntry& Entry)
{
	const uint32 Mask = (uint32)ByName.Num() - 1;
	uint32 Slot = Entry.Key.Hash & Mask;
	for (uint32 Number; (Number = ByName.GetData()[Slot]) != 0; Slot = (Slot + 1) & Mask)
	{
		const FJsonKey& Other = EntryOf(Number).Key;
		if (Other.Hash == Entry.Key.Hash && Other.Text == Entry.Key.Text)
		{
			Entry.Key.Same = &Other;
			return;
		}
	}
	ByName.GetData()[Slot] = Entry.Key.Number;
	Entry.Key.Same = &Entry.Key;
}

void FJsonKeyTable::GrowIndexes()
{
	const int32 NewSize = ByBytes.Num() * 4;
	const uint32 Mask = (uint32)NewSize - 1;
	ByBytes.Reset();
	ByBytes.SetNumZeroed(NewSize);
	ByName.Reset();
	ByName.SetNumZeroed(NewSize);
	for (uint32 Number = 1; Number <= Count; ++Number)
	{
		FEntry& Entry = EntryOf(Number);
		uint32 Slot = (uint32)Entry.Utf8Hash & Mask;
		while (ByBytes.GetData()[Slot] != 0)
		{
			Slot = (Slot + 1) & Mask;
		}
		ByBytes.GetData()[Slot] = Number;
		LinkSame(Entry);
	}
}
