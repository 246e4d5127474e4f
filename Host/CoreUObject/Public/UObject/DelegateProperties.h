#pragma once

#include "UObject/Property.h"
#include "UObject/ScriptDelegates.h"

/** One object's function, bound by name. */
class FDelegateProperty : public TProperty<FScriptDelegate, FProperty>
{
	DECLARE_FIELD(FDelegateProperty, FProperty)
	using TProperty::TProperty;

	bool SameType(const FProperty* Other) const override;

	UFunction* SignatureFunction = nullptr;

protected:
	FString GetTypeText(FString* ExtendedTypeText) const override;
	bool IdenticalValues(const void* A, const void* B, uint32 PortFlags) const override;
	void ExportValue(FString& ValueStr, const void* Data, const void* Default, UObject* Parent, int32 PortFlags,
		UObject* ExportRootScope) const override;
	const TCHAR* ImportValue(const TCHAR* Buffer, void* Data, UObject* OwnerObject, int32 PortFlags,
		FOutputDevice* ErrorText) const override;
};

/** Any number of objects' functions. */
class FMulticastDelegateProperty : public TProperty<FMulticastScriptDelegate, FProperty>
{
	DECLARE_FIELD(FMulticastDelegateProperty, FProperty)
	using TProperty::TProperty;

	bool SameType(const FProperty* Other) const override;

	UFunction* SignatureFunction = nullptr;

protected:
	FString GetTypeText(FString* ExtendedTypeText) const override;
	bool IdenticalValues(const void* A, const void* B, uint32 PortFlags) const override;
	void ExportValue(FString& ValueStr, const void* Data, const void* Default, UObject* Parent, int32 PortFlags,
		UObject* ExportRootScope) const override;
	const TCHAR* ImportValue(const TCHAR* Buffer, void* Data, UObject* OwnerObject, int32 PortFlags,
		FOutputDevice* ErrorText) const override;
};
