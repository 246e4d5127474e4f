#include "Dom/JsonMembers.h"

#include "Dom/JsonValue.h"
#include "Json/JsonKeys.h"

#include <new>

namespace
{
int32 SlackFor(int32 Count)
{
	return Count < 8 ? 8 : Count + Count / 2;
}
}

FJsonMembers::FJsonMembers(const FJsonMembers& Other)
{
	Reserve(Other.Num());
	Append(Other);
}

FJsonMembers::~FJsonMembers()
{
	Destroy();
}

void FJsonMembers::Destroy()
{
	for (FJsonMember& Member : *this)
	{
		FJsonKey::Release(Member.Key);
		Member.Value.~TSharedPtr();
	}
	FMemory::Free(bBorrowed ? nullptr : Members);
	FMemory::Free(Index);
	if (Table)
	{
		Table->Release();
	}
}

void FJsonMembers::Exchange(FJsonMembers& Other) noexcept
{
	Swap(Members, Other.Members);
	Swap(Used, Other.Used);
	Swap(Max, Other.Max);
	Swap(Index, Other.Index);
	Swap(IndexMask, Other.IndexMask);
	Swap(Removed, Other.Removed);
	Swap(Table, Other.Table);
	Swap(bBorrowed, Other.bBorrowed);
	// Borrowed places lie behind the object that was parsed, and must not outlive it in another.
	if (bBorrowed)
	{
		Grow(Max);
	}
	if (Other.bBorrowed)
	{
		Other.Grow(Other.Max);
	}
}

template <typename MatchType>
int32 FJsonMembers::FindInIndex(uint32 Hash, const MatchType& Matches) const
{
	for (uint32 Slot = Hash & IndexMask; Index[Slot] != 0; Slot = (Slot + 1) & IndexMask)
	{
		const int32 Place = Index[Slot] - 1;
		const FString& Name = Members[Place].Key;
		if (&Name != &RemovedName() && FJsonKey::Of(Name).Hash == Hash && Matches(FJsonKey::Of(Name)))
		{
			return Place;
		}
	}
	return INDEX_NONE;
}

int32 FJsonMembers::FindPlace(FStringView Name, uint32 Hash) const
{
	return FindInIndex(Hash, [&](const FJsonKey& Key) { return Key.Text.Equals(Name, ESearchCase::IgnoreCase); });
}

int32 FJsonMembers::FindPlace(FStringView Name) const
{
	if (Index)
	{
		return FindPlace(Name, GetTypeHash(Name));
	}
	for (int32 Place = 0; Place < Used; ++Place)
	{
		const FString& Key = Members[Place].Key;
		if (Key.Len() == Name.Len() && Key.Equals(Name, ESearchCase::IgnoreCase))
		{
			return Place;
		}
	}
	return INDEX_NONE;
}

/** For names of the table that this object shares, so that comparing addresses is enough. */
int32 FJsonMembers::FindPlace(const FJsonKey& Wanted) const
{
	if (Index)
	{
		return FindInIndex(Wanted.Hash, [&](const FJsonKey& Key) { return Key.Same == Wanted.Same; });
	}
	for (int32 Place = 0; Place < Used; ++Place)
	{
		if (FJsonKey::Of(Members[Place].Key).Same == Wanted.Same)
		{
			return Place;
		}
	}
	return INDEX_NONE;
}

const TSharedPtr<FJsonValue>* FJsonMembers::Find(FStringView Name) const
{
	const int32 Place = FindPlace(Name);
	return Place == INDEX_NONE ? nullptr : &Members[Place].Value;
}

TSharedPtr<FJsonValue> FJsonMembers::FindRef(FStringView Name) const
{
	const TSharedPtr<FJsonValue>* Found = Find(Name);
	return Found ? *Found : TSharedPtr<FJsonValue>();
}

const TSharedPtr<FJsonValue>& FJsonMembers::operator[](FStringView Name) const
{
	const TSharedPtr<FJsonValue>* Found = Find(Name);
	check(Found != nullptr);
	return *Found;
}

TSharedPtr<FJsonValue>& FJsonMembers::Add(FStringView Name, TSharedPtr<FJsonValue> Value)
{
	const int32 Place = FindPlace(Name);
	if (Place == INDEX_NONE)
	{
		return Append(*FJsonKey::Create(Name), MoveTemp(Value)).Value;
	}
	if (!Members[Place].Key.Equals(Name))
	{
		SetAt(Place, *FJsonKey::Create(Name), MoveTemp(Value));
		return Members[Place].Value;
	}
	return Members[Place].Value = MoveTemp(Value);
}

TSharedPtr<FJsonValue>& FJsonMembers::FindOrAdd(FStringView Name)
{
	const int32 Place = FindPlace(Name);
	return Place == INDEX_NONE ? Append(*FJsonKey::Create(Name), nullptr).Value : Members[Place].Value;
}

