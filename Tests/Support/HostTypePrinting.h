#pragma once

#include "CoreMinimal.h"

#include <gtest/gtest.h>

#include <ostream>

/** How a failing test shows the host's types. */
inline void PrintTo(const FString& Value, std::ostream* Out)
{
	*Out << '"' << TCHAR_TO_UTF8(*Value) << '"';
}

inline void PrintTo(FStringView Value, std::ostream* Out)
{
	PrintTo(FString(Value), Out);
}

inline void PrintTo(FName Value, std::ostream* Out)
{
	PrintTo(Value.ToString(), Out);
}

template <typename T, typename AllocatorType>
void PrintTo(const TArray<T, AllocatorType>& Array, std::ostream* Out)
{
	*Out << "{ ";
	for (const T& Item : Array)
	{
		*Out << testing::PrintToString(Item) << ' ';
	}
	*Out << '}';
}
