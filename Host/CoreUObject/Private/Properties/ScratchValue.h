#pragma once

#include "UObject/Property.h"

/** A single value of a property in memory of its own. */
class FScratchValue
{
public:
	explicit FScratchValue(const FProperty* InProperty)
		: Property(InProperty)
		, Memory(FMemory::Malloc((SIZE_T)InProperty->GetSize(), (uint32)InProperty->GetMinAlignment()))
	{
		FMemory::Memzero(Memory, (SIZE_T)Property->GetSize());
		Property->InitializeValue(Memory);
	}
	~FScratchValue()
	{
		Property->DestroyValue(Memory);
		FMemory::Free(Memory);
	}
	FScratchValue(const FScratchValue&) = delete;
	FScratchValue& operator=(const FScratchValue&) = delete;
	void* Get() const { return Memory; }

private:
	const FProperty* Property;
	void* Memory;
};
