#include "Math/UnrealMathUtility.h"

#include <random>

namespace
{
std::mt19937& Generator()
{
	thread_local std::mt19937 Engine{std::random_device()()};
	return Engine;
}
} // namespace

int32 FMath::Rand()
{
	return (int32)(Generator()() & 0x7FFF);
}

float FMath::FRand()
{
	return (float)(Generator()() >> 8) * (1.0f / 16777216.0f);
}

int32 FMath::RandRange(int32 Low, int32 High)
{
	return High < Low ? Low : std::uniform_int_distribution<int32>(Low, High)(Generator());
}

void FMath::RandInit(int32 Seed)
{
	Generator().seed((uint32)Seed);
}
