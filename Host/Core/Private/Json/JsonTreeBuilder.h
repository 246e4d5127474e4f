#pragma once

#include "Containers/Array.h"
#include "Dom/JsonObject.h"
#include "Json/JsonKeys.h"
#include "Json/JsonSlab.h"

#include <string_view>

/** Makes the values of one parse, in memory that they share. All texts given are valid UTF-8. */
class FJsonTreeBuilder : FNoncopyable
{
public:
	/** @param DocumentBytes the size of what is parsed, from which the slabs take theirs. */
	explicit FJsonTreeBuilder(SIZE_T DocumentBytes);
	~FJsonTreeBuilder();

	TSharedPtr<FJsonValue> MakeString(std::string_view Utf8);
	/** A number, a Boolean, EJson::Null, an array, or an object. */
	template <typename ArgType>
	TSharedPtr<FJsonValue> Make(ArgType&& Arg)
	{
		return MakeIn(Allocate(sizeof(TJsonNode<FJsonValue>)), Forward<ArgType>(Arg));
	}
	/** An empty object with room for so many members. */
	TSharedPtr<FJsonObject> MakeObject(int32 Count);
	/** Sets a member of an object from MakeObject; a name set before is set again. */
	void SetMember(FJsonObject& Object, std::string_view Name, TSharedPtr<FJsonValue>&& Value);

private:
	template <typename... ArgTypes>
	TSharedPtr<FJsonValue> MakeIn(void* Memory, ArgTypes&&... Args)
	{
		auto* Node = new (Memory) TJsonNode<FJsonValue>(*Current, Forward<ArgTypes>(Args)...);
		return TSharedPtr<FJsonValue>(Node->Get(), Node);
	}
	/** Memory of `Current`, which becomes another slab when needed. */
	void* Allocate(SIZE_T Bytes)
	{
		void* Memory = Current->TryAllocate(Bytes);
		return LIKELY(Memory != nullptr) ? Memory : AllocateInNewSlab(Bytes);
	}
	void* AllocateInNewSlab(SIZE_T Bytes);

	SIZE_T SlabBytes;
	FJsonSlab* Current;
	FJsonKeyTable* Keys;
	/** The name set last: names mostly follow each other in the same order again. */
	const FJsonKey* LastKey = nullptr;
};
