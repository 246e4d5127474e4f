#include "UObject/NumericProperty.h"

#include "PropertyText.h"

#include <cmath>
#include <limits>

namespace
{
template <typename T>
constexpr const TCHAR* TypeName = nullptr;
template <>
constexpr const TCHAR* TypeName<int8> = TEXT("int8");
template <>
constexpr const TCHAR* TypeName<int16> = TEXT("int16");
template <>
constexpr const TCHAR* TypeName<int32> = TEXT("int32");
template <>
constexpr const TCHAR* TypeName<int64> = TEXT("int64");
template <>
constexpr const TCHAR* TypeName<uint8> = TEXT("uint8");
template <>
constexpr const TCHAR* TypeName<uint16> = TEXT("uint16");
template <>
constexpr const TCHAR* TypeName<uint32> = TEXT("uint32");
template <>
constexpr const TCHAR* TypeName<uint64> = TEXT("uint64");
template <>
constexpr const TCHAR* TypeName<float> = TEXT("float");
template <>
constexpr const TCHAR* TypeName<double> = TEXT("double");

/** The value cut to the range of T; NaN becomes 0 for integers. */
template <typename T>
T ClampReal(double Value)
{
	if constexpr (std::is_floating_point_v<T>)
	{
		return (T)Value;
	}
	else
	{
		constexpr double Low = (double)std::numeric_limits<T>::min();
		constexpr double High = (double)std::numeric_limits<T>::max();
		if (std::isnan(Value))
		{
			return 0;
		}
		return Value <= Low ? std::numeric_limits<T>::min()
							: (Value >= High ? std::numeric_limits<T>::max() : (T)Value);
	}
}

template <typename T, typename WideType>
T ClampInteger(WideType Value)
{
	if constexpr (std::is_floating_point_v<T>)
	{
		return (T)Value;
	}
	else
	{
		using FLimits = std::numeric_limits<T>;
		return std::cmp_less(Value, FLimits::min())   ? FLimits::min()
			: std::cmp_greater(Value, FLimits::max()) ? FLimits::max()
													  : (T)Value;
	}
}

/** Whether the integer is one of T. */
template <typename T>
bool Fits(const PropertyText::FWideInteger& Integer, T& Out)
{
	const uint64 Limit =
		Integer.bNegative ? (uint64)0 - (uint64)std::numeric_limits<T>::min() : (uint64)std::numeric_limits<T>::max();
	if (Integer.Magnitude > Limit)
	{
		return false;
	}
	Out = (T)(Integer.bNegative ? (uint64)0 - Integer.Magnitude : Integer.Magnitude);
	return true;
}
} // namespace

bool FNumericProperty::SetNumericPropertyValueFromString(void* Data, const TCHAR* Value) const
{
	const TCHAR* Behind = ImportText_Direct(PropertyText::SkipBlanks(Value), Data, nullptr, 0);
	return Behind && *PropertyText::SkipBlanks(Behind) == 0;
}

FString FNumericProperty::GetNumericPropertyValueToString(const void* Data) const
{
	FString Text;
	ExportTextItem_Direct(Text, Data, nullptr, nullptr, 0);
	return Text;
}

template <typename NumberType>
bool TNumericProperty<NumberType>::CanHoldValue(int64 Value) const
{
	if constexpr (std::is_floating_point_v<NumberType>)
	{
		return (int64)(NumberType)Value == Value;
	}
	else
	{
		return std::in_range<NumberType>(Value);
	}
}

template <typename NumberType>
void TNumericProperty<NumberType>::SetIntPropertyValue(void* Data, int64 Value) const
{
	*(NumberType*)Data = ClampInteger<NumberType>(Value);
}

template <typename NumberType>
void TNumericProperty<NumberType>::SetIntPropertyValue(void* Data, uint64 Value) const
{
	*(NumberType*)Data = ClampInteger<NumberType>(Value);
}

template <typename NumberType>
void TNumericProperty<NumberType>::SetFloatingPointPropertyValue(void* Data, double Value) const
{
	*(NumberType*)Data = ClampReal<NumberType>(Value);
}

template <typename NumberType>
int64 TNumericProperty<NumberType>::GetSignedIntPropertyValue(const void* Data) const
{
	if constexpr (std::is_floating_point_v<NumberType>)
	{
		return ClampReal<int64>((double)*(const NumberType*)Data);
	}
	else
	{
		return (int64) * (const NumberType*)Data;
	}
}

template <typename NumberType>
uint64 TNumericProperty<NumberType>::GetUnsignedIntPropertyValue(const void* Data) const
{
	if constexpr (std::is_floating_point_v<NumberType>)
	{
		return ClampReal<uint64>((double)*(const NumberType*)Data);
	}
	else
	{
		return (uint64) * (const NumberType*)Data;
	}
}

template <typename NumberType>
double TNumericProperty<NumberType>::GetFloatingPointPropertyValue(const void* Data) const
{
	return (double)*(const NumberType*)Data;
}

template <typename NumberType>
uint32 TNumericProperty<NumberType>::GetValueTypeHash(const void* Data) const
{
	return GetTypeHash(*(const NumberType*)Data);
}

template <typename NumberType>
FString TNumericProperty<NumberType>::GetTypeText(FString*) const
{
	return TypeName<NumberType>;
}

template <typename NumberType>
bool TNumericProperty<NumberType>::IdenticalValues(const void* A, const void* B, uint32) const
{
	return *(const NumberType*)A == *(const NumberType*)B;
}

template <typename NumberType>
void TNumericProperty<NumberType>::ExportValue(
	FString& ValueStr, const void* Data, const void*, UObject*, int32, UObject*) const
{
	const NumberType Value = *(const NumberType*)Data;
	if constexpr (std::is_floating_point_v<NumberType>)
	{
		ValueStr += PropertyText::FormatReal(Value);
	}
	else
	{
		ValueStr += LexToString(Value);
	}
}

template <typename NumberType>
const TCHAR* TNumericProperty<NumberType>::ImportValue(
	const TCHAR* Buffer, void* Data, UObject*, int32, FOutputDevice* ErrorText) const
{
	const TCHAR* Behind = nullptr;
	NumberType Value = 0;
	if constexpr (std::is_floating_point_v<NumberType>)
	{
		double Real = 0;
		Behind = PropertyText::ReadReal(Buffer, Real);
		Value = (NumberType)Real;
	}
	else
	{
		PropertyText::FWideInteger Integer;
		Behind = PropertyText::ReadInteger(Buffer, Integer);
		Behind = Behind && Fits<NumberType>(Integer, Value) ? Behind : nullptr;
	}
	if (!Behind)
	{
		PropertyText::Report(ErrorText,
			FString::Printf(TEXT("%s: '%s' is no value of type %s"), *this->GetName(), *FString(Buffer).Left(40),
				TypeName<NumberType>));
		return nullptr;
	}
	*(NumberType*)Data = Value;
	return Behind;
}

template class TNumericProperty<int8>;
template class TNumericProperty<int16>;
template class TNumericProperty<int32>;
template class TNumericProperty<int64>;
template class TNumericProperty<uint8>;
template class TNumericProperty<uint16>;
template class TNumericProperty<uint32>;
template class TNumericProperty<uint64>;
template class TNumericProperty<float>;
template class TNumericProperty<double>;
