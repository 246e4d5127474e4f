#include "HAL/PlatformMisc.h"

#include "Environment.h"

#include <algorithm>
#include <thread>

FString FPlatformMisc::GetEnvironmentVariable(const TCHAR* VariableName)
{
	return FEnvironment::Get().GetVariable(VariableName);
}

void FPlatformMisc::SetEnvironmentVar(const TCHAR* VariableName, const TCHAR* Value)
{
	FEnvironment::Get().SetVariable(VariableName, Value);
}

int32 FPlatformMisc::NumberOfCores()
{
	return NumberOfCoresIncludingHyperthreads();
}

int32 FPlatformMisc::NumberOfCoresIncludingHyperthreads()
{
	return std::max(1, (int32)std::thread::hardware_concurrency());
}
