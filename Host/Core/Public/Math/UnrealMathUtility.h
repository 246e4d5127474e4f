#pragma once

#include "CoreTypes.h"

#include <algorithm>
#include <cmath>
#include <type_traits>

#define UE_PI (3.1415926535897932)
#define UE_SMALL_NUMBER (1.e-8f)
#define UE_KINDA_SMALL_NUMBER (1.e-4f)
#define KINDA_SMALL_NUMBER UE_KINDA_SMALL_NUMBER
#define SMALL_NUMBER UE_SMALL_NUMBER

/** Everyday mathematics. Any thread, but for `Rand` and its kin, which share one sequence a thread. */
struct FMath
{
	template <typename A, typename B>
	static constexpr std::common_type_t<A, B> Min(A Left, B Right)
	{
		return Right < Left ? Right : Left;
	}
	template <typename A, typename B>
	static constexpr std::common_type_t<A, B> Max(A Left, B Right)
	{
		return Left < Right ? Right : Left;
	}
	template <typename A, typename B, typename C>
	static constexpr auto Min3(A First, B Second, C Third)
	{
		return Min(Min(First, Second), Third);
	}
	template <typename A, typename B, typename C>
	static constexpr auto Max3(A First, B Second, C Third)
	{
		return Max(Max(First, Second), Third);
	}
	template <typename T, typename A, typename B>
	static constexpr auto Clamp(T Value, A Low, B High)
	{
		return Min(Max(Value, Low), High);
	}
	template <typename T>
	static constexpr T Abs(T Value)
	{
		return Value < T(0) ? -Value : Value;
	}
	template <typename T>
	static constexpr T Sign(T Value)
	{
		return T((Value > T(0)) - (Value < T(0)));
	}
	template <typename T>
	static constexpr T Square(T Value)
	{
		return Value * Value;
	}
	template <typename T>
	static constexpr T DivideAndRoundUp(T Dividend, T Divisor)
	{
		return (Dividend + Divisor - 1) / Divisor;
	}
	template <typename T, typename U>
	static constexpr auto Lerp(const T& From, const T& To, U Alpha)
	{
		return From + (To - From) * Alpha;
	}

	/** Halves round away from minus infinity, as `floor(Value + 0.5)` does. Out of range is the nearest limit. */
	static int32 RoundToInt(double Value) { return (int32)Limit(std::floor(Value + 0.5), MIN_int32, MAX_int32); }
	static int32 RoundToInt32(double Value) { return RoundToInt(Value); }
	static int64 RoundToInt64(double Value) { return (int64)Limit(std::floor(Value + 0.5), -9.2e18, 9.2e18); }
	static int32 FloorToInt(double Value) { return (int32)Limit(std::floor(Value), MIN_int32, MAX_int32); }
	static int32 CeilToInt(double Value) { return (int32)Limit(std::ceil(Value), MIN_int32, MAX_int32); }
	static int32 TruncToInt(double Value) { return (int32)Limit(std::trunc(Value), MIN_int32, MAX_int32); }

	static float Sqrt(float Value) { return std::sqrt(Value); }
	static double Sqrt(double Value) { return std::sqrt(Value); }
	static float Pow(float Base, float Exponent) { return std::pow(Base, Exponent); }
	static double Pow(double Base, double Exponent) { return std::pow(Base, Exponent); }
	static double Loge(double Value) { return std::log(Value); }
	static double Log2(double Value) { return std::log2(Value); }
	static double Exp(double Value) { return std::exp(Value); }
	static double Sin(double Value) { return std::sin(Value); }
	static double Cos(double Value) { return std::cos(Value); }
	static double Fmod(double X, double Y) { return std::fmod(X, Y); }
	static bool IsFinite(double Value) { return std::isfinite(Value); }
	static bool IsNaN(double Value) { return std::isnan(Value); }
	static bool IsNearlyEqual(double A, double B, double Tolerance = 1.e-8) { return Abs(A - B) <= Tolerance; }
	static bool IsNearlyZero(double Value, double Tolerance = 1.e-8) { return Abs(Value) <= Tolerance; }

	/** Moves towards the target by a share of the distance. @param DeltaTime seconds; @param Speed 0 jumps to it. */
	static float FInterpTo(float Current, float Target, float DeltaTime, float Speed)
	{
		if (Speed <= 0.f || Square(Target - Current) < UE_SMALL_NUMBER)
		{
			return Target;
		}
		return Current + (Target - Current) * Clamp(DeltaTime * Speed, 0.f, 1.f);
	}

	/** From 0 to 32767. */
	static int32 Rand();
	/** From 0 to 1, 1 excluded. */
	static float FRand();
	/** From Low to High, both included. */
	static int32 RandRange(int32 Low, int32 High);
	static void RandInit(int32 Seed);

private:
	static double Limit(double Value, double Low, double High)
	{
		return std::isnan(Value) ? 0.0 : std::clamp(Value, Low, High);
	}
};
