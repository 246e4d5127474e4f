#pragma once

#include "CoreMinimal.h"
#include "UObject/NameTypes.h"
#include "UObject/ObjectMacros.h"

/**
 * What a constructor of a reflected class knows about the object that it makes. One is alive for each object under
 * construction; constructors take it as their argument or make parts of the object through it.
 */
class FObjectInitializer
{
public:
	FObjectInitializer(UClass* InClass, UObject* InOuter, FName InName, EObjectFlags InFlags, UObject* InArchetype);
	~FObjectInitializer();
	FObjectInitializer(const FObjectInitializer&) = delete;
	FObjectInitializer& operator=(const FObjectInitializer&) = delete;

	/** That of the innermost object under construction; aborts outside of any. */
	static FObjectInitializer& Get();
	/** As Get, but null outside of any construction. */
	static FObjectInitializer* Current();

	UObject* GetObj() const { return Object; }
	void* GetMemory() const { return Memory; }
	UClass* GetClass() const { return Class; }
	UObject* GetArchetype() const { return Archetype; }

	/** Makes a part of Outer, of the class that a child's constructor chose or of the given one. @return null if a
	 * child's constructor doesn't want it. */
	UObject* CreateDefaultSubobject(UObject* Outer, FName SubobjectName, const UClass* ReturnType,
		const UClass* ClassToCreate, bool bIsRequired = true, bool bIsTransient = false) const;
	template <typename T>
	T* CreateDefaultSubobject(UObject* Outer, FName SubobjectName, bool bIsTransient = false) const
	{
		UClass* Type = T::StaticClass();
		return (T*)CreateDefaultSubobject(Outer, SubobjectName, Type, Type, true, bIsTransient);
	}

	/** Chooses a child class for a part that a parent's constructor makes. */
	template <typename T>
	const FObjectInitializer& SetDefaultSubobjectClass(FName SubobjectName) const
	{
		return SetDefaultSubobjectClass(SubobjectName, T::StaticClass());
	}
	const FObjectInitializer& SetDefaultSubobjectClass(FName SubobjectName, const UClass* Class) const;
	const FObjectInitializer& DoNotCreateDefaultSubobject(FName SubobjectName) const;

private:
	friend class UObjectBase;
	friend class FObjectTable;
	friend class FObjectFactory;

	struct FOverride
	{
		FName Name;
		const UClass* Class;
	};
	const FOverride* FindOverride(FName SubobjectName) const;

	UClass* Class;
	UObject* Outer;
	FName Name;
	EObjectFlags Flags;
	UObject* Archetype;
	void* Memory = nullptr;
	UObject* Object = nullptr;
	mutable TArray<FOverride> Overrides;
	FObjectInitializer* Enclosing;
};
