#pragma once

#include "UObject/GCObject.h"

/** A reference from plain code that keeps an object alive. Game thread. */
template <typename T>
class TStrongObjectPtr : private FGCObject
{
public:
	TStrongObjectPtr() = default;
	TStrongObjectPtr(std::nullptr_t) {}
	explicit TStrongObjectPtr(T* InObject)
		: Object(InObject)
	{
	}
	TStrongObjectPtr(const TStrongObjectPtr&) = default;
	TStrongObjectPtr& operator=(const TStrongObjectPtr&) = default;

	void Reset(T* InObject = nullptr) { Object = InObject; }
	T* Get() const { return Object; }
	T* operator->() const { return Object; }
	T& operator*() const { return *Object; }
	bool IsValid() const { return Object != nullptr; }
	explicit operator bool() const { return Object != nullptr; }
	friend bool operator==(const TStrongObjectPtr& A, const TStrongObjectPtr& B) { return A.Object == B.Object; }

private:
	void AddReferencedObjects(FReferenceCollector& Collector) override { Collector.AddReferencedObject(Object); }
	FString GetReferencerName() const override { return TEXT("TStrongObjectPtr"); }

	T* Object = nullptr;
};
