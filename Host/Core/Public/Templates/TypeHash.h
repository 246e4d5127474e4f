#pragma once

#include "CoreTypes.h"

#include <cstring>
#include <type_traits>

/** Mixes two 32-bit hashes; the order of the arguments matters. Jenkins' 96-bit mix (burtleburtle.net/bob/hash). */
constexpr uint32 HashCombine(uint32 A, uint32 C)
{
	uint32 B = 0x9e3779b9;
	A += B;
	A -= B;
	A -= C;
	A ^= (C >> 13);
	B -= C;
	B -= A;
	B ^= (A << 8);
	C -= A;
	C -= B;
	C ^= (B >> 13);
	A -= B;
	A -= C;
	A ^= (C >> 12);
	B -= C;
	B -= A;
	B ^= (A << 16);
	C -= A;
	C -= B;
	C ^= (B >> 5);
	A -= B;
	A -= C;
	A ^= (C >> 3);
	B -= C;
	B -= A;
	B ^= (A << 10);
	C -= A;
	C -= B;
	C ^= (B >> 15);
	return C;
}

/** Spreads the bits of a 64-bit value over 32 (the finaliser of MurmurHash3, by Austin Appleby, public domain). */
constexpr uint32 HashBits64(uint64 Value)
{
	Value ^= Value >> 33;
	Value *= 0xff51afd7ed558ccdull;
	Value ^= Value >> 33;
	Value *= 0xc4ceb9fe1a85ec53ull;
	Value ^= Value >> 33;
	return (uint32)Value;
}

template <typename T>
requires std::is_integral_v<T>
constexpr uint32 GetTypeHash(T Value)
{
	return sizeof(T) <= 4 ? (uint32)Value : HashBits64((uint64)Value);
}

template <typename T>
requires std::is_enum_v<T>
constexpr uint32 GetTypeHash(T Value)
{
	return GetTypeHash((std::underlying_type_t<T>)Value);
}

inline uint32 GetTypeHash(double Value)
{
	uint64 Bits = 0;
	const double Canonical = Value == 0 ? 0 : Value;
	std::memcpy(&Bits, &Canonical, sizeof(Bits));
	return HashBits64(Bits);
}

inline uint32 GetTypeHash(float Value)
{
	return GetTypeHash((double)Value);
}

template <typename T>
uint32 GetTypeHash(T* Value)
{
	return HashBits64((uint64)(UPTRINT)Value);
}
