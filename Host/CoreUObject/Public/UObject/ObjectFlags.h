#pragma once

#include "Misc/EnumClassFlags.h"

/** What an object is and in which state. */
enum EObjectFlags : uint32
{
	RF_NoFlags = 0,
	RF_Public = 0x1,
	/** Kept by a collection even if nothing refers to it, as assets are. */
	RF_Standalone = 0x2,
	RF_MarkAsNative = 0x4,
	RF_Transactional = 0x8,
	/** The object that holds its class's defaults. */
	RF_ClassDefaultObject = 0x10,
	/** A template for other objects. Defaults are templates too. */
	RF_ArchetypeObject = 0x20,
	RF_Transient = 0x40,
	RF_NeedInitialization = 0x200,
	RF_NeedLoad = 0x400,
	RF_NeedPostLoad = 0x1000,
	RF_BeginDestroyed = 0x8000,
	RF_FinishDestroyed = 0x10000,
	/** Made by a constructor as a part of its outer. */
	RF_DefaultSubObject = 0x40000,
	RF_WasLoaded = 0x80000,
	RF_LoadCompleted = 0x200000,
	RF_InheritableComponentTemplate = 0x400000,
	RF_DuplicateTransient = 0x800000,
	RF_NonPIEDuplicateTransient = 0x2000000,
	RF_MirroredGarbage = 0x40000000,
	RF_AllFlags = 0xffffffff
};
ENUM_CLASS_FLAGS(EObjectFlags)

/** Flags of the object table, apart from the object's own. */
enum class EInternalObjectFlags : int32
{
	None = 0,
	Native = 1 << 25,
	/** Marked as dead by MarkAsGarbage: IsValid is false, the next collection frees it. */
	Garbage = 1 << 21,
	/** Held by AddToRoot. */
	RootSet = 1 << 30,
	/** Not reached by the collection that runs. */
	Unreachable = 1 << 28
};
ENUM_CLASS_FLAGS(EInternalObjectFlags)

enum EClassFlags : uint32
{
	CLASS_None = 0,
	CLASS_Abstract = 0x1,
	CLASS_DefaultConfig = 0x2,
	CLASS_Config = 0x4,
	CLASS_Transient = 0x8,
	CLASS_ProjectUserConfig = 0x40,
	CLASS_Native = 0x80,
	CLASS_NotPlaceable = 0x200,
	CLASS_PerObjectConfig = 0x400,
	CLASS_EditInlineNew = 0x1000,
	CLASS_CollapseCategories = 0x2000,
	CLASS_Interface = 0x4000,
	CLASS_Const = 0x10000,
	CLASS_CompiledFromBlueprint = 0x40000,
	CLASS_MinimalAPI = 0x80000,
	CLASS_DefaultToInstanced = 0x200000,
	CLASS_HasInstancedReference = 0x800000,
	CLASS_Hidden = 0x1000000,
	CLASS_Deprecated = 0x2000000,
	CLASS_HideDropDown = 0x4000000,
	CLASS_GlobalUserConfig = 0x8000000,
	CLASS_Intrinsic = 0x10000000,
	CLASS_Constructed = 0x20000000,
	CLASS_NewerVersionExists = 0x80000000,
	/** Handed down to child classes. */
	CLASS_Inherit = CLASS_Transient | CLASS_DefaultConfig | CLASS_Config | CLASS_PerObjectConfig | CLASS_NotPlaceable |
		CLASS_Const | CLASS_HasInstancedReference | CLASS_Deprecated | CLASS_DefaultToInstanced |
		CLASS_GlobalUserConfig | CLASS_ProjectUserConfig | CLASS_Interface | CLASS_EditInlineNew
};
ENUM_CLASS_FLAGS(EClassFlags)

enum EStructFlags : uint32
{
	STRUCT_NoFlags = 0,
	STRUCT_Native = 0x1,
	STRUCT_IdenticalNative = 0x2,
	STRUCT_NoExport = 0x8,
	STRUCT_Atomic = 0x10,
	/** Set by the link step for plain old data: copied as bytes, no destructor. */
	STRUCT_IsPlainOldData = 0x800,
	STRUCT_NoDestructor = 0x1000
};
ENUM_CLASS_FLAGS(EStructFlags)

enum class EEnumFlags : uint8
{
	None = 0,
	/** The values are bits. */
	Flags = 1,
	NewerVersionExists = 2
};
ENUM_CLASS_FLAGS(EEnumFlags)

/** The flags that make a collection keep an object all the same. */
constexpr EObjectFlags GARBAGE_COLLECTION_KEEPFLAGS = RF_Standalone;
