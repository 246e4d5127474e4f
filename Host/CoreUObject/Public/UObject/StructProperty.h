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
	DECLARE_PROPERTY_VALUE_LIFE()
	DECLARE_PROPERTY_VALUE_FORM()
	bool ImportsInSteps() const override { return true; }
};
