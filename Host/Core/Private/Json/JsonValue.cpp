#include "Dom/JsonValue.h"

#include "Dom/JsonObject.h"
#include "Json/JsonLog.h"
#include "Json/JsonNumber.h"

#include <cmath>
#include <limits>

const TCHAR* JsonTypeName(EJson Type)
{
	static constexpr const TCHAR* Names[] = {
		TEXT("None"), TEXT("Null"), TEXT("String"), TEXT("Number"), TEXT("Boolean"), TEXT("Array"), TEXT("Object")};
	return Names[(int32)Type];
}

FJsonValue::~FJsonValue()
{
	switch (Form)
	{
	case EForm::NumberText:
	case EForm::Text:
		Text.~FString();
		break;
	case EForm::Array:
		Array.~TArray();
		break;
	case EForm::Object:
		Object.~TSharedPtr();
		break;
	default:
		break;
	}
}

void FJsonValue::ReportMismatch(EJson Wanted) const
{
	UE_LOG(LogJson, Error, TEXT("Json Value of type '%s' used as a '%s'."), JsonTypeName(Type), JsonTypeName(Wanted));
}

double FJsonValue::AsNumber() const
{
	double Number = 0;
	if (!TryGetNumber(Number))
	{
		ReportMismatch(EJson::Number);
	}
	return Number;
}

FString FJsonValue::AsString() const
{
	FString String;
	if (!TryGetString(String))
	{
		ReportMismatch(EJson::String);
	}
	return String;
}

bool FJsonValue::AsBool() const
{
	bool bResult = false;
	if (!TryGetBool(bResult))
	{
		ReportMismatch(EJson::Boolean);
	}
	return bResult;
}

const TArray<TSharedPtr<FJsonValue>>& FJsonValue::AsArray() const
{
	static const TArray<TSharedPtr<FJsonValue>> Empty;
	const TArray<TSharedPtr<FJsonValue>>* Result = &Empty;
	if (!TryGetArray(Result))
	{
		ReportMismatch(EJson::Array);
	}
	return *Result;
}

const TSharedPtr<FJsonObject>& FJsonValue::AsObject() const
{
	const TSharedPtr<FJsonObject>* Result = nullptr;
	if (TryGetObject(Result))
	{
		return *Result;
	}
	ReportMismatch(EJson::Object);
	// Each thread has its own, renewed each time, so that what a caller puts into one is never seen by another.
	static thread_local TSharedPtr<FJsonObject> Empty;
	Empty = MakeShared<FJsonObject>();
	return Empty;
}

bool FJsonValue::TryGetNumber(double& OutNumber) const
{
	switch (Form)
	{
	case EForm::Double:
		OutNumber = Double;
		return true;
	case EForm::Signed:
		OutNumber = (double)Signed;
		return true;
	case EForm::Unsigned:
		OutNumber = (double)Unsigned;
		return true;
	case EForm::Boolean:
		OutNumber = bValue ? 1 : 0;
		return true;
	case EForm::NumberText:
		return JsonNumber::ToDouble(Text, OutNumber);
	case EForm::Text:
	case EForm::Utf8:
		return JsonNumber::ToDouble(AsString(), OutNumber);
	default:
		return false;
	}
}

bool FJsonValue::TryGetNumber(float& OutNumber) const
{
	double Number = 0;
	if (!TryGetNumber(Number) || std::fabs(Number) > (double)std::numeric_limits<float>::max())
	{
		return false;
	}
	OutNumber = (float)Number;
	return true;
}

template <typename T>
bool FJsonValue::TryGetInteger(T& OutNumber) const
{
	if (Form == EForm::Signed || Form == EForm::Unsigned)
	{
		const bool bFits = Form == EForm::Signed ? std::in_range<T>(Signed) : std::in_range<T>(Unsigned);
		OutNumber = bFits ? (T)Signed : OutNumber;
		return bFits;
	}
	double Number = 0;
	if (!TryGetNumber(Number))
	{
		return false;
	}
	const double Rounded = std::round(Number);
	// One above the largest T is a power of two, which a double holds exactly when the largest T itself it may not.
	const double Above = std::ldexp(1.0, std::numeric_limits<T>::digits);
	if (!(Rounded >= (double)std::numeric_limits<T>::min() && Rounded < Above))
	{
		return false;
	}
	OutNumber = (T)Rounded;
	return true;
}

bool FJsonValue::TryGetNumber(int8& OutNumber) const
{
	return TryGetInteger(OutNumber);
}

bool FJsonValue::TryGetNumber(int16& OutNumber) const
{
	return TryGetInteger(OutNumber);
}

bool FJsonValue::TryGetNumber(int32& OutNumber) const
{
	return TryGetInteger(OutNumber);
}

bool FJsonValue::TryGetNumber(int64& OutNumber) const
{
	return TryGetInteger(OutNumber);
}

bool FJsonValue::TryGetNumber(uint8& OutNumber) const
{
	return TryGetInteger(OutNumber);
}

bool FJsonValue::TryGetNumber(uint16& OutNumber) const
{
	return TryGetInteger(OutNumber);
}

bool FJsonValue::TryGetNumber(uint32& OutNumber) const
{
	return TryGetInteger(OutNumber);
}

bool FJsonValue::TryGetNumber(uint64& OutNumber) const
{
	return TryGetInteger(OutNumber);
}

bool FJsonValue::TryGetString(FString& OutString) const
{
	ANSICHAR Number[JsonNumber::MaxChars];
	switch (Form)
	{
	case EForm::Text:
	case EForm::NumberText:
		OutString = Text;
		return true;
	case EForm::Utf8:
		OutString = FString::FromUtf8(Utf8, Utf8Bytes);
		return true;
	case EForm::Boolean:
		OutString = bValue ? TEXT("true") : TEXT("false");
		return true;
	case EForm::Double:
		OutString = FString::FromUtf8(Number, JsonNumber::Write(Double, Number));
		return true;
	case EForm::Signed:
		OutString = FString::FromUtf8(Number, JsonNumber::Write(Signed, Number));
		return true;
	case EForm::Unsigned:
		OutString = FString::FromUtf8(Number, JsonNumber::Write(Unsigned, Number));
		return true;
	default:
		return false;
	}
}

bool FJsonValue::TryGetBool(bool& OutBool) const
{
	double Number = 0;
	switch (Form)
	{
	case EForm::Boolean:
		OutBool = bValue;
		return true;
	case EForm::Text:
	case EForm::Utf8:
		OutBool = AsString().ToBool();
		return true;
	default:
		if (!TryGetNumber(Number))
		{
			return false;
		}
		OutBool = Number != 0;
		return true;
	}
}

bool FJsonValue::TryGetArray(const TArray<TSharedPtr<FJsonValue>>*& OutArray) const
{
	if (Form != EForm::Array)
	{
		return false;
	}
	OutArray = &Array;
	return true;
}

bool FJsonValue::TryGetObject(const TSharedPtr<FJsonObject>*& OutObject) const
{
	if (Type != EJson::Object)
	{
		return false;
	}
	OutObject = &Object;
	return true;
}
