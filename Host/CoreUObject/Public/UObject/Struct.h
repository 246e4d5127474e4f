#pragma once

#include "UObject/UField.h"

class FField;
class FProperty;

/** Whether a search by name goes on in the parents. */
namespace EIncludeSuperFlag
{
enum Type
{
	ExcludeSuper,
	IncludeSuper
};
}

/** A list of properties that lies in memory in a known way: a class, a struct or a function's frame. Game thread. */
class UStruct : public UField
{
	DECLARE_REFLECTED_CLASS(UStruct, UField)

	UStruct() = default;
	~UStruct() override;

	UStruct* GetSuperStruct() const { return SuperStruct; }
	UStruct* GetInheritanceSuper() const { return SuperStruct; }
	/** Link must follow. */
	virtual void SetSuperStruct(UStruct* NewSuperStruct);
	bool IsChildOf(const UStruct* SomeBase) const;
	template <typename T>
	bool IsChildOf() const
	{
		return IsChildOf(T::StaticClass());
	}

	/** Bytes of one value without padding at the end. */
	int32 GetPropertiesSize() const { return PropertiesSize; }
	int32 GetMinAlignment() const { return MinAlignment; }
	/** Bytes from one value to the next in an array. */
	int32 GetStructureSize() const { return (PropertiesSize + MinAlignment - 1) & ~(MinAlignment - 1); }

	/** By name without regard to case, parents included. @return null without it. */
	FProperty* FindPropertyByName(FName Name) const;
	/** Appends a property made at run time and takes it over. StaticLink must follow before a value is made. */
	void AddCppProperty(FProperty* Property);
	/** Takes a property made at run time out and deletes it. No value of this struct may exist. */
	void RemoveCppProperty(FProperty* Property);
	void AddChild(UField* Child);
	void RemoveChild(UField* Child);

	/**
	 * Builds the chains of properties and, for properties made at run time, lays them out behind the parent's. The
	 * parent is linked before. No value laid out in the old way may exist.
	 */
	virtual void StaticLink(bool bRelinkExistingProperties = false);

	/** Constructs a value in raw memory, ends one. @param ArrayDim values side by side. */
	virtual void InitializeStruct(void* Dest, int32 ArrayDim = 1) const;
	virtual void DestroyStruct(void* Dest, int32 ArrayDim = 1) const;
	/** Reports the objects that a value refers to. */
	void CollectReferences(void* Data, FReferenceCollector& Collector) const;

	/** The letter in front of the C++ name. */
	virtual const TCHAR* GetPrefixCPP() const { return TEXT("F"); }
	FString GetAuthoredName() const { return GetName(); }
	/** Whether this struct's memory layout stands in C++ code. */
	bool HasNativeLayout() const { return bNativeLayout; }

	/** Children that are objects: the functions of a class. */
	UField* Children = nullptr;
	/** This struct's own properties in the order of declaration. */
	FField* ChildProperties = nullptr;
	/** All properties, own ones first, along FProperty::PropertyLinkNext. */
	FProperty* PropertyLink = nullptr;

protected:
	friend class FReflectionBuilder;

	void DestroyProperties();
	/** The properties of this struct that its native parent's code doesn't construct. */
	void InitializeOwnProperties(void* Dest) const;
	void DestroyOwnProperties(void* Dest) const;

	UStruct* SuperStruct = nullptr;
	int32 PropertiesSize = 0;
	int32 MinAlignment = 1;
	bool bNativeLayout = false;
	TArray<FProperty*> OwnProperties;
	/** All properties, own and inherited, through which a value may refer to objects. */
	TArray<FProperty*> ReferenceProperties;
};
