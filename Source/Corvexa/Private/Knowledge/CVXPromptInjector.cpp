#include "Knowledge/CVXPromptInjector.h"

#include "Algo/AnyOf.h"
#include "Knowledge/CVXKeywordExtractor.h"
#include "Knowledge/CVXKnowledgeManager.h"
#include "Knowledge/CVXMultiLangKeywords.h"
#include "Logging/LogMacros.h"

DEFINE_LOG_CATEGORY_STATIC(LogCVXPromptInjector, Log, All);

namespace
{
constexpr int32 MaxUserChars = 500;
constexpr int32 MinWordChars = 3;
/** What the project itself knows comes before what comes with the plug-in. */
constexpr const TCHAR* ProjectLabel = TEXT("Project");
constexpr float ProjectBonus = 1.0f;

constexpr const TCHAR* Frame =
	TEXT("\n\n[Auto-Injected Knowledge — Implementation Reference]\n"
		 "Use this knowledge as your PRIMARY reference when implementing. Code patterns below are tested.\n"
		 "Do NOT call exploration tools (list_files, search_files, search_in_files, read_file, "
		 "get_project_info) to re-discover information already provided here.\n"
		 "ALWAYS implement using tools (execute_python, write_file, edit_file). "
		 "Never just explain steps — execute the actual implementation.\n"
		 "Only use exploration tools when this knowledge is genuinely insufficient.\n"
		 "CRITICAL: UE API names in knowledge below are ILLUSTRATIVE — they may be wrong or version-specific.\n"
		 "ALWAYS use query_ue_api to discover exact class names, function names, enum values,\n"
		 "and property names BEFORE using them. Knowledge teaches WORKFLOW PATTERNS; query_ue_api provides ACCURATE "
		 "NAMES.\n");

/** Messages that the agent made itself say nothing of what the user wants. */
bool IsSystemMade(const FString& MessageId)
{
	static constexpr const TCHAR* Prefixes[] = {
		TEXT("auto-retry-"), TEXT("completion-rejected-"), TEXT("output-truncated-")};
	static constexpr const TCHAR* Tags[] = {
		TEXT("verify-hint"), TEXT("turn-budget-warning"), TEXT("diversity-warning")};
	return Algo::AnyOf(Prefixes, [&](const TCHAR* Prefix) { return MessageId.StartsWith(Prefix); }) ||
		Algo::AnyOf(Tags, [&](const TCHAR* Tag) { return MessageId == Tag; });
}

/** The beginning of what the user said, newest first. */
FString CollectUserText(const TArray<FCVXMessage>& Messages)
{
	FString Text;
	for (const FCVXMessage& Message : Messages)
	{
		if (Message.Role != ECVXMessageRole::User || IsSystemMade(Message.MessageId))
		{
			continue;
		}
		for (const FCVXContentBlock& Block : Message.Content)
		{
			if (Block.Type == TEXT("text") && !Block.Text.IsEmpty())
			{
				Text += Text.IsEmpty() ? Block.Text : TEXT(" ") + Block.Text;
			}
		}
	}
	return Text.Left(MaxUserChars);
}

TArray<FString> SplitAtBlanks(const FString& Text)
{
	TArray<FString> Words;
	Text.ParseIntoArray(Words, TEXT(" "), true);
	return Words;
}

/** Every word in lower case that is long enough to mean something in its script. */
TArray<FString> FindPlainWords(const FString& Text)
{
	FString Plain = Text.ToLower();
	for (TCHAR& Char : Plain.GetCharArray())
	{
		if (!FChar::IsAlnum(Char) && Char != TEXT('_') && Char != TEXT('\0'))
		{
			Char = TEXT(' ');
		}
	}
	return SplitAtBlanks(Plain).FilterByPredicate(
		[](const FString& Word) { return Word.Len() >= MinWordChars || FCVXMultiLangKeywords::ContainsCJK(Word); });
}

/** Adds the keywords of a text, its plain words, and what the words gathered so far stand for. */
void AddKeywords(const FString& Text, TArray<FString>& Keywords)
{
	const auto AddAll = [&](const TArray<FString>& Words)
	{
		for (const FString& Word : Words)
		{
			Keywords.AddUnique(Word);
		}
	};
	AddAll(SplitAtBlanks(CVXKeywordExtractor::ExtractKeywords(Text)));
	AddAll(FindPlainWords(Text));
	AddAll(FCVXMultiLangKeywords::TranslateKeywords(Keywords));
}

bool IsOfProject(const FCVXKnowledgeSelection& Selection)
{
	return Selection.Module->SourceLabel == ProjectLabel;
}

/** Puts the project's own modules forward. What is in the selection is decided by now. */
void SortForText(TArray<FCVXKnowledgeSelection>& Selections)
{
	for (FCVXKnowledgeSelection& Selection : Selections)
	{
		Selection.Score += IsOfProject(Selection) ? ProjectBonus : 0.0f;
	}
	Selections.StableSort(
		[](const FCVXKnowledgeSelection& A, const FCVXKnowledgeSelection& B) { return A.Score > B.Score; });
}

FString FormatSection(const FCVXKnowledgeSelection& Selection)
{
	const FCVXKnowledgeModule& Module = *Selection.Module;
	FString Text = FString::Printf(TEXT("\n--- %s ---\n"), *Module.Title);
	Text += Selection.bUseSummary ? Module.Summary : Module.Content;
	if (Selection.bUseSummary)
	{
		Text += TEXT("\n(Summary — use list_project_knowledge for full detail)\n");
	}
	if (!Text.EndsWith(TEXT("\n")))
	{
		Text += TEXT("\n");
	}
	return Text;
}

/** The sections by source, each source where its best module stands. */
FString FormatGroups(const TArray<FCVXKnowledgeSelection>& Selections)
{
	TMap<FString, FString> Groups;
	for (const FCVXKnowledgeSelection& Selection : Selections)
	{
		const FString& Label = Selection.Module->SourceLabel;
		FString& Group = Groups.FindOrAdd(Label);
		if (Group.IsEmpty())
		{
			Group = FString::Printf(TEXT("\n[%s Knowledge]\n"), *Label);
		}
		Group += FormatSection(Selection);
	}
	FString Text;
	for (const TPair<FString, FString>& Group : Groups)
	{
		Text += Group.Value;
	}
	return Text;
}

void LogModules(const TArray<FCVXKnowledgeSelection>& Selections, bool bOfProject, const TCHAR* Label)
{
	TArray<FString> Ids;
	for (const FCVXKnowledgeSelection& Selection : Selections)
	{
		if (IsOfProject(Selection) == bOfProject)
		{
			Ids.Add(Selection.ModuleId);
		}
	}
	if (!Ids.IsEmpty())
	{
		UE_LOG(LogCVXPromptInjector, Log, TEXT("  %s modules: %s"), Label, *FString::Join(Ids, TEXT(", ")));
	}
}

void LogInjection(
	const TArray<FCVXKnowledgeSelection>& Selections, const TArray<FString>& Keywords, const FString& Text)
{
	UE_LOG(LogCVXPromptInjector, Log, TEXT("Knowledge injection: %d modules (~%d tokens)"), Selections.Num(),
		Text.Len() / 4);
	UE_LOG(LogCVXPromptInjector, Log, TEXT("  Keywords: [%s]"), *FString::Join(Keywords, TEXT(" ")));
	LogModules(Selections, true, TEXT("Project"));
	LogModules(Selections, false, TEXT("UE Engine"));
}
} // namespace

