#pragma once

#include "Containers/Array.h"
#include "Containers/UnrealString.h"
#include "Serialization/JsonTypes.h"
#include "Templates/SharedPointer.h"

#include <type_traits>

class FJsonObject;

/**
 * One JSON value. It doesn't change once made, so any number of threads may read it.
 *
 * `TryGet...` reports whether the value can be had in that form and leaves the out argument alone if not: a string or
 * Boolean reads as a number and the other way round where that makes sense, a fraction is rounded to an integer (halves
 * away from zero), a number out of the target's range fails. `As...` gives the form's empty value instead of failing.
 * Integers of 64 bits keep their exact value; a number beyond what a double or they can hold keeps its text.
 */
class FJsonValue
{
public:
	EJson Type = EJson::None;

	FJsonValue(const FJsonValue&) = delete;
	FJsonValue& operator=(const FJsonValue&) = delete;
	~FJsonValue();

	double AsNumber() const;
	FString AsString() const;
	bool AsBool() const;
	/** Empty when this is no array. Lives as long as the value. */
	const TArray<TSharedPtr<FJsonValue>>& AsArray() const;
	/** An empty object, a new one each time, when this is none. Lives as long as the value. */
	const TSharedPtr<FJsonObject>& AsObject() const;

	bool TryGetNumber(double& OutNumber) const;
	bool TryGetNumber(float& OutNumber) const;
	bool TryGetNumber(int8& OutNumber) const;
	bool TryGetNumber(int16& OutNumber) const;
	bool TryGetNumber(int32& OutNumber) const;
	bool TryGetNumber(int64& OutNumber) const;
	bool TryGetNumber(uint8& OutNumber) const;
	bool TryGetNumber(uint16& OutNumber) const;
	bool TryGetNumber(uint32& OutNumber) const;
	bool TryGetNumber(uint64& OutNumber) const;
	/** Numbers and Booleans read as their text too. */
	bool TryGetString(FString& OutString) const;
	bool TryGetBool(bool& OutBool) const;
	bool TryGetArray(const TArray<TSharedPtr<FJsonValue>>*& OutArray) const;
	bool TryGetObject(const TSharedPtr<FJsonObject>*& OutObject) const;

	bool IsNull() const { return Type == EJson::Null || Type == EJson::None; }
	/** The number's own kind, for exact copies: whether it was read or made as an integer. */
	bool IsInteger() const { return Form == EForm::Signed || Form == EForm::Unsigned; }

	/** Whether both are of one kind and equal in depth; members in any order, numbers by value, strings by case too. */
	static bool CompareEqual(const FJsonValue& Left, const FJsonValue& Right);
	/** A deep copy: nothing in it is shared with the original. Null gives null. */
	static TSharedPtr<FJsonValue> Duplicate(const TSharedPtr<const FJsonValue>& Source);
	static TSharedPtr<FJsonValue> Duplicate(const TSharedPtr<FJsonValue>& Source);

protected:
	enum class EForm : uint8
	{
		Nothing,
		Boolean,
		Double,
		Signed,
		Unsigned,
		/** The text of a number that no other form holds. */
		NumberText,
		Text,
		/** Bytes beside this value, in the memory of the parse that made it. */
		Utf8,
		Array,
		Object
	};

	explicit FJsonValue(EJson InType)
		: Type(InType)
		, Signed(0)
	{
	}
	explicit FJsonValue(bool bInValue)
		: Type(EJson::Boolean)
		, Form(EForm::Boolean)
		, bValue(bInValue)
	{
	}
	explicit FJsonValue(double InValue)
		: Type(EJson::Number)
		, Form(EForm::Double)
		, Double(InValue)
	{
	}
	explicit FJsonValue(int64 InValue)
		: Type(EJson::Number)
		, Form(EForm::Signed)
		, Signed(InValue)
	{
	}
	explicit FJsonValue(uint64 InValue)
		: Type(EJson::Number)
		, Form(EForm::Unsigned)
		, Unsigned(InValue)
	{
	}
	FJsonValue(EJson InType, EForm InForm, FString&& InText)
		: Type(InType)
		, Form(InForm)
		, Text(MoveTemp(InText))
	{
	}
	FJsonValue(const ANSICHAR* InUtf8, uint32 InUtf8Bytes)
		: Type(EJson::String)
		, Form(EForm::Utf8)
		, Utf8Bytes(InUtf8Bytes)
		, Utf8(InUtf8)
	{
	}
	explicit FJsonValue(TArray<TSharedPtr<FJsonValue>>&& InArray)
		: Type(EJson::Array)
		, Form(EForm::Array)
		, Array(MoveTemp(InArray))
	{
	}
	explicit FJsonValue(TSharedPtr<FJsonObject>&& InObject)
		: Type(InObject.IsValid() ? EJson::Object : EJson::Null)
		, Form(EForm::Object)
		, Object(MoveTemp(InObject))
	{
	}

private:
	friend class FJsonTreeBuilder;
	friend class FJsonTextWriter;
	template <typename T>
	friend class TJsonNode;

	template <typename T>
	bool TryGetInteger(T& OutNumber) const;
	void ReportMismatch(EJson Wanted) const;
	static bool NumbersEqual(const FJsonValue& Left, const FJsonValue& Right);
	static TSharedPtr<FJsonValue> DuplicateContainer(const FJsonValue& Source);

	EForm Form = EForm::Nothing;
	uint32 Utf8Bytes = 0;
	union
	{
		bool bValue;
		double Double;
		int64 Signed;
		uint64 Unsigned;
		FString Text;
		const ANSICHAR* Utf8;
		TArray<TSharedPtr<FJsonValue>> Array;
		TSharedPtr<FJsonObject> Object;
	};
};

class FJsonValueString : public FJsonValue
{
public:
	explicit FJsonValueString(FString Value)
		: FJsonValue(EJson::String, EForm::Text, MoveTemp(Value))
	{
	}
};

class FJsonValueNumber : public FJsonValue
{
public:
	explicit FJsonValueNumber(double Value)
		: FJsonValue(Value)
	{
	}
	/** Keeps the exact integer. */
	template <typename T>
	requires(std::is_integral_v<T> && !std::is_same_v<T, bool>) explicit FJsonValueNumber(T Value)
		: FJsonValue((std::conditional_t<std::is_signed_v<T>, int64, uint64>)Value)
	{
	}
};

/** A number kept as its text, which must be one that JSON allows. */
class FJsonValueNumberString : public FJsonValue
{
public:
	explicit FJsonValueNumberString(FString Value)
		: FJsonValue(EJson::Number, EForm::NumberText, MoveTemp(Value))
	{
	}
};

class FJsonValueBoolean : public FJsonValue
{
public:
	explicit FJsonValueBoolean(bool bValue)
		: FJsonValue(bValue)
	{
	}
};

class FJsonValueArray : public FJsonValue
{
public:
	explicit FJsonValueArray(TArray<TSharedPtr<FJsonValue>> Value)
		: FJsonValue(MoveTemp(Value))
	{
	}
};

class FJsonValueObject : public FJsonValue
{
public:
	/** A null object makes a null value. */
	explicit FJsonValueObject(TSharedPtr<FJsonObject> Value)
		: FJsonValue(MoveTemp(Value))
	{
	}
};

class FJsonValueNull : public FJsonValue
{
public:
	FJsonValueNull()
		: FJsonValue(EJson::Null)
	{
	}
};
