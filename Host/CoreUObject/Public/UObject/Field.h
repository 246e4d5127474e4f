#pragma once

#include "UObject/MetaData.h"
#include "UObject/ObjectMacros.h"

class FField;
class UStruct;

/** One bit for each class of fields, so that casts are a test of a mask. */
enum EClassCastFlags : uint64
{
	CASTCLASS_None = 0,
	CASTCLASS_FField = 1ull << 0,
	CASTCLASS_FProperty = 1ull << 1,
	CASTCLASS_FNumericProperty = 1ull << 2,
	CASTCLASS_FInt8Property = 1ull << 3,
	CASTCLASS_FInt16Property = 1ull << 4,
	CASTCLASS_FIntProperty = 1ull << 5,
	CASTCLASS_FInt64Property = 1ull << 6,
	CASTCLASS_FByteProperty = 1ull << 7,
	CASTCLASS_FUInt16Property = 1ull << 8,
	CASTCLASS_FUInt32Property = 1ull << 9,
	CASTCLASS_FUInt64Property = 1ull << 10,
	CASTCLASS_FFloatProperty = 1ull << 11,
	CASTCLASS_FDoubleProperty = 1ull << 12,
	CASTCLASS_FBoolProperty = 1ull << 13,
	CASTCLASS_FEnumProperty = 1ull << 14,
	CASTCLASS_FStrProperty = 1ull << 15,
	CASTCLASS_FNameProperty = 1ull << 16,
	CASTCLASS_FTextProperty = 1ull << 17,
	CASTCLASS_FStructProperty = 1ull << 18,
	CASTCLASS_FObjectPropertyBase = 1ull << 19,
	CASTCLASS_FObjectProperty = 1ull << 20,
	CASTCLASS_FClassProperty = 1ull << 21,
	CASTCLASS_FWeakObjectProperty = 1ull << 22,
	CASTCLASS_FSoftObjectProperty = 1ull << 23,
	CASTCLASS_FSoftClassProperty = 1ull << 24,
	CASTCLASS_FInterfaceProperty = 1ull << 25,
	CASTCLASS_FArrayProperty = 1ull << 26,
	CASTCLASS_FSetProperty = 1ull << 27,
	CASTCLASS_FMapProperty = 1ull << 28,
	CASTCLASS_FDelegateProperty = 1ull << 29,
	CASTCLASS_FMulticastDelegateProperty = 1ull << 30,
};

/** The run-time class of a field: `IntProperty` and the like. Lives as long as the process. */
class FFieldClass
{
public:
	FFieldClass(const TCHAR* InName, uint64 OwnFlag, const FFieldClass* InSuper)
		: Name(InName)
		, CastFlags(OwnFlag | (InSuper ? InSuper->CastFlags : 0))
		, Id(OwnFlag)
		, Super(InSuper)
	{
	}

	/** Without the leading F. */
	FString GetName() const { return Name.ToString(); }
	FName GetFName() const { return Name; }
	uint64 GetCastFlags() const { return CastFlags; }
	uint64 GetId() const { return Id; }
	bool HasAnyCastFlags(uint64 Flags) const { return (CastFlags & Flags) != 0; }
	bool IsChildOf(const FFieldClass* Other) const { return (CastFlags & Other->Id) != 0; }
	const FFieldClass* GetSuperClass() const { return Super; }

private:
	FName Name;
	uint64 CastFlags;
	uint64 Id;
	const FFieldClass* Super;
};

#define DECLARE_FIELD(TClass, TSuper)                                                             \
public:                                                                                           \
	using Super = TSuper;                                                                         \
	using ThisClass = TClass;                                                                     \
	static constexpr uint64 StaticCastFlag = CASTCLASS_##TClass;                                  \
	static const FFieldClass* StaticClass()                                                       \
	{                                                                                             \
		static const FFieldClass Class(&TEXT(#TClass)[1], StaticCastFlag, TSuper::StaticClass()); \
		return &Class;                                                                            \
	}                                                                                             \
	const FFieldClass* GetClass() const override                                                  \
	{                                                                                             \
		return StaticClass();                                                                     \
	}

/** The owner of a field: a container property, or an object such as a class or function. */
class FFieldVariant
{
public:
	FFieldVariant() = default;
	FFieldVariant(FField* InField)
		: Field(InField)
	{
	}
	FFieldVariant(UObject* InObject)
		: Object(InObject)
	{
	}
	FFieldVariant(std::nullptr_t) {}

	bool IsValid() const { return Field || Object; }
	bool IsUObject() const { return Object != nullptr; }
	FField* ToField() const { return Field; }
	UObject* ToUObject() const { return Object; }

private:
	FField* Field = nullptr;
	UObject* Object = nullptr;
};

/** What properties have in common: a name, an owner, meta data and a place in the owner's list. Game thread. */
class FField : public FMetaDataOwner
{
public:
	FField(FFieldVariant InOwner, FName InName, EObjectFlags InFlags = RF_NoFlags)
		: Owner(InOwner)
		, NamePrivate(InName)
		, FlagsPrivate(InFlags)
	{
	}
	virtual ~FField() = default;
	FField(const FField&) = delete;
	FField& operator=(const FField&) = delete;

	static constexpr uint64 StaticCastFlag = CASTCLASS_FField;
	static const FFieldClass* StaticClass();
	virtual const FFieldClass* GetClass() const = 0;
	uint64 GetCastFlags() const { return GetClass()->GetCastFlags(); }
	bool IsA(const FFieldClass* Class) const { return GetClass()->IsChildOf(Class); }
	template <typename T>
	bool IsA() const
	{
		return (GetCastFlags() & T::StaticCastFlag) != 0;
	}

	FName GetFName() const { return NamePrivate; }
	FString GetName() const { return NamePrivate.ToString(); }
	/** The owner's path, a colon and the name. */
	FString GetPathName() const;
	FString GetFullName() const;
	FString GetAuthoredName() const { return GetName(); }
	/** Gives another name; no other field of the owner has it. */
	void Rename(FName NewName) { NamePrivate = NewName; }
	EObjectFlags GetFlags() const { return FlagsPrivate; }

	FFieldVariant GetOwnerVariant() const { return Owner; }
	/** The nearest object that owns this field, through container properties. */
	UObject* GetOwnerUObject() const;
	UClass* GetOwnerClass() const;
	UStruct* GetOwnerStruct() const;
	template <typename T>
	T* GetOwner() const;

	FText GetDisplayNameText() const;
	FText GetToolTipText(bool bShortToolTip = false) const;

	/** The next field of the same owner, in the order of declaration. */
	FField* Next = nullptr;

private:
	FFieldVariant Owner;
	FName NamePrivate;
	EObjectFlags FlagsPrivate;
};

/** The field as another class of fields, or null. */
template <typename T>
T* CastField(FField* Field)
{
	return Field && Field->IsA<T>() ? (T*)Field : nullptr;
}
template <typename T>
const T* CastField(const FField* Field)
{
	return Field && Field->IsA<T>() ? (const T*)Field : nullptr;
}
template <typename T>
T* CastFieldChecked(FField* Field)
{
	check(Field && Field->IsA<T>());
	return (T*)Field;
}
template <typename T>
const T* CastFieldChecked(const FField* Field)
{
	check(Field && Field->IsA<T>());
	return (const T*)Field;
}
template <typename T>
T* ExactCastField(FField* Field)
{
	return Field && Field->GetClass() == T::StaticClass() ? (T*)Field : nullptr;
}
