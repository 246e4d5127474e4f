#pragma once

#include "CoreTypes.h"

#include <concepts>
#include <type_traits>
#include <utility>

template <typename T>
constexpr std::remove_reference_t<T>&& MoveTemp(T&& Value) noexcept
{
	static_assert(std::is_lvalue_reference_v<T>, "MoveTemp called on an rvalue");
	static_assert(!std::is_const_v<std::remove_reference_t<T>>, "MoveTemp called on a const object would copy");
	return static_cast<std::remove_reference_t<T>&&>(Value);
}

template <typename T>
constexpr std::remove_reference_t<T>&& MoveTempIfPossible(T&& Value) noexcept
{
	return static_cast<std::remove_reference_t<T>&&>(Value);
}

template <typename T>
constexpr T&& Forward(std::remove_reference_t<T>& Value) noexcept
{
	return static_cast<T&&>(Value);
}

template <typename T>
constexpr T&& Forward(std::remove_reference_t<T>&& Value) noexcept
{
	return static_cast<T&&>(Value);
}

template <typename T>
constexpr T CopyTemp(const T& Value)
{
	return Value;
}

template <typename T>
constexpr void Swap(T& A, T& B)
{
	T Temporary = MoveTemp(A);
	A = MoveTemp(B);
	B = MoveTemp(Temporary);
}

template <typename T, typename U = T>
constexpr T Exchange(T& Target, U&& NewValue)
{
	T Old = MoveTemp(Target);
	Target = Forward<U>(NewValue);
	return Old;
}

/** True for types whose objects may be moved to another address by copying their bytes and forgetting the original. */
template <typename T>
struct TIsRelocatable : std::bool_constant<std::is_trivially_copyable_v<T>>
{
};

/** Sets a variable for the life of the guard and puts the old value back. */
template <typename T, typename U = T>
class TGuardValue
{
public:
	TGuardValue(T& InVariable, const U& NewValue)
		: Variable(InVariable)
		, Original(InVariable)
	{
		Variable = NewValue;
	}
	~TGuardValue() { Variable = Original; }
	TGuardValue(const TGuardValue&) = delete;
	TGuardValue& operator=(const TGuardValue&) = delete;

private:
	T& Variable;
	T Original;
};

/** Base of classes that are not copied. */
class FNoncopyable
{
protected:
	FNoncopyable() = default;
	~FNoncopyable() = default;

private:
	FNoncopyable(const FNoncopyable&) = delete;
	FNoncopyable& operator=(const FNoncopyable&) = delete;
};

template <typename T, SIZE_T N>
constexpr int32 UE_ARRAY_COUNT_OF(const T (&)[N])
{
	return static_cast<int32>(N);
}
#define UE_ARRAY_COUNT(Array) UE_ARRAY_COUNT_OF(Array)

/** Rounds Value up to a multiple of Alignment, a power of two. */
template <typename T>
constexpr T Align(T Value, uint64 Alignment)
{
	return (T)(((uint64)Value + Alignment - 1) & ~(Alignment - 1));
}

#define ENUM_CLASS_FLAGS(Enum)                                                            \
	inline constexpr Enum operator|(Enum A, Enum B)                                       \
	{                                                                                     \
		return (Enum)((std::underlying_type_t<Enum>)A | (std::underlying_type_t<Enum>)B); \
	}                                                                                     \
	inline constexpr Enum operator&(Enum A, Enum B)                                       \
	{                                                                                     \
		return (Enum)((std::underlying_type_t<Enum>)A & (std::underlying_type_t<Enum>)B); \
	}                                                                                     \
	inline constexpr Enum operator^(Enum A, Enum B)                                       \
	{                                                                                     \
		return (Enum)((std::underlying_type_t<Enum>)A ^ (std::underlying_type_t<Enum>)B); \
	}                                                                                     \
	inline constexpr Enum operator~(Enum A)                                               \
	{                                                                                     \
		return (Enum) ~(std::underlying_type_t<Enum>)A;                                   \
	}                                                                                     \
	inline constexpr bool operator!(Enum A)                                               \
	{                                                                                     \
		return !(std::underlying_type_t<Enum>)A;                                          \
	}                                                                                     \
	inline Enum& operator|=(Enum& A, Enum B)                                              \
	{                                                                                     \
		return A = A | B;                                                                 \
	}                                                                                     \
	inline Enum& operator&=(Enum& A, Enum B)                                              \
	{                                                                                     \
		return A = A & B;                                                                 \
	}                                                                                     \
	inline Enum& operator^=(Enum& A, Enum B)                                              \
	{                                                                                     \
		return A = A ^ B;                                                                 \
	}

template <typename Enum>
constexpr bool EnumHasAnyFlags(Enum Flags, Enum Contains)
{
	return ((std::underlying_type_t<Enum>)Flags & (std::underlying_type_t<Enum>)Contains) != 0;
}

template <typename Enum>
constexpr bool EnumHasAllFlags(Enum Flags, Enum Contains)
{
	return ((std::underlying_type_t<Enum>)Flags & (std::underlying_type_t<Enum>)Contains) ==
		(std::underlying_type_t<Enum>)Contains;
}

template <typename Enum>
constexpr void EnumAddFlags(Enum& Flags, Enum Added)
{
	Flags = (Enum)((std::underlying_type_t<Enum>)Flags | (std::underlying_type_t<Enum>)Added);
}

template <typename Enum>
constexpr void EnumRemoveFlags(Enum& Flags, Enum Removed)
{
	Flags = (Enum)((std::underlying_type_t<Enum>)Flags & ~(std::underlying_type_t<Enum>)Removed);
}
