#pragma once

#include "UObject/UField.h"

enum class EGetByNameFlags : uint32
{
	None = 0,
	ErrorIfNotFound = 1,
	CaseSensitive = 2,
	CheckAuthoredName = 4
};
ENUM_CLASS_FLAGS(EGetByNameFlags)

/**
 * An enumeration. Entries stand in the order of declaration; the last is the hidden maximum, `_MAX`, made by the
 * registry where the code has none. Full names are `EMode::Walk` for scoped enumerations and `MODE_Walk` for plain
 * ones. Game thread.
 */
class UEnum : public UField
{
	DECLARE_REFLECTED_CLASS(UEnum, UField)

	enum class ECppForm
	{
		Regular,
		Namespaced,
		EnumClass
	};

	UEnum() = default;

	int32 NumEnums() const { return Names.Num(); }
	ECppForm GetCppForm() const { return CppForm; }
	bool HasAnyEnumFlags(EEnumFlags Flags) const { return (EnumFlags & Flags) != EEnumFlags::None; }

	/** The full name, `EMode::Walk`. */
	template <typename EnumType>
	static FString GetValueAsString(EnumType Value)
	{
		return StaticEnum<EnumType>()->GetNameByValue((int64)Value).ToString();
	}
	template <typename EnumType>
	static FText GetDisplayValueAsText(EnumType Value)
	{
		return StaticEnum<EnumType>()->GetDisplayNameTextByValue((int64)Value);
	}

	FName GetNameByIndex(int32 Index) const;
	/** Without `EMode::`. @return an empty text outside of the entries. */
	FString GetNameStringByIndex(int32 Index) const;
	/** @return INDEX_NONE without the name. The short name of a scoped enumeration is found too, without regard to
	 * case. */
	int32 GetIndexByName(FName Name, EGetByNameFlags Flags = EGetByNameFlags::None) const;
	int32 GetIndexByNameString(const FString& Name, EGetByNameFlags Flags = EGetByNameFlags::None) const;
	int32 GetIndexByValue(int64 Value) const;

	/** The value of the entry; the index is valid. */
	int64 GetValueByIndex(int32 Index) const;
	int64 GetValueByName(FName Name, EGetByNameFlags Flags = EGetByNameFlags::None) const;
	int64 GetValueByNameString(const FString& Name, EGetByNameFlags Flags = EGetByNameFlags::None) const;
	/** @return NAME_None for a value that no entry has. */
	FName GetNameByValue(int64 Value) const;
	FString GetNameStringByValue(int64 Value) const;
	bool IsValidEnumValue(int64 Value) const { return GetIndexByValue(Value) != INDEX_NONE; }
	bool IsValidEnumName(FName Name) const { return GetIndexByName(Name) != INDEX_NONE; }
	int64 GetMaxEnumValue() const;
	/** Whether the last entry is the maximum. */
	bool ContainsExistingMax() const;

	/** The display name of the meta data, or one made from the name. */
	FText GetDisplayNameTextByIndex(int32 Index) const;
	FText GetDisplayNameTextByValue(int64 Value) const;
	FString GetAuthoredNameStringByIndex(int32 Index) const { return GetNameStringByIndex(Index); }
	FText GetToolTipTextByIndex(int32 Index) const;

	using FMetaDataOwner::FindMetaData;
	using FMetaDataOwner::GetMetaData;
	using FMetaDataOwner::HasMetaData;
	using FMetaDataOwner::SetMetaData;
	/** Meta data of an entry; INDEX_NONE means the enumeration itself. */
	bool HasMetaData(const TCHAR* Key, int32 NameIndex) const;
	FString GetMetaData(const TCHAR* Key, int32 NameIndex) const;
	void SetMetaData(const TCHAR* Key, const TCHAR* Value, int32 NameIndex);

	/** Replaces all entries; the maximum is added. Full names, as the form wants them. @return false for a name given
	 * twice, with no change. */
	bool SetEnums(const TArray<TPair<FName, int64>>& InNames, ECppForm InCppForm, EEnumFlags InFlags = EEnumFlags::None,
		bool bAddMaxKeyIfMissing = true);
	FString GenerateFullEnumName(const TCHAR* ShortName) const;
	/** Bytes of the C++ type. */
	int32 GetUnderlyingSize() const { return UnderlyingSize; }

	/** The C++ name, `EMode`. */
	FString CppType;

private:
	friend class FReflectionBuilder;

	FName EntryKey(const TCHAR* Key, int32 NameIndex) const;
	FString MaxName() const;

	TArray<TPair<FName, int64>> Names;
	ECppForm CppForm = ECppForm::Regular;
	EEnumFlags EnumFlags = EEnumFlags::None;
	int32 UnderlyingSize = 1;
};
