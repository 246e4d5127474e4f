#pragma once

#include "UObject/UObjectBase.h"

class UPackage;

/** What every object can tell about itself, and the marks that decide its life. Game thread. */
class UObjectBaseUtility : public UObjectBase
{
public:
	bool HasAnyFlags(EObjectFlags Flags) const { return (GetFlags() & Flags) != RF_NoFlags; }
	bool HasAllFlags(EObjectFlags Flags) const { return (GetFlags() & Flags) == Flags; }
	/** Whether this or an outer is a class default object or another template. */
	bool IsTemplate(EObjectFlags TemplateTypes = RF_ArchetypeObject | RF_ClassDefaultObject) const;

	FString GetName() const { return GetFName().ToString(); }
	void GetName(FString& OutName) const { OutName = GetName(); }
	/** `/Script/Engine.Actor:BeginPlay`: names of the outers, from the package on. @param StopOuter not included. */
	FString GetPathName(const UObject* StopOuter = nullptr) const;
	/** The class's name, a blank and the path. */
	FString GetFullName(const UObject* StopOuter = nullptr) const;
	/** `/Script/Engine.Actor'/Game/Map.Map:Level.Actor_3'`, as object references are written to text. */
	FString GetExportPath() const;

	UPackage* GetOutermost() const { return GetPackage(); }
	UPackage* GetPackage() const;
	/** The nearest outer of this class, or null. */
	UObject* GetTypedOuter(const UClass* Target) const;
	template <typename T>
	T* GetTypedOuter() const
	{
		return (T*)GetTypedOuter(T::StaticClass());
	}
	/** Whether an outer, at any distance, is this object. */
	bool IsIn(const UObject* SomeOuter) const;

	bool IsA(const UClass* SomeBase) const;
	template <typename T>
	bool IsA() const
	{
		return IsA(T::StaticClass());
	}
	/** The C++ part of this object that implements the interface, or null. */
	void* GetInterfaceAddress(UClass* InterfaceClass);
	void* GetNativeInterfaceAddress(UClass* InterfaceClass) { return GetInterfaceAddress(InterfaceClass); }

	/** A rooted object lives until it is taken from the root, whatever refers to it. */
	void AddToRoot();
	void RemoveFromRoot();
	bool IsRooted() const;

	/** Declares the object dead: weak pointers read null at once, references to it become null and it is freed by the
	 * next collection. Rooted objects can't be marked. */
	void MarkAsGarbage();
	void ClearGarbage();
	bool IsUnreachable() const;

	/** Marks the package as changed. @return false for objects without one and for transient ones. */
	bool MarkPackageDirty() const;

protected:
	UObjectBaseUtility() = default;

	EInternalObjectFlags GetInternalFlags() const;

	friend bool IsValid(const UObject* Object);
};
