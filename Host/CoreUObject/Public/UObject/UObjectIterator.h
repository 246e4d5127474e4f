#pragma once

#include "UObject/UObjectHash.h"

/** Walks the objects of a class that live when the walk begins. Objects freed meanwhile must not be reached. Game
 * thread. */
template <typename T>
class TObjectIterator
{
public:
	explicit TObjectIterator(EObjectFlags ExclusionFlags = RF_ClassDefaultObject, bool bIncludeDerivedClasses = true)
	{
		GetObjectsOfClass(T::StaticClass(), Objects, bIncludeDerivedClasses, ExclusionFlags);
	}

	explicit operator bool() const { return Index < Objects.Num(); }
	T* operator*() const { return (T*)Objects[Index]; }
	T* operator->() const { return (T*)Objects[Index]; }
	TObjectIterator& operator++()
	{
		++Index;
		return *this;
	}

private:
	TArray<UObject*> Objects;
	int32 Index = 0;
};

/** The same for range-based loops. */
template <typename T>
class TObjectRange
{
public:
	explicit TObjectRange(EObjectFlags ExclusionFlags = RF_ClassDefaultObject, bool bIncludeDerivedClasses = true)
	{
		GetObjectsOfClass(T::StaticClass(), (TArray<UObject*>&)Objects, bIncludeDerivedClasses, ExclusionFlags);
	}
	auto begin() const { return Objects.begin(); }
	auto end() const { return Objects.end(); }

private:
	TArray<T*> Objects;
};
