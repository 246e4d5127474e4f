#pragma once

#include "UObject/Property.h"

/** A number, by way of the widest type of its kind. */
class FNumericProperty : public FProperty
{
	DECLARE_FIELD(FNumericProperty, FProperty)

	using FProperty::FProperty;

	virtual bool IsFloatingPoint() const = 0;
	bool IsInteger() const { return !IsFloatingPoint(); }
	virtual bool CanHoldValue(int64 Value) const = 0;
	virtual UEnum* GetIntPropertyEnum() const { return nullptr; }
	bool IsEnum() const { return GetIntPropertyEnum() != nullptr; }

	/** Values of other types are converted; integers out of range are cut to it. */
	virtual void SetIntPropertyValue(void* Data, int64 Value) const = 0;
	virtual void SetIntPropertyValue(void* Data, uint64 Value) const = 0;
	virtual void SetFloatingPointPropertyValue(void* Data, double Value) const = 0;
	virtual int64 GetSignedIntPropertyValue(const void* Data) const = 0;
	virtual uint64 GetUnsignedIntPropertyValue(const void* Data) const = 0;
	virtual double GetFloatingPointPropertyValue(const void* Data) const = 0;
	/** Reads a number and no more. @return false, with no change, for anything else. */
	virtual bool SetNumericPropertyValueFromString(void* Data, const TCHAR* Value) const;
	FString GetNumericPropertyValueToString(const void* Data) const;

	bool CanBeKey() const override { return true; }
};

/** A number of one C++ type. */
template <typename NumberType>
class TNumericProperty : public TProperty<NumberType, FNumericProperty>
{
public:
	using TProperty<NumberType, FNumericProperty>::TProperty;

	bool IsFloatingPoint() const override { return std::is_floating_point_v<NumberType>; }
	bool CanHoldValue(int64 Value) const override;
	void SetIntPropertyValue(void* Data, int64 Value) const override;
	void SetIntPropertyValue(void* Data, uint64 Value) const override;
	void SetFloatingPointPropertyValue(void* Data, double Value) const override;
	int64 GetSignedIntPropertyValue(const void* Data) const override;
	uint64 GetUnsignedIntPropertyValue(const void* Data) const override;
	double GetFloatingPointPropertyValue(const void* Data) const override;
	uint32 GetValueTypeHash(const void* Data) const override;

protected:
	DECLARE_PROPERTY_VALUE_FORM()
};

extern template class TNumericProperty<int8>;
extern template class TNumericProperty<int16>;
extern template class TNumericProperty<int32>;
extern template class TNumericProperty<int64>;
extern template class TNumericProperty<uint8>;
extern template class TNumericProperty<uint16>;
extern template class TNumericProperty<uint32>;
extern template class TNumericProperty<uint64>;
extern template class TNumericProperty<float>;
extern template class TNumericProperty<double>;

#define DECLARE_NUMERIC_PROPERTY(TClass, TNumber)          \
	class TClass : public TNumericProperty<TNumber>        \
	{                                                      \
		DECLARE_FIELD(TClass, FNumericProperty)            \
		using TNumericProperty<TNumber>::TNumericProperty; \
	};

DECLARE_NUMERIC_PROPERTY(FInt8Property, int8)
DECLARE_NUMERIC_PROPERTY(FInt16Property, int16)
DECLARE_NUMERIC_PROPERTY(FIntProperty, int32)
DECLARE_NUMERIC_PROPERTY(FInt64Property, int64)
DECLARE_NUMERIC_PROPERTY(FUInt16Property, uint16)
DECLARE_NUMERIC_PROPERTY(FUInt32Property, uint32)
DECLARE_NUMERIC_PROPERTY(FUInt64Property, uint64)
DECLARE_NUMERIC_PROPERTY(FFloatProperty, float)
DECLARE_NUMERIC_PROPERTY(FDoubleProperty, double)

#undef DECLARE_NUMERIC_PROPERTY
