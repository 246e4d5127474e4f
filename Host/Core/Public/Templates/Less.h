#pragma once

#include "Templates/UnrealTemplate.h"

template <typename T = void>
struct TLess
{
	constexpr bool operator()(const T& A, const T& B) const { return A < B; }
};

template <>
struct TLess<void>
{
	template <typename T, typename U>
	constexpr bool operator()(const T& A, const U& B) const
	{
		return A < B;
	}
};

template <typename T = void>
struct TGreater
{
	constexpr bool operator()(const T& A, const T& B) const { return B < A; }
};

template <>
struct TGreater<void>
{
	template <typename T, typename U>
	constexpr bool operator()(const T& A, const U& B) const
	{
		return B < A;
	}
};
