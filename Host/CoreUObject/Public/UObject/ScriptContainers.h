#pragma once

#include "UObject/ContainerProperties.h"

/** Works on the array of a property, whatever its elements. The array must outlive the helper. Game thread. */
class FScriptArrayHelper
{
public:
	FScriptArrayHelper(const FArrayProperty* Property, const void* Data)
		: Inner(Property->Inner)
		, Array((FScriptArray*)Data)
	{
	}

	int32 Num() const { return Array->ArrayNum; }
	bool IsValidIndex(int32 Index) const { return (uint32)Index < (uint32)Array->ArrayNum; }
	/** The element's address; the index is valid. Adding moves elements. */
	uint8* GetRawPtr(int32 Index = 0) const
	{
		check(IsValidIndex(Index));
		return ElementAt(Index);
	}
	uint8* GetElementPtr(int32 Index) const { return GetRawPtr(Index); }

	/** @return the index of the first new element. New elements have the defaults of their type. */
	int32 AddValue() { return AddValues(1); }
	int32 AddValues(int32 Count);
	void InsertValues(int32 Index, int32 Count = 1);
	void RemoveValues(int32 Index, int32 Count = 1);
	void EmptyValues(int32 Slack = 0);
	void EmptyAndAddValues(int32 Count);
	void Resize(int32 Count);
	void SwapValues(int32 A, int32 B);

private:
	uint8* ElementAt(int32 Index) const
	{
		return (uint8*)Array->Data + (SIZE_T)Index * (SIZE_T)Inner->GetElementSize();
	}
	void Grow(int32 Count);

	FProperty* Inner;
	FScriptArray* Array;
};

class FScriptArrayHelper_InContainer : public FScriptArrayHelper
{
public:
	FScriptArrayHelper_InContainer(const FArrayProperty* Property, const void* Container, int32 FixedArrayIndex = 0)
		: FScriptArrayHelper(Property, Property->ContainerPtrToValuePtr<void>(Container, FixedArrayIndex))
	{
	}
};

/** Works on the set of a property. Indices are places, of which some may be free. Game thread. */
class FScriptSetHelper
{
public:
	FScriptSetHelper(const FSetProperty* InProperty, const void* Data)
		: Property(InProperty)
		, Set((FScriptSet*)Data)
	{
	}

	int32 Num() const { return Set->Num(); }
	int32 GetMaxIndex() const { return Set->GetMaxIndex(); }
	bool IsValidIndex(int32 Index) const { return Set->IsValidIndex(Index, Property->SetLayout); }
	uint8* GetElementPtr(int32 Index) const
	{
		check(IsValidIndex(Index));
		return (uint8*)Set->GetData(Index, Property->SetLayout);
	}
	FProperty* GetElementProperty() const { return Property->ElementProp; }

	/** Adds a copy, unless an equal element is there. @return its place. */
	int32 AddElement(const void* Element);
	int32 FindElementIndex(const void* Element) const;
	bool RemoveElement(const void* Element);
	void RemoveAt(int32 Index);
	void EmptyElements();

private:
	const FSetProperty* Property;
	FScriptSet* Set;
};

class FScriptSetHelper_InContainer : public FScriptSetHelper
{
public:
	FScriptSetHelper_InContainer(const FSetProperty* Property, const void* Container, int32 FixedArrayIndex = 0)
		: FScriptSetHelper(Property, Property->ContainerPtrToValuePtr<void>(Container, FixedArrayIndex))
	{
	}
};

/** Works on the map of a property. Indices are places, of which some may be free. Game thread. */
class FScriptMapHelper
{
public:
	FScriptMapHelper(const FMapProperty* InProperty, const void* Data)
		: Property(InProperty)
		, Set((FScriptSet*)Data)
	{
	}

	int32 Num() const { return Set->Num(); }
	int32 GetMaxIndex() const { return Set->GetMaxIndex(); }
	bool IsValidIndex(int32 Index) const { return Set->IsValidIndex(Index, Property->MapLayout.SetLayout); }
	uint8* GetKeyPtr(int32 Index) const
	{
		check(IsValidIndex(Index));
		return (uint8*)Set->GetData(Index, Property->MapLayout.SetLayout);
	}
	uint8* GetValuePtr(int32 Index) const { return GetKeyPtr(Index) + Property->MapLayout.ValueOffset; }
	uint8* GetPairPtr(int32 Index) const { return GetKeyPtr(Index); }
	FProperty* GetKeyProperty() const { return Property->KeyProp; }
	FProperty* GetValueProperty() const { return Property->ValueProp; }

	/** Sets the value of a key. @return its place. */
	int32 AddPair(const void* Key, const void* Value);
	int32 FindMapIndexWithKey(const void* Key) const;
	uint8* FindValueFromHash(const void* Key) const;
	/** The value of the key, added with its default if it isn't there. */
	void* FindOrAdd(const void* Key);
	bool RemovePair(const void* Key);
	void RemoveAt(int32 Index);
	void EmptyValues();

private:
	const FMapProperty* Property;
	FScriptSet* Set;
};

class FScriptMapHelper_InContainer : public FScriptMapHelper
{
public:
	FScriptMapHelper_InContainer(const FMapProperty* Property, const void* Container, int32 FixedArrayIndex = 0)
		: FScriptMapHelper(Property, Property->ContainerPtrToValuePtr<void>(Container, FixedArrayIndex))
	{
	}
};
