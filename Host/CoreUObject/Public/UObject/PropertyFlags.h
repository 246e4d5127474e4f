#pragma once

#include "Misc/EnumClassFlags.h"

enum EPropertyFlags : uint64
{
	CPF_None = 0,
	/** Editable in property editors. */
	CPF_Edit = 0x1,
	CPF_ConstParm = 0x2,
	CPF_BlueprintVisible = 0x4,
	CPF_ExportObject = 0x8,
	CPF_BlueprintReadOnly = 0x10,
	CPF_Net = 0x20,
	CPF_EditFixedSize = 0x40,
	CPF_Parm = 0x80,
	CPF_OutParm = 0x100,
	/** All bits 0 is a valid default. */
	CPF_ZeroConstructor = 0x200,
	CPF_ReturnParm = 0x400,
	CPF_DisableEditOnTemplate = 0x800,
	CPF_Transient = 0x2000,
	/** Read from and written to the class's config file. */
	CPF_Config = 0x4000,
	CPF_DisableEditOnInstance = 0x10000,
	CPF_EditConst = 0x20000,
	/** Config of the class that declares it, for child classes too. */
	CPF_GlobalConfig = 0x40000,
	CPF_InstancedReference = 0x80000,
	CPF_DuplicateTransient = 0x200000,
	CPF_SaveGame = 0x1000000,
	CPF_NoClear = 0x2000000,
	CPF_ReferenceParm = 0x8000000,
	CPF_BlueprintAssignable = 0x10000000,
	CPF_Deprecated = 0x20000000,
	CPF_IsPlainOldData = 0x40000000,
	CPF_RepSkip = 0x80000000,
	CPF_RepNotify = 0x100000000,
	CPF_Interp = 0x200000000,
	CPF_NonTransactional = 0x400000000,
	CPF_EditorOnly = 0x800000000,
	CPF_NoDestructor = 0x1000000000,
	CPF_AutoWeak = 0x4000000000,
	CPF_ContainsInstancedReference = 0x8000000000,
	CPF_AssetRegistrySearchable = 0x10000000000,
	CPF_SimpleDisplay = 0x20000000000,
	CPF_AdvancedDisplay = 0x40000000000,
	CPF_Protected = 0x80000000000,
	CPF_BlueprintCallable = 0x100000000000,
	CPF_BlueprintAuthorityOnly = 0x200000000000,
	CPF_TextExportTransient = 0x400000000000,
	CPF_NonPIEDuplicateTransient = 0x800000000000,
	CPF_ExposeOnSpawn = 0x1000000000000,
	CPF_PersistentInstance = 0x2000000000000,
	CPF_UObjectWrapper = 0x4000000000000,
	CPF_HasGetValueTypeHash = 0x8000000000000,
	CPF_NativeAccessSpecifierPublic = 0x10000000000000,
	CPF_NativeAccessSpecifierProtected = 0x20000000000000,
	CPF_NativeAccessSpecifierPrivate = 0x40000000000000,
	CPF_SkipSerialization = 0x80000000000000,

	CPF_ParmFlags = CPF_Parm | CPF_OutParm | CPF_ReturnParm | CPF_ReferenceParm | CPF_ConstParm,
	CPF_NativeAccessSpecifiers =
		CPF_NativeAccessSpecifierPublic | CPF_NativeAccessSpecifierProtected | CPF_NativeAccessSpecifierPrivate
};
ENUM_CLASS_FLAGS(EPropertyFlags)

/** How a value is written to text. */
enum EPropertyPortFlags : uint32
{
	PPF_None = 0,
	PPF_Copy = 0x1,
	/** The value stands inside a list: texts are quoted, and a reader stops at a comma or bracket. */
	PPF_Delimited = 0x2,
	PPF_ParsingDefaultProperties = 0x40,
	/** Objects are written as their path alone. */
	PPF_SimpleObjectText = 0x20,
	/** Values that equal the defaults aren't left out. */
	PPF_ExportsNotFullyQualified = 0x8000,
	PPF_SeparateDeclare = 0x40000
};
