#include "UObject/StructOnScope.h"

FStructOnScope::FStructOnScope(const UStruct* InStruct)
{
	Initialize(InStruct);
}

FStructOnScope::FStructOnScope(FStructOnScope&& Other)
	: Struct(Exchange(Other.Struct, nullptr))
	, Memory(Exchange(Other.Memory, nullptr))
{
}

FStructOnScope& FStructOnScope::operator=(FStructOnScope&& Other)
{
	if (this != &Other)
	{
		Reset();
		Struct = Exchange(Other.Struct, nullptr);
		Memory = Exchange(Other.Memory, nullptr);
	}
	return *this;
}

void FStructOnScope::Initialize(const UStruct* InStruct)
{
	Reset();
	Struct = InStruct;
	if (Struct)
	{
		const SIZE_T Size = (SIZE_T)FMath::Max(1, Struct->GetStructureSize());
		Memory = (uint8*)FMemory::Malloc(Size, (uint32)Struct->GetMinAlignment());
		Struct->InitializeStruct(Memory);
	}
}

void FStructOnScope::Reset()
{
	if (Memory)
	{
		Struct->DestroyStruct(Memory);
		FMemory::Free(Memory);
	}
	Memory = nullptr;
	Struct = nullptr;
}
