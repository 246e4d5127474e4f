#pragma once

#include "CoreTypes.h"

/** A colour in linear space, from 0 to 1 and above; it starts transparent black. */
struct FLinearColor
{
	float R = 0;
	float G = 0;
	float B = 0;
	float A = 0;

	FLinearColor() = default;
	constexpr FLinearColor(float InR, float InG, float InB, float InA = 1.0f)
		: R(InR)
		, G(InG)
		, B(InB)
		, A(InA)
	{
	}
	friend bool operator==(const FLinearColor&, const FLinearColor&) = default;

	static const FLinearColor White;
	static const FLinearColor Black;
	static const FLinearColor Transparent;
};

inline const FLinearColor FLinearColor::White(1, 1, 1);
inline const FLinearColor FLinearColor::Black(0, 0, 0);
inline const FLinearColor FLinearColor::Transparent(0, 0, 0, 0);

/** A colour of four bytes, in the space of screens. */
struct FColor
{
	uint8 B = 0;
	uint8 G = 0;
	uint8 R = 0;
	uint8 A = 0;

	FColor() = default;
	constexpr FColor(uint8 InR, uint8 InG, uint8 InB, uint8 InA = 255)
		: B(InB)
		, G(InG)
		, R(InR)
		, A(InA)
	{
	}
	friend bool operator==(const FColor&, const FColor&) = default;
};
