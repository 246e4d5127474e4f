#pragma once

#include "CoreMinimal.h"
#include "UObject/ObjectMacros.h"

/**
 * Appends the living objects of a class, in the order in which they were made, class by class. Garbage is left out.
 * @param ExclusionFlags objects with any of these are left out. Time goes with the number of objects found.
 */
void GetObjectsOfClass(const UClass* ClassToLookFor, TArray<UObject*>& Results, bool bIncludeDerivedClasses = true,
	EObjectFlags ExclusionFlags = RF_ClassDefaultObject,
	EInternalObjectFlags ExclusionInternalFlags = EInternalObjectFlags::None);

/** The same as calls; the operation may make and free objects. */
void ForEachObjectOfClass(const UClass* ClassToLookFor, TFunctionRef<void(UObject*)> Operation,
	bool bIncludeDerivedClasses = true, EObjectFlags ExclusionFlags = RF_ClassDefaultObject);

/** Appends the child classes, at all depths if wanted, without the class itself. */
void GetDerivedClasses(const UClass* ClassToLookFor, TArray<UClass*>& Results, bool bRecursive = true);

/** Appends the objects inside an outer, in the order in which they came there. */
void GetObjectsWithOuter(const UObject* Outer, TArray<UObject*>& Results, bool bIncludeNestedObjects = true,
	EObjectFlags ExclusionFlags = RF_NoFlags);
void ForEachObjectWithOuter(const UObject* Outer, TFunctionRef<void(UObject*)> Operation,
	bool bIncludeNestedObjects = true, EObjectFlags ExclusionFlags = RF_NoFlags);
