#include "Dom/JsonObject.h"

#include "Json/JsonLog.h"

DEFINE_LOG_CATEGORY(LogJson);

bool FJsonObject::HasTypedField(FStringView FieldName, EJson JsonType) const
{
	const TSharedPtr<FJsonValue>* Value = Values.Find(FieldName);
	return Value && *Value && (JsonType == EJson::None || (*Value)->Type == JsonType);
}

TSharedPtr<FJsonValue> FJsonObject::GetField(FStringView FieldName, EJson JsonType) const
{
	const TSharedPtr<FJsonValue>* Value = Values.Find(FieldName);
	if (Value && *Value && (JsonType == EJson::None || (*Value)->Type == JsonType))
	{
		return *Value;
	}
	const FString Name(FieldName);
	if (Value && *Value)
	{
		UE_LOG(LogJson, Error, TEXT("Field %s is of the wrong type."), *Name);
	}
	else
	{
		UE_LOG(LogJson, Error, TEXT("Field %s was not found."), *Name);
	}
	return MakeShared<FJsonValueNull>();
}

int32 FJsonObject::GetIntegerField(FStringView FieldName) const
{
	int32 Number = 0;
	if (!TryGetNumberField(FieldName, Number))
	{
		UE_LOG(LogJson, Error, TEXT("Field %s is no 32-bit integer."), *FString(FieldName));
	}
	return Number;
}

const TArray<TSharedPtr<FJsonValue>>& FJsonObject::GetArrayField(FStringView FieldName) const
{
	const TSharedPtr<FJsonValue>* Value = Values.Find(FieldName);
	return Value && *Value ? (*Value)->AsArray() : GetField(FieldName, EJson::Array)->AsArray();
}

const TSharedPtr<FJsonObject>& FJsonObject::GetObjectField(FStringView FieldName) const
{
	const TSharedPtr<FJsonValue>* Value = Values.Find(FieldName);
	return Value && *Value ? (*Value)->AsObject() : GetField(FieldName, EJson::Object)->AsObject();
}

bool FJsonObject::TryGetStringField(FStringView FieldName, FString& OutString) const
{
	const TSharedPtr<FJsonValue>* Value = Values.Find(FieldName);
	return Value && *Value && (*Value)->TryGetString(OutString);
}

bool FJsonObject::TryGetStringArrayField(FStringView FieldName, TArray<FString>& OutArray) const
{
	const TArray<TSharedPtr<FJsonValue>>* Array = nullptr;
	if (!TryGetArrayField(FieldName, Array))
	{
		return false;
	}
	TArray<FString> Strings;
	for (const TSharedPtr<FJsonValue>& Element : *Array)
	{
		if (!Element || !Element->TryGetString(Strings.AddDefaulted_GetRef()))
		{
			return false;
		}
	}
	OutArray = MoveTemp(Strings);
	return true;
}

bool FJsonObject::TryGetBoolField(FStringView FieldName, bool& OutBool) const
{
	const TSharedPtr<FJsonValue>* Value = Values.Find(FieldName);
	return Value && *Value && (*Value)->TryGetBool(OutBool);
}

bool FJsonObject::TryGetArrayField(FStringView FieldName, const TArray<TSharedPtr<FJsonValue>>*& OutArray) const
{
	const TSharedPtr<FJsonValue>* Value = Values.Find(FieldName);
	return Value && *Value && (*Value)->TryGetArray(OutArray);
}

bool FJsonObject::TryGetObjectField(FStringView FieldName, const TSharedPtr<FJsonObject>*& OutObject) const
{
	const TSharedPtr<FJsonValue>* Value = Values.Find(FieldName);
	return Value && *Value && (*Value)->TryGetObject(OutObject);
}

void FJsonObject::SetStringField(FStringView FieldName, FString StringValue)
{
	SetField(FieldName, MakeShared<FJsonValueString>(MoveTemp(StringValue)));
}

void FJsonObject::SetBoolField(FStringView FieldName, bool bValue)
{
	SetField(FieldName, MakeShared<FJsonValueBoolean>(bValue));
}

void FJsonObject::SetArrayField(FStringView FieldName, TArray<TSharedPtr<FJsonValue>> Array)
{
	SetField(FieldName, MakeShared<FJsonValueArray>(MoveTemp(Array)));
}

void FJsonObject::SetObjectField(FStringView FieldName, TSharedPtr<FJsonObject> JsonObject)
{
	SetField(FieldName, MakeShared<FJsonValueObject>(MoveTemp(JsonObject)));
}
