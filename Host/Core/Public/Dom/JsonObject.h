#pragma once

#include "Dom/JsonMembers.h"
#include "Dom/JsonValue.h"

/**
 * A JSON object: named values in the order in which they were first set. Names are looked up ignoring case.
 *
 * `Get...` expects the member: where it is missing or of another form, it logs an error and gives the form's empty
 * value. `TryGet...` reports that by false and leaves the out argument alone; see FJsonValue for what counts as a form.
 */
class FJsonObject
{
public:
	FJsonMembers Values;

	FJsonObject() = default;

	bool HasField(FStringView FieldName) const { return Values.Contains(FieldName); }
	template <EJson JsonType>
	bool HasTypedField(FStringView FieldName) const
	{
		return HasTypedField(FieldName, JsonType);
	}
	/** EJson::None stands for any kind. */
	bool HasTypedField(FStringView FieldName, EJson JsonType) const;
	/** Logs an error and gives a null value when the member is missing or of another kind. */
	template <EJson JsonType>
	TSharedPtr<FJsonValue> GetField(FStringView FieldName) const
	{
		return GetField(FieldName, JsonType);
	}
	TSharedPtr<FJsonValue> GetField(FStringView FieldName, EJson JsonType) const;
	/** Null when the member is missing. */
	TSharedPtr<FJsonValue> TryGetField(FStringView FieldName) const { return Values.FindRef(FieldName); }
	void SetField(FStringView FieldName, TSharedPtr<FJsonValue> Value) { Values.Add(FieldName, MoveTemp(Value)); }
	void RemoveField(FStringView FieldName) { Values.Remove(FieldName); }

	double GetNumberField(FStringView FieldName) const { return GetField(FieldName, EJson::None)->AsNumber(); }
	/** The number as an int32, rounded; 0 outside its range. */
	int32 GetIntegerField(FStringView FieldName) const;
	FString GetStringField(FStringView FieldName) const { return GetField(FieldName, EJson::None)->AsString(); }
	bool GetBoolField(FStringView FieldName) const { return GetField(FieldName, EJson::None)->AsBool(); }
	/** Lives as long as the member. */
	const TArray<TSharedPtr<FJsonValue>>& GetArrayField(FStringView FieldName) const;
	const TSharedPtr<FJsonObject>& GetObjectField(FStringView FieldName) const;

	template <typename T>
	requires std::is_arithmetic_v<T>
	bool TryGetNumberField(FStringView FieldName, T& OutNumber) const
	{
		const TSharedPtr<FJsonValue>* Value = Values.Find(FieldName);
		return Value && *Value && (*Value)->TryGetNumber(OutNumber);
	}
	bool TryGetStringField(FStringView FieldName, FString& OutString) const;
	/** The array's elements that are strings; false when there is no array or one of its elements is no string. */
	bool TryGetStringArrayField(FStringView FieldName, TArray<FString>& OutArray) const;
	bool TryGetBoolField(FStringView FieldName, bool& OutBool) const;
	bool TryGetArrayField(FStringView FieldName, const TArray<TSharedPtr<FJsonValue>>*& OutArray) const;
	bool TryGetObjectField(FStringView FieldName, const TSharedPtr<FJsonObject>*& OutObject) const;

	/** Integers keep their exact value. */
	template <typename T>
	requires(std::is_arithmetic_v<T> && !std::is_same_v<T, bool>) void SetNumberField(FStringView FieldName, T Number)
	{
		SetField(FieldName, MakeShared<FJsonValueNumber>(Number));
	}
	void SetStringField(FStringView FieldName, FString StringValue);
	void SetBoolField(FStringView FieldName, bool bValue);
	void SetArrayField(FStringView FieldName, TArray<TSharedPtr<FJsonValue>> Array);
	/** A null object sets a null value. */
	void SetObjectField(FStringView FieldName, TSharedPtr<FJsonObject> JsonObject);

	/** A deep copy: nothing in it is shared with the source. */
	static void Duplicate(const TSharedPtr<const FJsonObject>& Source, TSharedPtr<FJsonObject>& Dest);
	static void Duplicate(const TSharedPtr<FJsonObject>& Source, TSharedPtr<FJsonObject>& Dest);
};
