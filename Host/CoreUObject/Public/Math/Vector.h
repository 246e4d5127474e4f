#pragma once

#include "Templates/TypeHash.h"

/** A place or a direction in the world; units are centimetres. */
struct FVector
{
	double X = 0;
	double Y = 0;
	double Z = 0;

	FVector() = default;
	FVector(double InX, double InY, double InZ)
		: X(InX)
		, Y(InY)
		, Z(InZ)
	{
	}
	explicit FVector(double Value)
		: FVector(Value, Value, Value)
	{
	}

	friend FVector operator+(FVector A, FVector B) { return FVector(A.X + B.X, A.Y + B.Y, A.Z + B.Z); }
	friend FVector operator-(FVector A, FVector B) { return FVector(A.X - B.X, A.Y - B.Y, A.Z - B.Z); }
	friend FVector operator*(FVector A, double Scale) { return FVector(A.X * Scale, A.Y * Scale, A.Z * Scale); }
	friend bool operator==(const FVector&, const FVector&) = default;
	friend uint32 GetTypeHash(const FVector& Value)
	{
		return HashCombine(HashCombine(GetTypeHash(Value.X), GetTypeHash(Value.Y)), GetTypeHash(Value.Z));
	}

	static const FVector ZeroVector;
	static const FVector OneVector;
	static const FVector UpVector;
};

inline const FVector FVector::ZeroVector(0, 0, 0);
inline const FVector FVector::OneVector(1, 1, 1);
inline const FVector FVector::UpVector(0, 0, 1);
