#pragma once

#include "UObject/GarbageCollection.h"

/** A plain object that holds reflected ones alive: for its own life, it reports them to every collection. Game thread.
 */
class FGCObject
{
public:
	FGCObject();
	virtual ~FGCObject();
	FGCObject(const FGCObject&)
		: FGCObject()
	{
	}
	FGCObject& operator=(const FGCObject&) = default;

	virtual void AddReferencedObjects(FReferenceCollector& Collector) = 0;
	virtual FString GetReferencerName() const = 0;
};
