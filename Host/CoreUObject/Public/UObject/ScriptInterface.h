#pragma once

#include "CoreMinimal.h"

class UObject;

/** An object and its part that implements an interface, which is null for objects without a C++ part. */
class FScriptInterface
{
public:
	FScriptInterface() = default;
	FScriptInterface(UObject* InObject, void* InInterface)
		: Object(InObject)
		, Interface(InInterface)
	{
	}
	UObject* GetObject() const { return Object; }
	UObject*& GetObjectRef() { return Object; }
	void* GetInterface() const { return Object ? Interface : nullptr; }
	void SetObject(UObject* InObject) { Object = InObject; }
	void SetInterface(void* InInterface) { Interface = InInterface; }
	explicit operator bool() const { return GetInterface() != nullptr; }

	friend bool operator==(const FScriptInterface& A, const FScriptInterface& B) { return A.Object == B.Object; }
	friend uint32 GetTypeHash(const FScriptInterface& Value) { return ::GetTypeHash((const void*)Value.Object); }

private:
	UObject* Object = nullptr;
	void* Interface = nullptr;
};

template <typename InterfaceType>
class TScriptInterface : public FScriptInterface
{
public:
	TScriptInterface() = default;
	template <typename ObjectType>
	TScriptInterface(ObjectType* Source)
		: FScriptInterface(
			  Source, Source ? Source->GetInterfaceAddress(InterfaceType::UClassType::StaticClass()) : nullptr)
	{
	}
	InterfaceType* operator->() const { return (InterfaceType*)GetInterface(); }
	InterfaceType& operator*() const { return *(InterfaceType*)GetInterface(); }
};
