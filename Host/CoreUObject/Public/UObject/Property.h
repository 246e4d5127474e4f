#pragma once

#include "UObject/Field.h"

class FOutputDevice;
class UStruct;

/** Declares how a kind of property writes its type, and writes and reads its values. */
#define DECLARE_PROPERTY_TEXT()                                                                                  \
	FString GetTypeText(FString* ExtendedTypeText) const override;                                               \
	void ExportValue(FString& ValueStr, const void* Data, const void* Default, UObject* Parent, int32 PortFlags, \
		UObject* ExportRootScope) const override;                                                                \
	const TCHAR* ImportValue(const TCHAR* Buffer, void* Data, UObject* OwnerObject, int32 PortFlags,             \
		FOutputDevice* ErrorText) const override;

/** The same, and how it compares them. */
#define DECLARE_PROPERTY_VALUE_FORM() \
	DECLARE_PROPERTY_TEXT()           \
	bool IdenticalValues(const void* A, const void* B, uint32 PortFlags) const override;

/** Declares how a kind of property makes, ends and copies its values. */
#define DECLARE_PROPERTY_VALUE_LIFE()              \
	void InitializeOne(void* Dest) const override; \
	void DestroyOne(void* Dest) const override;    \
	void CopyValue(void* Dest, const void* Source) const override;

/**
 * A typed place in a class, struct or frame. It handles values by address: the address of the value itself (the Data
 * and Value of the functions below) or of the whole container, from which it computes the value's. ArrayDim is 1 but
 * for C arrays. Game thread.
 */
class FProperty : public FField
{
	DECLARE_FIELD(FProperty, FField)

	using FField::FField;

	int32 GetElementSize() const { return ElementSize; }
	int32 GetSize() const { return ElementSize * ArrayDim; }
	int32 GetMinAlignment() const { return Alignment; }
	int32 GetOffset_ForInternal() const { return Offset; }
	int32 GetOffset_ForUFunction() const { return Offset; }
	bool IsInContainer(int32 ContainerSize) const { return Offset + GetSize() <= ContainerSize; }

	EPropertyFlags GetPropertyFlags() const { return PropertyFlags; }
	bool HasAnyPropertyFlags(uint64 Flags) const { return ((uint64)PropertyFlags & Flags) != 0; }
	bool HasAllPropertyFlags(uint64 Flags) const { return ((uint64)PropertyFlags & Flags) == Flags; }
	void SetPropertyFlags(EPropertyFlags Flags) { PropertyFlags |= Flags; }
	void ClearPropertyFlags(EPropertyFlags Flags) { PropertyFlags &= ~Flags; }

	template <typename ValueType = void>
	ValueType* ContainerPtrToValuePtr(void* Container, int32 ArrayIndex = 0) const
	{
		return (ValueType*)ValueAt(Container, ArrayIndex);
	}
	template <typename ValueType = void>
	const ValueType* ContainerPtrToValuePtr(const void* Container, int32 ArrayIndex = 0) const
	{
		return (const ValueType*)ValueAt((void*)Container, ArrayIndex);
	}

	/** Type text of C++: `TArray` with `<FString>` in ExtendedTypeText, or the whole where that is null. */
	FString GetCPPType(FString* ExtendedTypeText = nullptr, uint32 CPPExportFlags = 0) const;
	/** Whether both hold values of the same type. */
	virtual bool SameType(const FProperty* Other) const { return Other && GetClass() == Other->GetClass(); }

	/** Constructs and destroys all ArrayDim values. */
	void InitializeValue(void* Dest) const;
	void DestroyValue(void* Dest) const;
	void InitializeValue_InContainer(void* Container) const { InitializeValue(ValueAt(Container, 0)); }
	void DestroyValue_InContainer(void* Container) const { DestroyValue(ValueAt(Container, 0)); }
	/** Puts the default of the type back. */
	void ClearValue(void* Data) const;
	void ClearValue_InContainer(void* Container) const { ClearValue(ValueAt(Container, 0)); }

