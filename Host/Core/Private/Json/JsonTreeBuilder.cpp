#include "Json/JsonTreeBuilder.h"

#include <algorithm>
#include <cstring>

namespace
{
constexpr SIZE_T MinSlabBytes = 1024;
constexpr SIZE_T MaxSlabBytes = 64 * 1024 - 256;
/** For documents whose nodes fill several: the size of some huge pages, less the slab's head. */
constexpr SIZE_T HugeSlabBytes = 4 * 1024 * 1024 - 64;
constexpr SIZE_T HugeDocumentBytes = 4 * 1024 * 1024;

SIZE_T SlabBytesFor(SIZE_T DocumentBytes)
{
	return DocumentBytes < HugeDocumentBytes ? std::clamp(DocumentBytes * 4, MinSlabBytes, MaxSlabBytes)
											 : HugeSlabBytes;
}

SIZE_T RoundUp(SIZE_T Bytes)
{
	return (Bytes + 7) & ~(SIZE_T)7;
}
}

FJsonTreeBuilder::FJsonTreeBuilder(SIZE_T DocumentBytes)
	: SlabBytes(SlabBytesFor(DocumentBytes))
	, Current(FJsonSlab::Create(SlabBytes))
	, Keys(new FJsonKeyTable())
{
}

FJsonTreeBuilder::~FJsonTreeBuilder()
{
	Current->Seal();
	Keys->Release();
}

void* FJsonTreeBuilder::AllocateInNewSlab(SIZE_T Bytes)
{
	Current->Seal();
	Current = FJsonSlab::Create(std::max(SlabBytes, RoundUp(Bytes)));
	return Current->TryAllocate(Bytes);
}

TSharedPtr<FJsonValue> FJsonTreeBuilder::MakeString(std::string_view Utf8)
{
	constexpr SIZE_T NodeBytes = sizeof(TJsonNode<FJsonValue>);
	uint8* Memory = (uint8*)Allocate(NodeBytes + Utf8.size());
	ANSICHAR* Bytes = (ANSICHAR*)Memory + NodeBytes;
	std::memcpy(Bytes, Utf8.data(), Utf8.size());
	return MakeIn(Memory, (const ANSICHAR*)Bytes, (uint32)Utf8.size());
}

TSharedPtr<FJsonObject> FJsonTreeBuilder::MakeObject(int32 Count)
{
	constexpr SIZE_T NodeBytes = sizeof(TJsonNode<FJsonObject>);
	const SIZE_T MemberBytes = sizeof(FJsonMember) * (SIZE_T)Count;
	uint8* Memory = (uint8*)Allocate(NodeBytes + MemberBytes);
	auto* Node = new (Memory) TJsonNode<FJsonObject>(*Current);
	FJsonMembers& Members = Node->Get()->Values;
	Members.Table = Keys;
	Keys->AddOwners(1);
	if (Count > 0)
	{
		Members.Members = (FJsonMember*)(Memory + NodeBytes);
		Members.Max = Count;
		Members.bBorrowed = true;
	}
	return TSharedPtr<FJsonObject>(Node->Get(), Node);
}

void FJsonTreeBuilder::SetMember(FJsonObject& Object, std::string_view Name, TSharedPtr<FJsonValue>&& Value)
{
	const FJsonKey& Key = Keys->Intern(Name, LastKey);
	LastKey = &Key;
	const int32 Place = Object.Values.FindPlace(Key);
	if (Place == INDEX_NONE)
	{
		Object.Values.Append(Key, MoveTemp(Value));
		return;
	}
	Object.Values.SetAt(Place, Key, MoveTemp(Value));
}
