#include "Launch/Demo/DemoTemplate.h"

#include "Dom/JsonObject.h"
#include "Internationalization/Regex.h"

namespace
{
bool FindSource(const FJsonObject& Let, const FDemoRequest& Request, FString& OutText)
{
	FString Tool;
	if (!Let.TryGetStringField(TEXT("result_of"), Tool))
	{
		OutText = Request.Question;
		return Let.HasField(TEXT("question"));
	}
	const FDemoCall* Call = Request.FindLastCall(Tool);
	OutText = Call ? Call->Result : FString();
	return Call != nullptr;
}

bool TakeMatch(const FJsonObject& Let, FString& InOutText)
{
	FString Pattern;
	if (!Let.TryGetStringField(TEXT("pattern"), Pattern))
	{
		return true;
	}
	FRegexMatcher Matcher(FRegexPattern(Pattern), InOutText);
	if (!Matcher.FindNext())
	{
		return false;
	}
	InOutText = Matcher.GetCaptureGroup(1);
	return true;
}

/** Changes the first place. @return false when there is none. */
bool ReplaceOnce(const FJsonObject& Let, FString& InOutText)
{
	TArray<FString> Pair;
	if (!Let.TryGetStringArrayField(TEXT("replace"), Pair) || Pair.Num() != 2)
	{
		return true;
	}
	const int32 Place = InOutText.Find(Pair[0], ESearchCase::CaseSensitive);
	if (Place == INDEX_NONE)
	{
		return false;
	}
	InOutText = InOutText.Left(Place) + Pair[1] + InOutText.Mid(Place + Pair[0].Len());
	return true;
}
} // namespace

bool FindDemoNames(const FJsonObject& Rule, const FDemoRequest& Request, FDemoNames& OutNames)
{
	const TSharedPtr<FJsonObject>* Lets = nullptr;
	if (!Rule.TryGetObjectField(TEXT("let"), Lets))
	{
		return true;
	}
	for (const auto& Member : (*Lets)->Values)
	{
		const TSharedPtr<FJsonObject>* Let = nullptr;
		FString Text;
		if (!Member.Value->TryGetObject(Let) || !FindSource(**Let, Request, Text) || !TakeMatch(**Let, Text) ||
			!ReplaceOnce(**Let, Text))
		{
			return false;
		}
		OutNames.Add(FString(Member.Key), Text);
	}
	return true;
}

FString FillDemoTemplate(const FString& Text, const FDemoNames& Names)
{
	FString Filled = Text;
	for (const auto& Name : Names)
	{
		Filled.ReplaceInline(TEXT("{{") + Name.Key + TEXT("}}"), Name.Value, ESearchCase::CaseSensitive);
	}
	return Filled;
}

TSharedRef<FJsonObject> FillDemoTemplate(const TSharedPtr<FJsonObject>& Object, const FDemoNames& Names)
{
	const TSharedRef<FJsonObject> Filled = MakeShared<FJsonObject>();
	for (const auto& Member : Object->Values)
	{
		FString Text;
		const bool bText = Member.Value->Type == EJson::String && Member.Value->TryGetString(Text);
		Filled->SetField(FStringView(Member.Key),
			bText ? TSharedPtr<FJsonValue>(MakeShared<FJsonValueString>(FillDemoTemplate(Text, Names))) : Member.Value);
	}
	return Filled;
}
