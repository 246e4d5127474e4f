#pragma once

#include "UObject/Property.h"

/** True or false: a bool, or one bit of a larger number. */
class FBoolProperty : public FProperty
{
	DECLARE_FIELD(FBoolProperty, FProperty)

	FBoolProperty(FFieldVariant InOwner, FName InName, EObjectFlags InFlags = RF_NoFlags);

	/** @param Data the address that ContainerPtrToValuePtr gives. */
	bool GetPropertyValue(const void* Data) const { return (*(const uint8*)Data & FieldMask) != 0; }
	void SetPropertyValue(void* Data, bool bValue) const;
	bool GetPropertyValue_InContainer(const void* Container, int32 ArrayIndex = 0) const
	{
		return GetPropertyValue(ContainerPtrToValuePtr<void>(Container, ArrayIndex));
	}
	void SetPropertyValue_InContainer(void* Container, bool bValue, int32 ArrayIndex = 0) const
	{
		SetPropertyValue(ContainerPtrToValuePtr<void>(Container, ArrayIndex), bValue);
	}
	/** Whether it is a whole bool and not a bit. */
	bool IsNativeBool() const { return FieldMask == 0xff; }
	/** Makes it the bit of this mask, of the byte at the property's offset. */
	void SetBitMask(uint8 Mask) { FieldMask = Mask; }

	bool IsPlainOldData() const override { return true; }
	uint32 GetValueTypeHash(const void* Data) const override { return GetPropertyValue(Data) ? 1 : 0; }

protected:
	DECLARE_PROPERTY_VALUE_FORM()
	void InitializeOne(void* Dest) const override { SetPropertyValue(Dest, false); }
	void DestroyOne(void*) const override {}
	void CopyValue(void* Dest, const void* Source) const override { SetPropertyValue(Dest, GetPropertyValue(Source)); }

private:
	uint8 FieldMask = 0xff;
};

/** A text that programs read. */
class FStrProperty : public TProperty<FString, FProperty>
{
	DECLARE_FIELD(FStrProperty, FProperty)
	using TProperty::TProperty;

	bool CanBeKey() const override { return true; }
	uint32 GetValueTypeHash(const void* Data) const override;

protected:
	DECLARE_PROPERTY_VALUE_FORM()
};

/** A name. */
class FNameProperty : public TProperty<FName, FProperty>
{
	DECLARE_FIELD(FNameProperty, FProperty)
	using TProperty::TProperty;

	bool CanBeKey() const override { return true; }
	uint32 GetValueTypeHash(const void* Data) const override;

protected:
	DECLARE_PROPERTY_VALUE_FORM()
};

/** A text that people read. */
class FTextProperty : public TProperty<FText, FProperty>
{
	DECLARE_FIELD(FTextProperty, FProperty)
	using TProperty::TProperty;

protected:
	DECLARE_PROPERTY_VALUE_FORM()
};
