#pragma once

#include "UObject/Class.h"

/** A value of a struct, or a function's frame, with its own memory. Game thread. */
class FStructOnScope
{
public:
	FStructOnScope() = default;
	explicit FStructOnScope(const UStruct* InStruct);
	FStructOnScope(FStructOnScope&& Other);
	FStructOnScope& operator=(FStructOnScope&& Other);
	FStructOnScope(const FStructOnScope&) = delete;
	FStructOnScope& operator=(const FStructOnScope&) = delete;
	~FStructOnScope() { Reset(); }

	void Initialize(const UStruct* InStruct);
	void Reset();
	bool IsValid() const { return Struct && Memory; }
	const UStruct* GetStruct() const { return Struct; }
	uint8* GetStructMemory() const { return Memory; }

private:
	const UStruct* Struct = nullptr;
	uint8* Memory = nullptr;
};
