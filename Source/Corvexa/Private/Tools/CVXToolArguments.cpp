#include "Tools/CVXToolArguments.h"

#include "Core/CVXJsonObject.h"

#include <cmath>

bool ParseToolArguments(
	const FString& ArgumentsJson, TSharedPtr<FJsonObject>& OutObject, FCVXToolExecutionResult& OutErrorResult)
{
	if (ArgumentsJson.Len() < 1)
	{
		OutErrorResult = FCVXToolExecutionResult::MakeError(TEXT("Empty JSON input."));
		return false;
	}
	OutObject = CVXJsonObject::Parse(ArgumentsJson);
	if (!OutObject)
	{
		OutErrorResult = FCVXToolExecutionResult::MakeError(TEXT("Invalid JSON input."));
		return false;
	}
	return true;
}

FString GetStringArgument(const FJsonObject& Arguments, FStringView Name)
{
	FString Text;
	Arguments.TryGetStringField(Name, Text);
	return Text;
}

bool ReadStringArgument(
	const FJsonObject& Arguments, FStringView Name, FString& InOutText, FCVXToolExecutionResult& OutError)
{
	if (Arguments.TryGetStringField(Name, InOutText) || !Arguments.HasField(Name) ||
		Arguments.HasTypedField<EJson::Null>(Name))
	{
		return true;
	}
	OutError = FCVXToolExecutionResult::MakeError(FString::Printf(TEXT("'%s' must be a string."), *FString(Name)));
	return false;
}

bool GetBoolArgument(const FJsonObject& Arguments, FStringView Name, bool bDefault)
{
	bool bValue = bDefault;
	Arguments.TryGetBoolField(Name, bValue);
	return bValue;
}

int32 GetIntArgument(const FJsonObject& Arguments, FStringView Name, int32 Default)
{
	int32 Value = Default;
	(void)TryGetIntArgument(Arguments, Name, Value);
	return Value;
}

bool TryGetIntArgument(const FJsonObject& Arguments, FStringView Name, int32& OutValue)
{
	double Number = 0.0;
	if (!Arguments.TryGetNumberField(Name, Number) || std::isnan(Number))
	{
		return false;
	}
	OutValue = FMath::TruncToInt(Number);
	return true;
}
