#include "Internationalization/Text.h"

#include "UObject/NameTypes.h"

#include <cmath>

struct FText::FContent
{
	FString Shown;
	FString Namespace;
	FString Key;
};

namespace
{
const FString& EmptyString()
{
	static const FString* const Empty = new FString();
	return *Empty;
}

FString GroupDigits(FString Digits)
{
	const int32 FirstDigit = Digits.StartsWith(TEXT("-")) ? 1 : 0;
	for (int32 Place = Digits.Len() - 3; Place > FirstDigit; Place -= 3)
	{
		Digits.InsertAt(Place, u',');
	}
	return Digits;
}

FString NumberText(double Value)
{
	if (!std::isfinite(Value))
	{
		return FString::SanitizeFloat(Value);
	}
	FString Whole = FString::Printf(TEXT("%.3f"), Value);
	FString Fraction = Whole.Right(3);
	Whole.LeftChopInline(4);
	while (Fraction.EndsWith(TEXT("0")))
	{
		Fraction.LeftChopInline(1);
	}
	Whole = GroupDigits(Whole);
	return Fraction.IsEmpty() ? Whole : Whole + u'.' + Fraction;
}

/** Writes the pattern with its placeholders filled by Lookup, which gives null for an unknown one. */
template <typename LookupType>
FString FillPattern(FStringView Pattern, const LookupType& Lookup)
{
	FString Result;
	for (int32 Index = 0; Index < Pattern.Len(); ++Index)
	{
		const TCHAR Char = Pattern[Index];
		if (Char == u'`' && Index + 1 < Pattern.Len())
		{
			Result.AppendChar(Pattern[++Index]);
			continue;
		}
		int32 Close = INDEX_NONE;
		if (Char != u'{' || !Pattern.RightChop(Index).FindChar(u'}', Close))
		{
			Result.AppendChar(Char);
			continue;
		}
		const FStringView Name = Pattern.Mid(Index + 1, Close - 1).TrimStartAndEnd();
		const FFormatArgumentValue* Value = Lookup(Name);
		Result.Append(Value ? FStringView(Value->ToString()) : Pattern.Mid(Index, Close + 1));
		Index += Close;
	}
	return Result;
}
} // namespace

FFormatArgumentValue::FFormatArgumentValue(const FText& Value)
	: Shown(Value.ToString())
{
}

FFormatArgumentValue::FFormatArgumentValue(double Value)
	: Shown(NumberText(Value))
{
}

FFormatArgumentValue FFormatArgumentValue::FromInteger(int64 Value)
{
	return FFormatArgumentValue(GroupDigits(FString::FromInt(Value)));
}

const FText& FText::GetEmpty()
{
	static const FText Empty;
	return Empty;
}

FText FText::FromString(const FString& String)
{
	return FromString(FString(String));
}

FText FText::FromString(FString&& String)
{
	FText Result;
	Result.Content = MakeShared<FContent>(FContent{MoveTemp(String), FString(), FString()}).ToSharedPtr();
	return Result;
}

FText FText::FromName(FName Name)
{
	return FromString(Name.ToString());
}

FText FText::AsLocalizable(const TCHAR* Namespace, const TCHAR* Key, const TCHAR* Source)
{
	FText Result;
	Result.Content = MakeShared<FContent>(FContent{Source, Namespace, Key}).ToSharedPtr();
	return Result;
}

FText FText::AsNumber(int64 Value)
{
	return FromString(GroupDigits(FString::FromInt(Value)));
}

FText FText::AsNumber(double Value)
{
	return FromString(NumberText(Value));
}

FText FText::AsPercent(double Value)
{
	return FromString(FString::Printf(TEXT("%.0f%%"), Value * 100.0));
}

FText FText::Format(const FText& Pattern, const FFormatNamedArguments& Arguments)
{
	return FromString(FillPattern(Pattern.ToString(), [&Arguments](FStringView Name) { return Arguments.Find(Name); }));
}

FText FText::Format(const FText& Pattern, const FFormatOrderedArguments& Arguments)
{
	return FromString(FillPattern(Pattern.ToString(),
		[&Arguments](FStringView Name) -> const FFormatArgumentValue*
		{
			const FString Digits(Name);
			const int32 Index = Digits.IsNumeric() ? FCString::Atoi(*Digits) : INDEX_NONE;
			return Arguments.IsValidIndex(Index) ? &Arguments[Index] : nullptr;
		}));
}

FText FText::Join(const FText& Separator, const TArray<FText>& Parts)
{
	return FromString(FString::JoinBy(Parts, Separator.ToString(), [](const FText& Part) { return Part.ToString(); }));
}

FText FText::TrimPrecedingAndTrailing(const FText& Text)
{
	return FromString(Text.ToString().TrimStartAndEnd());
}

const FString& FText::ToString() const
{
	return Content ? Content->Shown : EmptyString();
}

const FString& FText::GetNamespace() const
{
	return Content ? Content->Namespace : EmptyString();
}

const FString& FText::GetKey() const
{
	return Content ? Content->Key : EmptyString();
}
