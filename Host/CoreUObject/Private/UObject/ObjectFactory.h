#pragma once

#include "UObject/UObjectGlobals.h"

/** Makes objects: memory, constructor, starting values, config, last hook. Game thread. */
class FObjectFactory
{
public:
	static UObject* Make(UClass* Class, UObject* Outer, FName Name, EObjectFlags Flags, UObject* Template);

	/** Makes an object before its class and its class's class exist, when the type system comes up. */
	template <typename T>
	static T* MakeType(UClass* Class, FName Name)
	{
		FObjectInitializer Initializer(Class, nullptr, Name, RF_Public | RF_MarkAsNative | RF_Transient, nullptr);
		Initializer.Memory = FMemory::Malloc(sizeof(T), alignof(T));
		return ::new (Initializer.Memory) T();
	}

	/** Copies the values of all properties and lets references to parts of Source refer to the same parts of Dest. */
	static void CopyValues(UObject* Dest, UObject* Source, const TArray<FProperty*>& Properties);
	static void CopyAllValues(UObject* Dest, UObject* Source);

private:
	static UObject* Construct(UClass* Class, UObject* Outer, FName Name, EObjectFlags Flags, UObject* Archetype);
	static void TakeStartingValues(UObject* Object, UObject* Archetype, bool bFromTemplate);
};
