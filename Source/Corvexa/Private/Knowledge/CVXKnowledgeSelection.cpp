#include "Algo/AnyOf.h"
#include "Knowledge/CVXKnowledgeManager.h"

// The choice of the modules that go into a turn.

namespace
{
constexpr float KeywordScore = 1.0f;
constexpr float ToolScore = 5.0f;
constexpr float ProfileScore = 3.0f;
constexpr float ScorePerPriority = 0.01f;
/** A shorter word is no plural. */
constexpr int32 MinPluralChars = 4;

/** The words in lower case, and of plural forms the singular too. */
TSet<FString> MakeKeywordSet(const TArray<FString>& Keywords)
{
	TSet<FString> Set;
	for (const FString& Keyword : Keywords)
	{
		const FString Lower = Keyword.ToLower();
		Set.Add(Lower);
		if (Lower.Len() >= MinPluralChars && Lower.EndsWith(TEXT("s")) && !Lower.EndsWith(TEXT("ss")))
		{
			Set.Add(Lower.LeftChop(1));
		}
	}
	return Set;
}

/** Whether the set holds the keyword, or all parts of one that is joined by underscores. */
bool IsHit(const FString& Keyword, const TSet<FString>& Set)
{
	if (Set.Contains(Keyword))
	{
		return true;
	}
	TArray<FString> Parts;
	Keyword.ParseIntoArray(Parts, TEXT("_"), true);
	return Parts.Num() >= 2 && !Algo::AnyOf(Parts, [&](const FString& Part) { return !Set.Contains(Part); });
}

float Score(const FCVXKnowledgeModule& Module, const TSet<FString>& Keywords, const TSet<FString>& ActiveTools,
	const FString& ProfileName)
{
	float Sum = static_cast<float>(Module.Priority) * ScorePerPriority;
	for (const FString& Keyword : Module.Keywords)
	{
		Sum += IsHit(Keyword, Keywords) ? KeywordScore : 0.0f;
	}
	if (Algo::AnyOf(Module.ToolTriggers, [&](const FString& Tool) { return ActiveTools.Contains(Tool); }))
	{
		Sum += ToolScore;
	}
	if (Module.ProfileTriggers.Contains(ProfileName))
	{
		Sum += ProfileScore;
	}
	return Sum;
}

/** Keeps what the budget has room for. */
TArray<FCVXKnowledgeSelection> Spend(TArray<FCVXKnowledgeSelection> Candidates, int32 TokenBudget)
{
	int32 Left = TokenBudget;
	TArray<FCVXKnowledgeSelection> Chosen;
	for (FCVXKnowledgeSelection& Candidate : Candidates)
	{
		const FCVXKnowledgeModule& Module = *Candidate.Module;
		const bool bWhole = Module.EstimatedTokens <= Left;
		Candidate.bUseSummary = !bWhole && Module.SummaryTokens > 0 && Module.SummaryTokens <= Left;
		if (bWhole || Candidate.bUseSummary)
		{
			Left -= bWhole ? Module.EstimatedTokens : Module.SummaryTokens;
			Chosen.Add(MoveTemp(Candidate));
		}
	}
	return Chosen;
}
} // namespace

TArray<FCVXKnowledgeSelection> FCVXKnowledgeManager::SelectModules(const TArray<FString>& Keywords,
	const TSet<FString>& ActiveTools, const FString& ProfileName, int32 TokenBudget,
	const TSet<FString>& ExcludeIds) const
{
	if (!bLoaded || Modules.IsEmpty())
	{
		return {};
	}
	const TSet<FString> KeywordSet = MakeKeywordSet(Keywords);
	TArray<FCVXKnowledgeSelection> Candidates;
	for (const FCVXKnowledgeModule& Module : Modules)
	{
		const float ModuleScore =
			ExcludeIds.Contains(Module.Id) ? 0.0f : Score(Module, KeywordSet, ActiveTools, ProfileName);
		if (ModuleScore > 0.0f)
		{
			Candidates.Add({Module.Id, ModuleScore, &Module, false});
		}
	}
	Candidates.StableSort(
		[](const FCVXKnowledgeSelection& A, const FCVXKnowledgeSelection& B) { return A.Score > B.Score; });
	return Spend(MoveTemp(Candidates), TokenBudget);
}