FJsonMember& FJsonMembers::Append(const FJsonKey& Key, TSharedPtr<FJsonValue>&& Value)
{
	if (Used == Max)
	{
		Grow(SlackFor(Used));
	}
	FJsonMember* Member = new ((void*)(Members + Used)) FJsonMember{Key.Text, MoveTemp(Value)};
	AddToIndex(Used++);
	return *Member;
}

void FJsonMembers::SetAt(int32 Place, const FJsonKey& Key, TSharedPtr<FJsonValue>&& Value)
{
	FJsonMember& Member = Members[Place];
	FJsonKey::Release(Member.Key);
	Member.~FJsonMember();
	new ((void*)&Member) FJsonMember{Key.Text, MoveTemp(Value)};
}

int32 FJsonMembers::Remove(FStringView Name)
{
	const int32 Place = FindPlace(Name);
	if (Place == INDEX_NONE)
	{
		return 0;
	}
	RemoveAt(Place);
	return 1;
}

void FJsonMembers::RemoveAt(int32 Place)
{
	FJsonMember& Member = Members[Place];
	FJsonKey::Release(Member.Key);
	Member.~FJsonMember();
	if (!Index)
	{
		const SIZE_T Behind = (SIZE_T)(--Used - Place);
		FMemory::Memmove((void*)(Members + Place), (void*)(Members + Place + 1), sizeof(FJsonMember) * Behind);
		return;
	}
	// The place stays taken for the index's sake until enough of them are gone to pay for moving the rest.
	new ((void*)&Member) FJsonMember{RemovedName(), nullptr};
	if (++Removed * 2 > Used)
	{
		Compact();
	}
}

void FJsonMembers::Append(const FJsonMembers& Other)
{
	check(this != &Other);
	for (const FJsonMember& Member : Other)
	{
		Add(Member.Key, Member.Value);
	}
}

void FJsonMembers::Reserve(int32 Count)
{
	if (Count > Max)
	{
		Grow(Count);
	}
}

void FJsonMembers::Empty(int32 Slack)
{
	*this = FJsonMembers();
	Reserve(Slack);
}

void FJsonMembers::Grow(int32 NewMax)
{
	FJsonMember* Grown = (FJsonMember*)FMemory::Malloc(sizeof(FJsonMember) * (SIZE_T)NewMax);
	FMemory::Memcpy((void*)Grown, (const void*)Members, sizeof(FJsonMember) * (SIZE_T)Used);
	FMemory::Free(bBorrowed ? nullptr : Members);
	Members = Grown;
	Max = NewMax;
	bBorrowed = false;
}

/** Closes the gaps of removed members. */
void FJsonMembers::Compact()
{
	int32 Kept = 0;
	for (int32 Place = 0; Place < Used; ++Place)
	{
		if (&Members[Place].Key != &RemovedName())
		{
			FMemory::Memmove((void*)(Members + Kept++), (void*)(Members + Place), sizeof(FJsonMember));
		}
	}
	Used = Kept;
	Removed = 0;
	RebuildIndex(Used);
}

void FJsonMembers::AddToIndex(int32 Place)
{
	if (!Index || (uint32)(Place + 1) * 2 > IndexMask)
	{
		if (Used > IndexThreshold)
		{
			RebuildIndex(Max);
		}
		return;
	}
	if (&Members[Place].Key == &RemovedName())
	{
		return;
	}
	uint32 Slot = FJsonKey::Of(Members[Place].Key).Hash & IndexMask;
	while (Index[Slot] != 0)
	{
		Slot = (Slot + 1) & IndexMask;
	}
	Index[Slot] = Place + 1;
}

void FJsonMembers::RebuildIndex(int32 ForCount)
{
	FMemory::Free(Index);
	Index = nullptr;
	if (ForCount <= IndexThreshold)
	{
		return;
	}
	uint32 Size = 64;
	while (Size < (uint32)ForCount * 2 + 2)
	{
		Size *= 2;
	}
	IndexMask = Size - 1;
	Index = (int32*)FMemory::Malloc(sizeof(int32) * Size);
	FMemory::Memzero(Index, sizeof(int32) * Size);
	for (int32 Place = 0; Place < Used; ++Place)
	{
		AddToIndex(Place);
	}
}

int32 FJsonMembers::GetKeys(TArray<FString>& OutKeys) const
{
	OutKeys.Reset(Num());
	for (const FJsonMember& Member : *this)
	{
		OutKeys.Add(Member.Key);
	}
	return OutKeys.Num();
}

void FJsonMembers::GenerateValueArray(TArray<TSharedPtr<FJsonValue>>& OutValues) const
{
	OutValues.Reset(Num());
	for (const FJsonMember& Member : *this)
	{
		OutValues.Add(Member.Value);
	}
}
