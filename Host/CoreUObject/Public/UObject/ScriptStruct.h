#pragma once

#include "UObject/Struct.h"

class FOutputDevice;

/** How C++ handles values of one struct type. */
struct FCppStructOps
{
	int32 Size = 0;
	int32 Alignment = 1;
	void (*Construct)(void* Dest) = nullptr;
	void (*Destruct)(void* Dest) = nullptr;
	void (*Copy)(void* Dest, const void* Source) = nullptr;
	/** The following are null for types without the operation. */
	bool (*Identical)(const void* A, const void* B) = nullptr;
	uint32 (*GetTypeHash)(const void* Value) = nullptr;
	/** Reads a form of text of the type's own; false leaves Buffer and lets the common form be tried. */
	bool (*ImportTextItem)(
		void* Value, const TCHAR*& Buffer, int32 PortFlags, UObject* Parent, FOutputDevice* Error) = nullptr;
	/** Writes a form of text of the type's own; false lets the common form be written. */
	bool (*ExportTextItem)(const void* Value, FString& Text, const void* Default, UObject* Parent, int32 PortFlags,
		UObject* Root) = nullptr;
	void (*AddStructReferencedObjects)(void* Value, FReferenceCollector& Collector) = nullptr;
	bool bIsPlainOldData = false;
};

/** A struct type: one of C++, or one made at run time from properties alone. Game thread. */
class UScriptStruct : public UStruct
{
	DECLARE_REFLECTED_CLASS(UScriptStruct, UStruct)

	UScriptStruct() = default;

	const FCppStructOps* GetCppStructOps() const { return CppStructOps; }
	/** `FVector` for the struct Vector. */
	FString GetStructCPPName() const { return FString(GetPrefixCPP()) + GetName(); }

	void StaticLink(bool bRelinkExistingProperties = false) override;
	void InitializeStruct(void* Dest, int32 ArrayDim = 1) const override;
	void DestroyStruct(void* Dest, int32 ArrayDim = 1) const override;
	void ClearScriptStruct(void* Dest, int32 ArrayDim = 1) const;
	/** Both ends hold values. */
	void CopyScriptStruct(void* Dest, const void* Source, int32 ArrayDim = 1) const;
	bool CompareScriptStruct(const void* A, const void* B, uint32 PortFlags) const;
	/** Aborts for a struct without a hash. */
	uint32 GetStructTypeHash(const void* Source) const;
	bool HasTypeHash() const;

	/**
	 * Reads `(X=1,Name="a")` into a value. Members that aren't named keep theirs; unknown ones are skipped with a
	 * warning.
	 * @param StructName for messages. @return behind what was read, or null after an error, the value then half
	 * changed.
	 */
	const TCHAR* ImportText(const TCHAR* Buffer, void* Value, UObject* OwnerObject, int32 PortFlags,
		FOutputDevice* ErrorText, const FString& StructName, bool bAllowNativeOverride = true) const;
	/** Appends the text. @param Defaults members equal to these are left out; null writes all. */
	void ExportText(FString& ValueStr, const void* Value, const void* Defaults, UObject* OwnerObject, int32 PortFlags,
		UObject* ExportRootScope, bool bAllowNativeOverride = true) const;

	EStructFlags StructFlags = STRUCT_NoFlags;

private:
	friend class FReflectionBuilder;

	const FCppStructOps* CppStructOps = nullptr;
};