	/** Both ends hold values. Complete means all ArrayDim of them. */
	void CopySingleValue(void* Dest, const void* Source) const { CopyValue(Dest, Source); }
	void CopyCompleteValue(void* Dest, const void* Source) const;
	void CopyCompleteValue_InContainer(void* DestContainer, const void* SourceContainer) const
	{
		CopyCompleteValue(ValueAt(DestContainer, 0), ValueAt((void*)SourceContainer, 0));
	}
	void SetValue_InContainer(void* Container, const void* Value) const
	{
		CopyCompleteValue(ValueAt(Container, 0), Value);
	}
	void GetValue_InContainer(const void* Container, void* OutValue) const
	{
		CopyCompleteValue(OutValue, ValueAt((void*)Container, 0));
	}

	/** Compares one value; a null stands for the type's default. */
	bool Identical(const void* A, const void* B, uint32 PortFlags = 0) const;
	bool Identical_InContainer(const void* A, const void* B, int32 ArrayIndex = 0, uint32 PortFlags = 0) const;
	/** Aborts for a type that can't be a key. */
	virtual uint32 GetValueTypeHash(const void* Data) const;
	virtual bool CanBeKey() const { return false; }

	/**
	 * Reads one value from text. In a list (PPF_Delimited in PortFlags) texts are quoted.
	 * @param ErrorText told what is wrong; null for the log. @return behind what was read, or null, the value then
	 * unchanged.
	 */
	const TCHAR* ImportText_Direct(const TCHAR* Buffer, void* Data, UObject* OwnerObject, int32 PortFlags,
		FOutputDevice* ErrorText = nullptr) const;
	const TCHAR* ImportText_InContainer(const TCHAR* Buffer, void* Container, UObject* OwnerObject, int32 PortFlags,
		FOutputDevice* ErrorText = nullptr) const
	{
		return ImportText_Direct(Buffer, ValueAt(Container, 0), OwnerObject, PortFlags, ErrorText);
	}
	/**
	 * Appends the text of one value.
	 * @param Delta values equal to this are left out of structs; null or the value itself writes all. @return false,
	 * with nothing appended, if the whole value equals another Delta.
	 */
	bool ExportText_Direct(FString& ValueStr, const void* Data, const void* Delta, UObject* Parent, int32 PortFlags,
		UObject* ExportRootScope = nullptr) const;
	bool ExportText_InContainer(int32 Index, FString& ValueStr, const void* Container, const void* DefaultContainer,
		UObject* Parent, int32 PortFlags, UObject* ExportRootScope = nullptr) const;
	void ExportTextItem_Direct(FString& ValueStr, const void* Data, const void* Default, UObject* Parent,
		int32 PortFlags, UObject* ExportRootScope = nullptr) const;
	void ExportTextItem_InContainer(FString& ValueStr, const void* Container, const void* DefaultContainer,
		UObject* Parent, int32 PortFlags, UObject* ExportRootScope = nullptr) const;

	/** Whether a value may refer to objects that this reference keeps alive. */
	virtual bool ContainsObjectReference() const { return false; }
	/** Reports the objects that one value refers to. */
	virtual void CollectReferences([[maybe_unused]] void* Data, [[maybe_unused]] FReferenceCollector& Collector) const
	{
	}
	/** The same for all ArrayDim values. */
	void CollectReferences_InContainer(void* Container, FReferenceCollector& Collector) const;

	/** Whether all bits 0 is a default and the destructor has nothing to do. */
	virtual bool IsPlainOldData() const { return false; }
	/** Gets sizes from what the property refers to; the struct's link step calls it. */
	virtual void LinkType() {}
	/** Takes a run-time layout's offset. */
	void SetOffset_Internal(int32 NewOffset) { Offset = NewOffset; }
	/** Part of a container property, given over to it. */
	virtual void AddCppProperty(FProperty* Inner);
	/** Reports every property inside this one. */
	virtual void GetInnerFields([[maybe_unused]] TArray<FField*>& OutFields) const {}