FString FCVXPromptInjector::BuildKnowledgeInjection(const TArray<FCVXMessage>& RecentUserMessages,
	const FString& AssistantContext, const TSet<FString>& ActiveTools, const FString& ProfileName, int32 TokenBudget,
	TSet<FString>& InjectedIds)
{
	FCVXKnowledgeManager& Manager = FCVXKnowledgeManager::Get();
	if (Manager.IsEmpty())
	{
		Manager.LoadAllModules();
	}
	const FString UserText = Manager.IsEmpty() ? FString() : CollectUserText(RecentUserMessages);
	if (UserText.IsEmpty())
	{
		return FString();
	}
	TArray<FString> Keywords;
	AddKeywords(UserText, Keywords);
	if (!AssistantContext.IsEmpty())
	{
		AddKeywords(AssistantContext, Keywords);
	}
	TArray<FCVXKnowledgeSelection> Selections =
		Manager.SelectModules(Keywords, ActiveTools, ProfileName, TokenBudget, InjectedIds);
	if (Selections.IsEmpty())
	{
		UE_LOG(LogCVXPromptInjector, Warning, TEXT("  NO modules matched — agent has NO knowledge this turn!"));
		return FString();
	}
	SortForText(Selections);
	const FString Text = Frame + FormatGroups(Selections);
	for (const FCVXKnowledgeSelection& Selection : Selections)
	{
		InjectedIds.Add(Selection.ModuleId);
	}
	LogInjection(Selections, Keywords, Text);
	return Text;
}
