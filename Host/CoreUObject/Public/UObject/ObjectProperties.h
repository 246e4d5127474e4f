#pragma once

#include "UObject/Property.h"
#include "UObject/ScriptInterface.h"
#include "UObject/SoftObjectPtr.h"
#include "UObject/WeakObjectPtr.h"

/** A reference to an object, in one of several forms. */
class FObjectPropertyBase : public FProperty
{
	DECLARE_FIELD(FObjectPropertyBase, FProperty)

	using FProperty::FProperty;

	/** The object, or null when there is none, it is dead or isn't loaded. */
	virtual UObject* GetObjectPropertyValue(const void* Data) const = 0;
	virtual void SetObjectPropertyValue(void* Data, UObject* Value) const = 0;
	UObject* GetObjectPropertyValue_InContainer(const void* Container, int32 ArrayIndex = 0) const
	{
		return GetObjectPropertyValue(ContainerPtrToValuePtr<void>(Container, ArrayIndex));
	}
	void SetObjectPropertyValue_InContainer(void* Container, UObject* Value, int32 ArrayIndex = 0) const
	{
		SetObjectPropertyValue(ContainerPtrToValuePtr<void>(Container, ArrayIndex), Value);
	}
	void SetPropertyClass(UClass* NewClass) { PropertyClass = NewClass; }
	/** Whether the property may hold the object; null is held by all. */
	virtual bool AcceptsObject(const UObject* Object) const;

	bool CanBeKey() const override { return true; }
	uint32 GetValueTypeHash(const void* Data) const override;
	bool SameType(const FProperty* Other) const override;

	/**
	 * Reads `None`, a path, or `Class'Path'`, quoted or not, and finds or loads the object.
	 * @return behind what was read, or null if the text is malformed or names nothing of the required class.
	 */
	static const TCHAR* ParseObjectPropertyValue(const FProperty* Property, UObject* OwnerObject,
		UClass* RequiredMetaClass, const TCHAR* Buffer, UObject*& OutResolved, FOutputDevice* ErrorText);

	UClass* PropertyClass = nullptr;

protected:
	/** `UFoo`, the C++ name of the class. */
	FString ClassText(const UClass* Class) const;
	bool IdenticalValues(const void* A, const void* B, uint32 PortFlags) const override;
	void ExportValue(FString& ValueStr, const void* Data, const void* Default, UObject* Parent, int32 PortFlags,
		UObject* ExportRootScope) const override;
	const TCHAR* ImportValue(const TCHAR* Buffer, void* Data, UObject* OwnerObject, int32 PortFlags,
		FOutputDevice* ErrorText) const override;
};

/** A reference that keeps its object alive: `UFoo*` or `TObjectPtr<UFoo>`. */
class FObjectProperty : public TProperty<UObject*, FObjectPropertyBase>
{
	DECLARE_FIELD(FObjectProperty, FObjectPropertyBase)
	using TProperty::TProperty;

	UObject* GetObjectPropertyValue(const void* Data) const override { return *(UObject* const*)Data; }
	void SetObjectPropertyValue(void* Data, UObject* Value) const override { *(UObject**)Data = Value; }
	bool ContainsObjectReference() const override { return true; }
	void CollectReferences(void* Data, FReferenceCollector& Collector) const override;

protected:
	FString GetTypeText(FString* ExtendedTypeText) const override;
};

/** A reference to a class: `UClass*` or `TSubclassOf<UFoo>`. */
class FClassProperty : public FObjectProperty
{
	DECLARE_FIELD(FClassProperty, FObjectProperty)
	using FObjectProperty::FObjectProperty;

	void SetMetaClass(UClass* NewMetaClass) { MetaClass = NewMetaClass; }
	bool AcceptsObject(const UObject* Object) const override;
	bool SameType(const FProperty* Other) const override;

	/** The class that the value is or descends from. */
	UClass* MetaClass = nullptr;

protected:
	FString GetTypeText(FString* ExtendedTypeText) const override;
};

/** A reference that doesn't keep its object alive. */
class FWeakObjectProperty : public TProperty<FWeakObjectPtr, FObjectPropertyBase>
{
	DECLARE_FIELD(FWeakObjectProperty, FObjectPropertyBase)
	using TProperty::TProperty;

	UObject* GetObjectPropertyValue(const void* Data) const override;
	void SetObjectPropertyValue(void* Data, UObject* Value) const override;

protected:
	FString GetTypeText(FString* ExtendedTypeText) const override;
};

/** A reference by path, to an object that need not be loaded. */
class FSoftObjectProperty : public TProperty<FSoftObjectPtr, FObjectPropertyBase>
{
	DECLARE_FIELD(FSoftObjectProperty, FObjectPropertyBase)
	using TProperty::TProperty;

	UObject* GetObjectPropertyValue(const void* Data) const override;
	void SetObjectPropertyValue(void* Data, UObject* Value) const override;
	uint32 GetValueTypeHash(const void* Data) const override;

protected:
	DECLARE_PROPERTY_VALUE_FORM()
};

/** A class by path. */
class FSoftClassProperty : public FSoftObjectProperty
{
	DECLARE_FIELD(FSoftClassProperty, FSoftObjectProperty)
	using FSoftObjectProperty::FSoftObjectProperty;

	void SetMetaClass(UClass* NewMetaClass) { MetaClass = NewMetaClass; }

	UClass* MetaClass = nullptr;

protected:
	FString GetTypeText(FString* ExtendedTypeText) const override;
};

/** A reference to an object by an interface that it implements. */
class FInterfaceProperty : public TProperty<FScriptInterface, FObjectPropertyBase>
{
	DECLARE_FIELD(FInterfaceProperty, FObjectPropertyBase)
	using TProperty::TProperty;

	UObject* GetObjectPropertyValue(const void* Data) const override;
	void SetObjectPropertyValue(void* Data, UObject* Value) const override;
	bool AcceptsObject(const UObject* Object) const override;
	bool ContainsObjectReference() const override { return true; }
	void CollectReferences(void* Data, FReferenceCollector& Collector) const override;

	UClass* InterfaceClass = nullptr;

protected:
	FString GetTypeText(FString* ExtendedTypeText) const override;
};
