#pragma once

#include "Core/CVXTypes.h"
#include "Dom/JsonObject.h"

/**
 * Reads a tool's arguments. Any thread.
 * @param OutErrorResult the result to return when it fails. @return whether OutObject is set.
 */
bool ParseToolArguments(
	const FString& ArgumentsJson, TSharedPtr<FJsonObject>& OutObject, FCVXToolExecutionResult& OutErrorResult);

/** A field as text; empty when it is missing or can't be one. */
FString GetStringArgument(const FJsonObject& Arguments, FStringView Name);

/**
 * A field as text. A missing one and a null leave InOutText as it is.
 * @return false with the result to give when the field is of a form that no text can be made of.
 */
bool ReadStringArgument(
	const FJsonObject& Arguments, FStringView Name, FString& InOutText, FCVXToolExecutionResult& OutError);

/** A field as a Boolean. @param Default where it is missing or can't be one. */
bool GetBoolArgument(const FJsonObject& Arguments, FStringView Name, bool bDefault);

/** A field as an integer: fractions are cut off, what is out of range becomes the nearest value. */
int32 GetIntArgument(const FJsonObject& Arguments, FStringView Name, int32 Default);

/** As `GetIntArgument`. @return whether there is such a number; OutValue stays when there isn't. */
bool TryGetIntArgument(const FJsonObject& Arguments, FStringView Name, int32& OutValue);
