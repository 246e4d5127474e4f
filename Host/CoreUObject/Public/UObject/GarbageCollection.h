#pragma once

#include "CoreMinimal.h"
#include "UObject/ObjectPtr.h"
#include "UObject/UObjectGlobals.h"

/** Takes the references that an object holds while a collection looks for what is alive. */
class FReferenceCollector
{
public:
	virtual ~FReferenceCollector() = default;

	/** Reports one reference. One to garbage becomes null. */
	virtual void HandleReference(UObject*& Object) = 0;

	template <typename T>
	void AddReferencedObject(T*& Object)
	{
		HandleReference((UObject*&)Object);
	}
	template <typename T>
	void AddReferencedObject(TObjectPtr<T>& Object)
	{
		HandleReference((UObject*&)Object);
	}
	template <typename T>
	void AddReferencedObjects(TArray<T*>& Objects)
	{
		for (T*& Object : Objects)
		{
			AddReferencedObject(Object);
		}
	}
	template <typename T>
	void AddReferencedObjects(TArray<TObjectPtr<T>>& Objects)
	{
		for (TObjectPtr<T>& Object : Objects)
		{
			AddReferencedObject(Object);
		}
	}
	/** Reports what the properties of a struct's value refer to. */
	void AddPropertyReferences(const UStruct* Struct, void* Instance) { Struct->CollectReferences(Instance, *this); }
};