	int32 ArrayDim = 1;
	EPropertyFlags PropertyFlags = CPF_None;
	/** The next property of the struct, parents' behind own ones. */
	FProperty* PropertyLinkNext = nullptr;
	FName RepNotifyFunc;

protected:
	friend class UStruct;
	friend class FReflectionBuilder;
	friend class FScriptArrayHelper;
	friend class FScriptSetHelper;
	friend class FScriptMapHelper;

	virtual FString GetTypeText(FString* ExtendedTypeText) const = 0;
	virtual void InitializeOne(void* Dest) const = 0;
	virtual void DestroyOne(void* Dest) const = 0;
	virtual void CopyValue(void* Dest, const void* Source) const = 0;
	virtual bool IdenticalValues(const void* A, const void* B, uint32 PortFlags) const = 0;
	virtual void ExportValue(FString& ValueStr, const void* Data, const void* Default, UObject* Parent, int32 PortFlags,
		UObject* ExportRootScope) const = 0;
	virtual const TCHAR* ImportValue(
		const TCHAR* Buffer, void* Data, UObject* OwnerObject, int32 PortFlags, FOutputDevice* ErrorText) const = 0;
	/** Whether a failed import may leave a value half changed, so that it has to work on a copy. */
	virtual bool ImportsInSteps() const { return false; }

	void* ValueAt(void* Container, int32 ArrayIndex) const
	{
		check(Container && ArrayIndex >= 0 && ArrayIndex < ArrayDim);
		return (uint8*)Container + Offset + ElementSize * ArrayIndex;
	}

	int32 ElementSize = 0;
	int32 Alignment = 1;
	int32 Offset = 0;
};

/** The part of a property that a C++ type decides. */
template <typename CppType, typename BaseType>
class TProperty : public BaseType
{
public:
	using TCppType = CppType;

	TProperty(FFieldVariant InOwner, FName InName, EObjectFlags InFlags = RF_NoFlags)
		: BaseType(InOwner, InName, InFlags)
	{
		this->ElementSize = (int32)sizeof(CppType);
		this->Alignment = (int32)alignof(CppType);
		if constexpr (bPlain)
		{
			this->SetPropertyFlags(CPF_IsPlainOldData | CPF_NoDestructor | CPF_ZeroConstructor);
		}
	}

	static const CppType& GetPropertyValue(const void* Data) { return *(const CppType*)Data; }
	static CppType* GetPropertyValuePtr(void* Data) { return (CppType*)Data; }
	static const CppType* GetPropertyValuePtr(const void* Data) { return (const CppType*)Data; }
	static void SetPropertyValue(void* Data, const CppType& Value) { *(CppType*)Data = Value; }
	const CppType& GetPropertyValue_InContainer(const void* Container, int32 ArrayIndex = 0) const
	{
		return *this->template ContainerPtrToValuePtr<CppType>(Container, ArrayIndex);
	}
	void SetPropertyValue_InContainer(void* Container, const CppType& Value, int32 ArrayIndex = 0) const
	{
		*this->template ContainerPtrToValuePtr<CppType>(Container, ArrayIndex) = Value;
	}
	CppType* GetPropertyValuePtr_InContainer(void* Container, int32 ArrayIndex = 0) const
	{
		return this->template ContainerPtrToValuePtr<CppType>(Container, ArrayIndex);
	}

	bool IsPlainOldData() const override { return bPlain; }

protected:
	static constexpr bool bPlain = std::is_trivially_copyable_v<CppType>;

	void InitializeOne(void* Dest) const override { ::new (Dest) CppType(); }
	void DestroyOne(void* Dest) const override { ((CppType*)Dest)->~CppType(); }
	void CopyValue(void* Dest, const void* Source) const override { *(CppType*)Dest = *(const CppType*)Source; }
};
