#pragma once

#include "Containers/UnrealString.h"

/** A scenario file, as it was when the program was built. */
struct FDemoScenarioText
{
	const TCHAR* FileName;
	const TCHAR* Json;
};

/** All of them, by name. */
const TArray<FDemoScenarioText>& GetDemoScenarioTexts();
