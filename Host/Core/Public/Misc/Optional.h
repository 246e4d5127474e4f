#pragma once

#include "Misc/AssertionMacros.h"
#include "Templates/TypeHash.h"
#include "Templates/UnrealTemplate.h"

#include <optional>

/** The value of an optional that holds none. */
struct FNullOpt
{
	explicit constexpr FNullOpt(int) {}
};
inline constexpr FNullOpt NullOpt{0};

/** A value or nothing. Reading a value that isn't there is a programmer's mistake. */
template <typename T>
class TOptional
{
public:
	using ElementType = T;

	TOptional() = default;
	TOptional(FNullOpt) {}
	TOptional(const T& InValue)
		: Value(InValue)
	{
	}
	TOptional(T&& InValue)
		: Value(MoveTempIfPossible(InValue))
	{
	}
	template <typename... ArgTypes>
	explicit TOptional(EInPlace, ArgTypes&&... Args)
		: Value(std::in_place, Forward<ArgTypes>(Args)...)
	{
	}

	bool IsSet() const { return Value.has_value(); }
	explicit operator bool() const { return Value.has_value(); }

	T& GetValue()
	{
		check(Value.has_value());
		return *Value;
	}
	const T& GetValue() const
	{
		check(Value.has_value());
		return *Value;
	}
	T& operator*() { return GetValue(); }
	const T& operator*() const { return GetValue(); }
	T* operator->() { return &GetValue(); }
	const T* operator->() const { return &GetValue(); }

	const T& Get(const T& Default) const { return Value ? *Value : Default; }
	T* GetPtrOrNull() { return Value ? &*Value : nullptr; }
	const T* GetPtrOrNull() const { return Value ? &*Value : nullptr; }

	void Reset() { Value.reset(); }

	template <typename... ArgTypes>
	T& Emplace(ArgTypes&&... Args)
	{
		return Value.emplace(Forward<ArgTypes>(Args)...);
	}

	friend bool operator==(const TOptional& A, const TOptional& B) { return A.Value == B.Value; }
	friend bool operator==(const TOptional& A, const T& B) { return A.Value && *A.Value == B; }
	friend bool operator==(const TOptional& A, FNullOpt) { return !A.Value; }
	friend uint32 GetTypeHash(const TOptional& Optional) { return Optional.Value ? GetTypeHash(*Optional.Value) : 0; }

private:
	std::optional<T> Value;
};
