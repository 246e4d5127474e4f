#pragma once

#include "Containers/EnumAsByte.h"
#include "UObject/ObjectInitializer.h"
#include "UObject/ObjectPtr.h"
#include "UObject/ScriptDelegates.h"
#include "UObject/UObjectBaseUtility.h"

class FConfigCacheIni;
class FOutputDevice;
class FProperty;
struct FPropertyChangedChainEvent;
struct FPropertyChangedEvent;

/** How Rename goes about it. */
typedef uint32 ERenameFlags;
constexpr ERenameFlags REN_None = 0;
constexpr ERenameFlags REN_DontCreateRedirectors = 0x10;
constexpr ERenameFlags REN_NonTransactional = 0x20;
constexpr ERenameFlags REN_ForceNoResetLoaders = 0x1;
/** Only answers whether the new name is free. */
constexpr ERenameFlags REN_Test = 0x8;

/** The root of all reflected classes. Game thread. */
class UObject : public UObjectBaseUtility
{
	DECLARE_REFLECTED_CLASS(UObject, UObjectBaseUtility)

	UObject() = default;
	explicit UObject(const FObjectInitializer&) {}

	/** Runs once the object has its defaults and its config, before NewObject returns it. */
	virtual void PostInitProperties() {}
	virtual void PostLoad() {}
	/** First step of the end: the object lets go of what it holds. Overrides call Super. */
	virtual void BeginDestroy();
	virtual bool IsReadyForFinishDestroy() { return true; }
	/** Second step, just before the destructor. Overrides call Super. */
	virtual void FinishDestroy();
	virtual void PostRename(UObject* OldOuter, FName OldName);
	virtual void PostReloadConfig(FProperty* PropertyThatWasLoaded);

	/** Property editors call these around a change. */
	virtual void PreEditChange(FProperty* PropertyAboutToChange);
	virtual void PostEditChangeProperty(FPropertyChangedEvent& PropertyChangedEvent);
	virtual void PostEditChangeChainProperty(FPropertyChangedChainEvent& PropertyChangedEvent);
	/** Tells of a change without a property. */
	void PostEditChange();
	virtual bool CanEditChange(const FProperty* InProperty) const;

	/** Announces a change that undo should cover. @return whether the object took part. */
	virtual bool Modify(bool bAlwaysMarkDirty = true);
	virtual bool IsAsset() const;
	virtual void GetAssetRegistryTags(TMap<FName, FString>& OutTags) const;

	/**
	 * Reports the references of an object that its properties don't show. A class that holds such references declares a
	 * function of the same name, which calls Super's.
	 */
	static void AddReferencedObjects(UObject* InThis, FReferenceCollector& Collector);

	/**
	 * Gives the object another name, another outer or both.
	 * @param NewName null makes a unique name. @param NewOuter null keeps the outer. @return false, with no change, if
	 * the name is taken.
	 */
	virtual bool Rename(const TCHAR* NewName = nullptr, UObject* NewOuter = nullptr, ERenameFlags Flags = REN_None);

	/** The object whose values a new object of this class starts with: a template's own, or the class's defaults. */
	UObject* GetArchetype() const;
	UObject* GetDefaultSubobjectByName(FName ToFind);
	void GetDefaultSubobjects(TArray<UObject*>& OutSubobjects) const;

	/** Makes a part of this object. Constructors only. */
	UObject* CreateDefaultSubobject(
		FName Name, UClass* ReturnType, UClass* ClassToCreate, bool bRequired, bool bTransient);
	template <typename T>
	T* CreateDefaultSubobject(FName Name, bool bTransient = false)
	{
		return (T*)CreateDefaultSubobject(Name, T::StaticClass(), T::StaticClass(), true, bTransient);
	}

	/** The function of this name in the object's class or above; the checked form aborts without one. */
	UFunction* FindFunction(FName Name) const;
	UFunction* FindFunctionChecked(FName Name) const;
	/**
	 * Calls a function by reflection.
	 * @param Parms the function's frame: `ParmsSize` bytes, all values constructed. Out values and the result are left
	 * there. A function without a body leaves the frame as it is.
	 */
	virtual void ProcessEvent(UFunction* Function, void* Parms);

	/**
	 * Reads the config properties from the config of the class.
	 * @param ConfigClass the class whose section is read, null for the object's own. @param Filename null for the
	 * class's file. @param PropertyToLoad null for all. Values that can't be read keep theirs, with a warning.
	 */
	void LoadConfig(UClass* ConfigClass = nullptr, const TCHAR* Filename = nullptr, uint32 PropagationFlags = 0,
		FProperty* PropertyToLoad = nullptr);
	void ReloadConfig(UClass* ConfigClass = nullptr, const TCHAR* Filename = nullptr, uint32 PropagationFlags = 0,
		FProperty* PropertyToLoad = nullptr);
	/**
	 * Writes the properties with this flag to the class's section and saves the file.
	 * @param Filename null for the class's file. @param Config null for GConfig.
	 */
	void SaveConfig(uint64 Flags = CPF_Config, const TCHAR* Filename = nullptr, FConfigCacheIni* Config = nullptr,
		bool bAllowCopyToDefaultObject = true);
	/** Writes one config property to the file and leaves all else there as it is. */
	void UpdateSinglePropertyInConfigFile(const FProperty* InProperty, const FString& InConfigIniName);
	/** SaveConfig to the project's default file. @return whether the file was written. */
	bool TryUpdateDefaultConfigFile(const FString& SpecificFileLocation = FString(), bool bWarnIfFail = true);
	/** The project's `Config/Default<Name>.ini` of the class. */
	FString GetDefaultConfigFilename() const;
	virtual void OverridePerObjectConfigSection(FString& SectionName);
};

/** Whether the pointer is set and its object isn't marked as garbage. */
bool IsValid(const UObject* Object);

/** An object on its way out must not be used. */
inline const UObject* GetValid(const UObject* Object)
{
	return IsValid(Object) ? Object : nullptr;
}
