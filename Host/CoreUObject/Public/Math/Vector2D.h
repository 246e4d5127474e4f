#pragma once

#include "Templates/TypeHash.h"

/** A place or a direction in a plane. */
struct FVector2D
{
	double X = 0;
	double Y = 0;

	FVector2D() = default;
	FVector2D(double InX, double InY)
		: X(InX)
		, Y(InY)
	{
	}

	friend FVector2D operator+(FVector2D A, FVector2D B) { return FVector2D(A.X + B.X, A.Y + B.Y); }
	friend FVector2D operator-(FVector2D A, FVector2D B) { return FVector2D(A.X - B.X, A.Y - B.Y); }
	friend FVector2D operator*(FVector2D A, double Scale) { return FVector2D(A.X * Scale, A.Y * Scale); }
	friend bool operator==(const FVector2D&, const FVector2D&) = default;
	friend uint32 GetTypeHash(const FVector2D& Value)
	{
		return HashCombine(GetTypeHash(Value.X), GetTypeHash(Value.Y));
	}

	static const FVector2D ZeroVector;
};

inline const FVector2D FVector2D::ZeroVector(0, 0);
