#pragma once

#include "Templates/TypeHash.h"

/** A plain enumeration stored in one byte. */
template <typename EnumType>
class TEnumAsByte
{
public:
	using EnumValueType = EnumType;

	TEnumAsByte() = default;
	TEnumAsByte(EnumType InValue)
		: Value((uint8)InValue)
	{
	}
	explicit TEnumAsByte(uint8 InValue)
		: Value(InValue)
	{
	}
	operator EnumType() const { return (EnumType)Value; }
	EnumType GetValue() const { return (EnumType)Value; }
	uint8 GetIntValue() const { return Value; }
	friend uint32 GetTypeHash(TEnumAsByte Item) { return GetTypeHash(Item.Value); }

private:
	uint8 Value = 0;
};
