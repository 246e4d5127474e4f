#pragma once

#include "Templates/TypeHash.h"
#include "Templates/UnrealTemplate.h"

#include <tuple>

/** A fixed list of values of several types. A pair names its two `Key` and `Value`. */
template <typename... Types>
struct TTuple
{
	std::tuple<Types...> Items;

	TTuple() = default;
	template <typename... ArgTypes>
	requires(sizeof...(ArgTypes) == sizeof...(Types) && sizeof...(ArgTypes) > 0) explicit TTuple(ArgTypes&&... Args)
		: Items(Forward<ArgTypes>(Args)...)
	{
	}

	template <uint32 Index>
	auto& Get()
	{
		return std::get<Index>(Items);
	}
	template <uint32 Index>
	const auto& Get() const
	{
		return std::get<Index>(Items);
	}
	friend bool operator==(const TTuple& A, const TTuple& B) { return A.Items == B.Items; }
	friend bool operator<(const TTuple& A, const TTuple& B) { return A.Items < B.Items; }
	friend uint32 GetTypeHash(const TTuple& Tuple)
	{
		return std::apply(
			[](const Types&... Each)
			{
				uint32 Hash = 0;
				((Hash = HashCombine(Hash, GetTypeHash(Each))), ...);
				return Hash;
			},
			Tuple.Items);
	}
};

template <typename KeyType, typename ValueType>
struct TTuple<KeyType, ValueType>
{
	KeyType Key;
	ValueType Value;

	TTuple()
		: Key()
		, Value()
	{
	}
	template <typename KeyArg, typename ValueArg>
	TTuple(KeyArg&& InKey, ValueArg&& InValue)
		: Key(Forward<KeyArg>(InKey))
		, Value(Forward<ValueArg>(InValue))
	{
	}

	template <uint32 Index>
	auto& Get()
	{
		if constexpr (Index == 0)
		{
			return Key;
		}
		else
		{
			return Value;
		}
	}
	template <uint32 Index>
	const auto& Get() const
	{
		return const_cast<TTuple*>(this)->template Get<Index>();
	}
	friend bool operator==(const TTuple& A, const TTuple& B) { return A.Key == B.Key && A.Value == B.Value; }
	friend bool operator<(const TTuple& A, const TTuple& B)
	{
		return A.Key < B.Key || (!(B.Key < A.Key) && A.Value < B.Value);
	}
	friend uint32 GetTypeHash(const TTuple& Pair)
	{
		return HashCombine(GetTypeHash(Pair.Key), GetTypeHash(Pair.Value));
	}
};

template <typename KeyType, typename ValueType>
using TPair = TTuple<KeyType, ValueType>;

template <typename KeyType, typename ValueType>
struct TIsRelocatable<TTuple<KeyType, ValueType>>
	: std::bool_constant<TIsRelocatable<KeyType>::value && TIsRelocatable<ValueType>::value>
{
};

template <typename... Types>
TTuple<std::decay_t<Types>...> MakeTuple(Types&&... Args)
{
	return TTuple<std::decay_t<Types>...>(Forward<Types>(Args)...);
}
