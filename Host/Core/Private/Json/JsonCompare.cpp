// Comparing and copying whole trees of values.

#include "Dom/JsonObject.h"
#include "Dom/JsonValue.h"

namespace
{
bool EqualOrBothNull(const TSharedPtr<FJsonValue>& Left, const TSharedPtr<FJsonValue>& Right)
{
	return Left && Right ? FJsonValue::CompareEqual(*Left, *Right) : Left == Right;
}

bool ArraysEqual(const TArray<TSharedPtr<FJsonValue>>& Left, const TArray<TSharedPtr<FJsonValue>>& Right)
{
	bool bEqual = Left.Num() == Right.Num();
	for (int32 Place = 0; bEqual && Place < Left.Num(); ++Place)
	{
		bEqual = EqualOrBothNull(Left[Place], Right[Place]);
	}
	return bEqual;
}

bool MembersEqual(const FJsonMembers& Left, const FJsonMembers& Right)
{
	if (Left.Num() != Right.Num())
	{
		return false;
	}
	for (const FJsonMember& Member : Left)
	{
		const TSharedPtr<FJsonValue>* Other = Right.Find(Member.Key);
		if (!Other || !EqualOrBothNull(Member.Value, *Other))
		{
			return false;
		}
	}
	return true;
}
}

bool FJsonValue::CompareEqual(const FJsonValue& Left, const FJsonValue& Right)
{
	if (Left.Type != Right.Type)
	{
		return false;
	}
	switch (Left.Type)
	{
	case EJson::String:
		return Left.AsString().Equals(Right.AsString());
	case EJson::Number:
		return NumbersEqual(Left, Right);
	case EJson::Boolean:
		return Left.bValue == Right.bValue;
	case EJson::Array:
		return ArraysEqual(Left.Array, Right.Array);
	case EJson::Object:
		return MembersEqual(Left.Object->Values, Right.Object->Values);
	default:
		return true;
	}
}

bool FJsonValue::NumbersEqual(const FJsonValue& Left, const FJsonValue& Right)
{
	if (Left.Form == Right.Form && Left.IsInteger())
	{
		return Left.Signed == Right.Signed;
	}
	double LeftNumber = 0;
	double RightNumber = 0;
	const bool bLeft = Left.TryGetNumber(LeftNumber);
	const bool bRight = Right.TryGetNumber(RightNumber);
	if (Left.Form == EForm::NumberText || Right.Form == EForm::NumberText)
	{
		return Left.AsString().Equals(Right.AsString()) || (bLeft && bRight && LeftNumber == RightNumber);
	}
	return LeftNumber == RightNumber;
}

TSharedPtr<FJsonValue> FJsonValue::Duplicate(const TSharedPtr<const FJsonValue>& Source)
{
	if (!Source)
	{
		return nullptr;
	}
	switch (Source->Form)
	{
	case EForm::Boolean:
		return MakeShared<FJsonValueBoolean>(Source->bValue);
	case EForm::Double:
		return MakeShared<FJsonValueNumber>(Source->Double);
	case EForm::Signed:
		return MakeShared<FJsonValueNumber>(Source->Signed);
	case EForm::Unsigned:
		return MakeShared<FJsonValueNumber>(Source->Unsigned);
	case EForm::NumberText:
		return MakeShared<FJsonValueNumberString>(Source->Text);
	case EForm::Text:
	case EForm::Utf8:
		return MakeShared<FJsonValueString>(Source->AsString());
	case EForm::Array:
	case EForm::Object:
		return DuplicateContainer(*Source);
	default:
		return MakeShared<FJsonValueNull>();
	}
}

TSharedPtr<FJsonValue> FJsonValue::DuplicateContainer(const FJsonValue& Source)
{
	if (Source.Form == EForm::Object)
	{
		TSharedPtr<FJsonObject> Copy;
		FJsonObject::Duplicate(Source.Object, Copy);
		return MakeShared<FJsonValueObject>(MoveTemp(Copy));
	}
	TArray<TSharedPtr<FJsonValue>> Copies;
	Copies.Reserve(Source.Array.Num());
	for (const TSharedPtr<FJsonValue>& Element : Source.Array)
	{
		Copies.Add(Duplicate(Element));
	}
	return MakeShared<FJsonValueArray>(MoveTemp(Copies));
}

TSharedPtr<FJsonValue> FJsonValue::Duplicate(const TSharedPtr<FJsonValue>& Source)
{
	return Duplicate(TSharedPtr<const FJsonValue>(Source));
}

void FJsonObject::Duplicate(const TSharedPtr<const FJsonObject>& Source, TSharedPtr<FJsonObject>& Dest)
{
	if (!Source)
	{
		Dest = nullptr;
		return;
	}
	TSharedPtr<FJsonObject> Copy = MakeShared<FJsonObject>();
	Copy->Values.Reserve(Source->Values.Num());
	for (const FJsonMember& Member : Source->Values)
	{
		Copy->Values.Add(Member.Key, FJsonValue::Duplicate(Member.Value));
	}
	Dest = MoveTemp(Copy);
}

void FJsonObject::Duplicate(const TSharedPtr<FJsonObject>& Source, TSharedPtr<FJsonObject>& Dest)
{
	Duplicate(TSharedPtr<const FJsonObject>(Source), Dest);
}
