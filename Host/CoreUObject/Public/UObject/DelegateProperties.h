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
	DECLARE_PROPERTY_VALUE_FORM()
};

/** Any number of objects' functions. */
class FMulticastDelegateProperty : public TProperty<FMulticastScriptDelegate, FProperty>
{
	DECLARE_FIELD(FMulticastDelegateProperty, FProperty)
	using TProperty::TProperty;

	bool SameType(const FProperty* Other) const override;

	UFunction* SignatureFunction = nullptr;

protected:
	DECLARE_PROPERTY_VALUE_FORM()
};
