#pragma once

#include "UObject/Class.h"

/** A class that is T or descends from it, or null; it lies in memory as a plain pointer does. */
template <typename T>
class TSubclassOf
{
public:
	using ElementType = T;

	TSubclassOf() = default;
	TSubclassOf(std::nullptr_t) {}
	TSubclassOf(UClass* InClass)
		: Class(InClass)
	{
	}
	template <typename OtherType>
	requires std::is_convertible_v<OtherType*, T*> TSubclassOf(const TSubclassOf<OtherType>& Other)
		: Class(Other.Get())
	{
	}

	/** Null if the class isn't a child of T. */
	UClass* Get() const { return Class && Class->IsChildOf(T::StaticClass()) ? Class : nullptr; }
	operator UClass*() const { return Get(); }
	UClass* operator*() const { return Get(); }
	UClass* operator->() const { return Get(); }
	explicit operator bool() const { return Get() != nullptr; }
	T* GetDefaultObject() const { return Get() ? (T*)Class->GetDefaultObject() : nullptr; }

	friend uint32 GetTypeHash(const TSubclassOf& Value) { return GetTypeHash((const void*)Value.Class); }

private:
	UClass* Class = nullptr;
};
