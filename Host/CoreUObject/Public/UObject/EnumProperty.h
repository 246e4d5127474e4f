#pragma once

#include "UObject/NumericProperty.h"

/** A byte, which may stand for an enumerator of a plain enumeration. */
class FByteProperty : public TNumericProperty<uint8>
{
	DECLARE_FIELD(FByteProperty, FNumericProperty)

	using TNumericProperty<uint8>::TNumericProperty;

	UEnum* GetIntPropertyEnum() const override { return Enum; }
	bool SameType(const FProperty* Other) const override;

	UEnum* Enum = nullptr;

protected:
	DECLARE_PROPERTY_TEXT()
};

/** An enumerator of a scoped enumeration, stored as the number type underneath. */
class FEnumProperty : public FProperty
{
	DECLARE_FIELD(FEnumProperty, FProperty)

	using FProperty::FProperty;
	~FEnumProperty() override;

	UEnum* GetEnum() const { return Enum; }
	void SetEnum(UEnum* InEnum) { Enum = InEnum; }
	FNumericProperty* GetUnderlyingProperty() const { return Underlying; }
	/** Gives the number property that stores the value; once. */
	void AddCppProperty(FProperty* Property) override;

	void LinkType() override;
	bool IsPlainOldData() const override { return true; }
	bool CanBeKey() const override { return true; }
	uint32 GetValueTypeHash(const void* Data) const override;
	bool SameType(const FProperty* Other) const override;
	void GetInnerFields(TArray<FField*>& OutFields) const override { OutFields.Add(Underlying); }

protected:
	DECLARE_PROPERTY_VALUE_FORM()
	void InitializeOne(void* Dest) const override;
	void DestroyOne(void*) const override {}
	void CopyValue(void* Dest, const void* Source) const override;

private:
	UEnum* Enum = nullptr;
	FNumericProperty* Underlying = nullptr;
};
