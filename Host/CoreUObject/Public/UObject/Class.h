#pragma once

#include "UObject/Enum.h"
#include "UObject/Function.h"
#include "UObject/ScriptStruct.h"
#include "UObject/StructTraits.h"

/** An interface that a class implements, and where in its objects. */
struct FImplementedInterface
{
	UClass* Class = nullptr;
	/** Bytes from the object to the C++ interface. */
	int32 PointerOffset = 0;
	/** By a Blueprint, without a C++ part. */
	bool bImplementedByK2 = false;
};

/** The class of objects, native or made at run time. Game thread. */
class UClass : public UStruct
{
	DECLARE_REFLECTED_CLASS(UClass, UStruct)

	using FConstructor = void (*)(const FObjectInitializer& Initializer);
	using FAddReferencedObjects = void (*)(UObject* InThis, FReferenceCollector& Collector);

	UClass() = default;

	/** Whether the type system is up. */
	static bool IsBuilt();

	UClass* GetSuperClass() const { return (UClass*)GetSuperStruct(); }
	bool HasAnyClassFlags(uint32 Flags) const { return ((uint32)ClassFlags & Flags) != 0; }
	bool HasAllClassFlags(uint32 Flags) const { return ((uint32)ClassFlags & Flags) == Flags; }
	EClassFlags GetClassFlags() const { return ClassFlags; }
	bool IsNative() const { return HasAnyClassFlags(CLASS_Native); }

	/** The object that holds the defaults; made on first demand. @return null only if it isn't there and mustn't be
	 * made. */
	UObject* GetDefaultObject(bool bCreateIfNeeded = true);
	template <typename T>
	T* GetDefaultObject()
	{
		return (T*)GetDefaultObject();
	}
	FString GetDefaultObjectName() const { return FString(TEXT("Default__")) + GetName(); }

	/** By name without regard to case, parents and interfaces included if wanted. @return null without it. */
	UFunction* FindFunctionByName(
		FName Name, EIncludeSuperFlag::Type IncludeSuper = EIncludeSuperFlag::IncludeSuper) const;
	/** Adds a function made at run time, whose outer is this class. */
	void AddFunctionToFunctionMap(UFunction* Function, FName Name);
	void RemoveFunctionFromFunctionMap(UFunction* Function);
	void GenerateFunctionList(TArray<FName>& OutNames) const;

	/** Whether this class or a parent implements the interface. */
	bool ImplementsInterface(const UClass* Interface) const;
	const FImplementedInterface* FindInterface(const UClass* Interface) const;

	/** Inherits what a class takes from its parent: constructor, flags, config name. Before StaticLink, for classes
	 * made at run time. */
	void Bind();
	void SetSuperStruct(UStruct* NewSuperStruct) override;
	void StaticLink(bool bRelinkExistingProperties = false) override;
	const TCHAR* GetPrefixCPP() const override;

	/** The config file of the class: a name such as `Editor` resolves to the merged settings of that name. */
	FString GetConfigName() const;
	/** The section of the class in its config: its path. */
	FString GetConfigSection() const { return GetPathName(); }

	/** Direct children, in no order. */
	const TArray<UClass*>& GetDirectChildren() const { return DirectChildren; }

	void BeginDestroy() override;
	static void AddReferencedObjects(UObject* InThis, FReferenceCollector& Collector);

	EClassFlags ClassFlags = CLASS_None;
	FName ClassConfigName;
	UClass* ClassWithin = nullptr;
	UObject* ClassGeneratedBy = nullptr;
	/** The interfaces of this class itself. */
	TArray<FImplementedInterface> Interfaces;
	FConstructor ClassConstructor = nullptr;
	FAddReferencedObjects ClassAddReferencedObjects = nullptr;

private:
	friend class FObjectFactory;
	friend class FObjectTable;
	friend class FReflectionBuilder;

	/** Constructs and destroys the properties of run-time classes, from the nearest native parent down to this class.
	 */
	void InitializeScriptProperties(void* Dest) const;
	void DestroyScriptProperties(void* Dest) const;
	UObject* CreateDefaultObject();
	void CollectPostConstructProperties();

	UObject* ClassDefaultObject = nullptr;
	TMap<FName, UFunction*> FunctionMap;
	TArray<UClass*> DirectChildren;
	/** Properties that a new object takes from its archetype: config ones, and all of run-time classes. */
	TArray<FProperty*> PostConstructProperties;
	/** The objects of exactly this class, as a list in the object table. */
	int32 FirstInstance = INDEX_NONE;
	int32 LastInstance = INDEX_NONE;
	/** For names of objects that come without one. */
	int32 NextObjectNumber = 0;
};

/** The defaults of a class. */
template <typename T>
T* GetMutableDefault()
{
	return (T*)T::StaticClass()->GetDefaultObject();
}
template <typename T>
const T* GetDefault()
{
	return (const T*)T::StaticClass()->GetDefaultObject();
}
template <typename T>
const T* GetDefault(UClass* Class)
{
	return (const T*)Class->GetDefaultObject();
}
