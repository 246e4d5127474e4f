#include "Launch/Demo/DemoScenario.h"

#include "Algo/AnyOf.h"
#include "Internationalization/Regex.h"
#include "Launch/Demo/DemoTemplate.h"
#include "Policies/CondensedJsonPrintPolicy.h"
#include "Serialization/JsonSerializer.h"

namespace
{
bool WasCalled(const FDemoRequest& Request, const FString& Tool)
{
	return Algo::AnyOf(Request.Calls, [&](const FDemoCall& Call) { return Call.Tool == Tool; });
}

bool IsOffered(const FDemoRequest& Request, const FString& Tool)
{
	return Request.Tools.Contains(Tool);
}

/** Whether the test gives this for all tools that the member lists; true without such a member. */
template <typename TestType>
bool HoldsForAll(const FJsonObject& When, const TCHAR* Member, bool bExpected, const TestType& Test)
{
	TArray<FString> Tools;
	When.TryGetStringArrayField(Member, Tools);
	return !Algo::AnyOf(Tools, [&](const FString& Tool) { return Test(Tool) != bExpected; });
}

bool HoldsForLastCall(const FJsonObject& When, const FDemoRequest& Request)
{
	const FDemoCall* Last = Request.Calls.IsEmpty() ? nullptr : &Request.Calls.Last();
	FString Tool;
	bool bFailed = false;
	return (!When.TryGetStringField(TEXT("last"), Tool) || (Last && Last->Tool == Tool)) &&
		(!When.TryGetBoolField(TEXT("failed"), bFailed) || (Last && Last->bIsError == bFailed));
}

bool Matches(const FString& Text, const FString& Pattern)
{
	FRegexMatcher Matcher(FRegexPattern(Pattern), Text);
	return Matcher.FindNext();
}

bool HoldsForResults(const FJsonObject& When, const FDemoRequest& Request)
{
	const TSharedPtr<FJsonObject>* Results = nullptr;
	if (!When.TryGetObjectField(TEXT("results"), Results))
	{
		return true;
	}
	for (const auto& Member : (*Results)->Values)
	{
		const FDemoCall* Call = Request.FindLastCall(FString(Member.Key));
		if (!Call || Call->bIsError || !Matches(Call->Result, Member.Value->AsString()))
		{
			return false;
		}
	}
	return true;
}

bool HoldsForTimes(const FJsonObject& When, const FDemoRequest& Request)
{
	const TSharedPtr<FJsonObject>* Times = nullptr;
	if (!When.TryGetObjectField(TEXT("times"), Times))
	{
		return true;
	}
	for (const auto& Member : (*Times)->Values)
	{
		const FString Tool(Member.Key);
		int32 Count = 0;
		for (const FDemoCall& Call : Request.Calls)
		{
			Count += Call.Tool == Tool ? 1 : 0;
		}
		if (Count > Member.Value->AsNumber())
		{
			return false;
		}
	}
	return true;
}

bool Holds(const FJsonObject& When, const FDemoRequest& Request)
{
	const auto Called = [&](const FString& Tool) { return WasCalled(Request, Tool); };
	const auto Offered = [&](const FString& Tool) { return IsOffered(Request, Tool); };
	FString Note;
	bool bGoesOn = false;
	return HoldsForAll(When, TEXT("called"), true, Called) && HoldsForAll(When, TEXT("not_called"), false, Called) &&
		HoldsForAll(When, TEXT("offered"), true, Offered) && HoldsForAll(When, TEXT("not_offered"), false, Offered) &&
		(!When.TryGetStringField(TEXT("note"), Note) || Matches(Request.Note, Note)) &&
		(!When.TryGetBoolField(TEXT("goes_on"), bGoesOn) || Request.bGoesOn == bGoesOn) &&
		HoldsForLastCall(When, Request) && HoldsForTimes(When, Request) && HoldsForResults(When, Request);
}

FString GetText(const FJsonObject& Rule, const TCHAR* Member, const FDemoNames& Names)
{
	FString Text;
	Rule.TryGetStringField(Member, Text);
	return FillDemoTemplate(Text, Names);
}

FDemoAnswer MakeAnswer(const FJsonObject& Rule, const FDemoNames& Names)
{
	FDemoAnswer Answer;
	Answer.Thinking = GetText(Rule, TEXT("think"), Names);
	Answer.Text = GetText(Rule, TEXT("say"), Names);
	const TSharedPtr<FJsonObject>* Call = nullptr;
	const TSharedPtr<FJsonObject>* Arguments = nullptr;
	if (Rule.TryGetObjectField(TEXT("call"), Call) && (*Call)->TryGetObjectField(TEXT("arguments"), Arguments))
	{
		FDemoAnswerCall& Made = Answer.Calls.AddDefaulted_GetRef();
		Made.Tool = (*Call)->GetStringField(TEXT("tool"));
		TJsonWriter<TCHAR, TCondensedJsonPrintPolicy<TCHAR>> Writer(Made.ArgumentsJson);
		verify(FJsonSerializer::Serialize(*FillDemoTemplate(*Arguments, Names), Writer));
	}
	return Answer;
}
} // namespace

TSharedPtr<FDemoScenario> FDemoScenario::Parse(const FString& Json, FString& OutError)
{
	TSharedPtr<FJsonObject> Root;
	const TSharedRef<FJsonReader> Reader = TJsonReaderFactory<>::Create(Json);
	const TArray<TSharedPtr<FJsonValue>>* Rules = nullptr;
	if (!FJsonSerializer::Deserialize(Reader, Root) || !Root->TryGetArrayField(TEXT("rules"), Rules))
	{
		OutError = Root ? FString(TEXT("no rules")) : Reader->GetErrorMessage();
		return nullptr;
	}
	const TSharedRef<FDemoScenario> Scenario = MakeShared<FDemoScenario>();
	Root->TryGetStringArrayField(TEXT("offered"), Scenario->Offered);
	Root->TryGetStringArrayField(TEXT("not_offered"), Scenario->NotOffered);
	Root->TryGetStringField(TEXT("asks"), Scenario->Asks);
	for (const TSharedPtr<FJsonValue>& Rule : *Rules)
	{
		const TSharedPtr<FJsonObject>* Object = nullptr;
		if (!Rule->TryGetObject(Object))
		{
			OutError = TEXT("a rule that is no object");
			return nullptr;
		}
		Scenario->Rules.Add(*Object);
	}
	return Scenario;
}

bool FDemoScenario::IsFor(const FDemoRequest& Request) const
{
	const bool bAsked = Asks.IsEmpty() || Matches(Request.Question, Asks);
	const auto Offers = [&](const FString& Tool) { return IsOffered(Request, Tool); };
	return bAsked && Algo::AllOf(Offered, Offers) && !Algo::AnyOf(NotOffered, Offers);
}

TOptional<FDemoAnswer> FDemoScenario::Play(const FDemoRequest& Request) const
{
	for (const TSharedPtr<FJsonObject>& Rule : Rules)
	{
		const TSharedPtr<FJsonObject>* When = nullptr;
		FDemoNames Names;
		if ((!Rule->TryGetObjectField(TEXT("when"), When) || Holds(**When, Request)) &&
			FindDemoNames(*Rule, Request, Names))
		{
			return MakeAnswer(*Rule, Names);
		}
	}
	return {};
}
