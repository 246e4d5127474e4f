#pragma once

#include "UObject/Property.h"

class UScriptStruct;

/** A struct by value. */
class FStructProperty : public FProperty
{
	DECLARE_FIELD(FStructProperty, FProperty)

	using FProperty::FProperty;

	void LinkType() override;
	bool IsPlainOldData() const override;
	bool CanBeKey() const override;
	uint32 GetValueTypeHash(const void* Data) const override;
	bool SameType(const FProperty* Other) const override;
	bool ContainsObjectReference() const override;
	void CollectReferences(void* Data, FReferenceCollector& Collector) const override;

	UScriptStruct* Struct = nullptr;

protected:
	FString GetTypeText(FString* ExtendedTypeText) const override;
	void InitializeOne(void* Dest) const override;
	void DestroyOne(void* Dest) const override;
	void CopyValue(void* Dest, const void* Source) const override;
	bool IdenticalValues(const void* A, const void* B, uint32 PortFlags) const override;
	void ExportValue(FString& ValueStr, const void* Data, const void* Default, UObject* Parent, int32 PortFlags,
		UObject* ExportRootScope) const override;
	const TCHAR* ImportValue(const TCHAR* Buffer, void* Data, UObject* OwnerObject, int32 PortFlags,
		FOutputDevice* ErrorText) const override;
	bool ImportsInSteps() const override { return true; }
};
