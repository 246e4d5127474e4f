#pragma once

#include "Containers/Map.h"
#include "Templates/SharedPointer.h"

class FText;

/** One value for a placeholder of `FText::Format`. */
class FFormatArgumentValue
{
public:
	FFormatArgumentValue(const FText& Value);
	FFormatArgumentValue(const FString& Value)
		: Shown(Value)
	{
	}
	FFormatArgumentValue(const TCHAR* Value)
		: Shown(Value)
	{
	}
	FFormatArgumentValue(double Value);
	FFormatArgumentValue(float Value)
		: FFormatArgumentValue((double)Value)
	{
	}
	template <typename T>
	requires std::is_integral_v<T> FFormatArgumentValue(T Value)
		: FFormatArgumentValue(FromInteger((int64)Value))
	{
	}
	const FString& ToString() const { return Shown; }

private:
	static FFormatArgumentValue FromInteger(int64 Value);
	FString Shown;
};

using FFormatNamedArguments = TMap<FString, FFormatArgumentValue>;
using FFormatOrderedArguments = TArray<FFormatArgumentValue>;

/**
 * Text for people: a source text with the namespace and key by which a translation finds it. Copies share their content
 * and it never changes. Any thread.
 */
class FText
{
public:
	FText() = default;

	static const FText& GetEmpty();
	static FText FromString(const FString& String);
	static FText FromString(FString&& String);
	static FText FromStringView(FStringView View) { return FromString(FString(View)); }
	static FText FromName(class FName Name);
	/** A text that no translation replaces. */
	static FText AsCultureInvariant(const FString& String) { return FromString(String); }
	/** What `LOCTEXT` and `NSLOCTEXT` make. */
	static FText AsLocalizable(const TCHAR* Namespace, const TCHAR* Key, const TCHAR* Source);
	/** The integer with a comma between groups of three digits; the fraction with at most three digits. */
	static FText AsNumber(int64 Value);
	static FText AsNumber(int32 Value) { return AsNumber((int64)Value); }
	static FText AsNumber(double Value);
	/** @param Value 1 shows as "100%". */
	static FText AsPercent(double Value);

	/**
	 * Fills the placeholders `{0}` or `{Name}`. A placeholder without a value stays as it is written; a backquote takes
	 * the meaning from the brace behind it.
	 */
	static FText Format(const FText& Pattern, const FFormatNamedArguments& Arguments);
	static FText Format(const FText& Pattern, const FFormatOrderedArguments& Arguments);
	template <typename... ArgTypes>
	static FText Format(const FText& Pattern, const ArgTypes&... Args)
	{
		return Format(Pattern, FFormatOrderedArguments{FFormatArgumentValue(Args)...});
	}
	static FText Join(const FText& Separator, const TArray<FText>& Parts);
	static FText TrimPrecedingAndTrailing(const FText& Text);

	const FString& ToString() const;
	bool IsEmpty() const { return ToString().IsEmpty(); }
	bool IsEmptyOrWhitespace() const { return FStringView(ToString()).TrimStart().IsEmpty(); }
	bool EqualTo(const FText& Other) const { return ToString().Equals(Other.ToString()); }
	bool EqualToCaseIgnored(const FText& Other) const { return ToString() == Other.ToString(); }
	int32 CompareTo(const FText& Other) const { return ToString().Compare(Other.ToString()); }
	/** Whether both share their content, so that nothing needs to be compared. */
	bool IdenticalTo(const FText& Other) const { return Content == Other.Content; }
	FText ToUpper() const { return FromString(ToString().ToUpper()); }
	FText ToLower() const { return FromString(ToString().ToLower()); }

	/** Empty for a text that isn't localizable. */
	const FString& GetNamespace() const;
	const FString& GetKey() const;

private:
	struct FContent;
	TSharedPtr<const FContent> Content;
};

#define LOCTEXT(Key, Source) FText::AsLocalizable(TEXT(LOCTEXT_NAMESPACE), TEXT(Key), TEXT(Source))
#define NSLOCTEXT(Namespace, Key, Source) FText::AsLocalizable(TEXT(Namespace), TEXT(Key), TEXT(Source))
#define INVTEXT(Source) FText::AsCultureInvariant(FString(TEXT(Source)))
