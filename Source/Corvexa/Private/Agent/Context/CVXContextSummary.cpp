#include "Agent/Context/CVXCallArguments.h"
#include "Agent/Context/CVXContextManager.h"
#include "Algo/AnyOf.h"

namespace
{
constexpr int32 MaxRequestChars = 200;
constexpr int32 MaxActionChars = 150;
constexpr int32 MaxResultChars = 500;
constexpr int32 ListedRequests = 5;
constexpr int32 ListedTools = 10;
constexpr int32 ListedActions = 3;
constexpr int32 ListedFiles = 20;
/** A summary over its limit keeps so many characters for each token of it. */
constexpr int32 KeptCharsPerToken = 3;

/** Tools whose results a summary keeps. */
constexpr const TCHAR* ImportantTools[] = {TEXT("delegate_to_agent"), TEXT("ask_followup_question"),
	TEXT("compile_and_check"), TEXT("execute_python"), TEXT("write_file"), TEXT("edit_file"), TEXT("apply_patch"),
	TEXT("attempt_completion"), TEXT("compile_blueprints"), TEXT("live_coding_compile")};

FString CutWithDots(const FString& Text, int32 MaxChars)
{
	return Text.Len() > MaxChars ? Text.Left(MaxChars) + TEXT("...") : Text;
}

/** What the dropped messages said and did, list by list. */
struct FSummaryLists
{
	TArray<FString> Requests;
	TMap<FString, int32> ToolCounts;
	int32 TotalCalls = 0;
	TArray<FString> Actions;
	TArray<FString> Files;
	TArray<FString> Results;

	void Add(const FCVXMessage& Message)
	{
		for (const FCVXContentBlock& Block : Message.Content)
		{
			switch (Message.Role)
			{
			case ECVXMessageRole::User:
				AddText(Block, MaxRequestChars, Requests);
				break;
			case ECVXMessageRole::Assistant:
				AddCall(Block);
				AddText(Block, MaxActionChars, Actions);
				break;
			case ECVXMessageRole::Tool:
				AddResult(Block);
				break;
			case ECVXMessageRole::System:
				break;
			}
		}
	}

private:
	static void AddText(const FCVXContentBlock& Block, int32 MaxChars, TArray<FString>& Out)
	{
		if (Block.Type == TEXT("text") && !Block.Text.IsEmpty())
		{
			Out.Add(CutWithDots(Block.Text, MaxChars));
		}
	}

	void AddCall(const FCVXContentBlock& Block)
	{
		if (Block.Type != TEXT("tool_use"))
		{
			return;
		}
		++ToolCounts.FindOrAdd(Block.ToolName);
		++TotalCalls;
		if (!CVXCallArguments::IsFileWrite(Block.ToolName))
		{
			return;
		}
		const FString Path = CVXCallArguments::GetPath(Block.InputJson);
		if (!Path.IsEmpty())
		{
			Files.AddUnique(FString::Printf(TEXT("%s: %s"), *Block.ToolName, *Path));
		}
	}

	void AddResult(const FCVXContentBlock& Block)
	{
		if (Block.Type != TEXT("tool_result") || Block.ToolResultContent.IsEmpty() ||
			!Algo::AnyOf(ImportantTools, [&](const TCHAR* Name) { return Block.ToolName == Name; }))
		{
			return;
		}
		const FString Text = CutWithDots(Block.ToolResultContent, MaxResultChars);
		const bool bDelegation = Block.ToolName == TEXT("delegate_to_agent");
		Results.Add(bDelegation ? Text : FString::Printf(TEXT("[%s]: %s"), *Block.ToolName, *Text));
	}
};

/** The last lines of a list under its heading. @param EarlierFormat the line that counts the rest; null leaves it out.
 */
FString FormatLast(const TCHAR* Heading, const TArray<FString>& Lines, int32 MaxLines, const TCHAR* EarlierNoun)
{
	if (Lines.IsEmpty())
	{
		return FString();
	}
	FString Text = Heading;
	const int32 First = FMath::Max(0, Lines.Num() - MaxLines);
	for (int32 Index = First; Index < Lines.Num(); ++Index)
	{
		Text += FString::Printf(TEXT("- %s\n"), *Lines[Index]);
	}
	if (First > 0 && EarlierNoun)
	{
		Text += FString::Printf(TEXT("  (+ %d earlier %s)\n"), First, EarlierNoun);
	}
	return Text + TEXT("\n");
}

FString FormatTools(const FSummaryLists& Lists)
{
	if (Lists.ToolCounts.IsEmpty())
	{
		return FString();
	}
	TArray<TPair<FString, int32>> Counts;
	for (const TPair<FString, int32>& Each : Lists.ToolCounts)
	{
		Counts.Add(Each);
	}
	Counts.StableSort([](const auto& A, const auto& B) { return A.Value > B.Value; });
	FString Text = FString::Printf(TEXT("Tools used (%d total calls):\n"), Lists.TotalCalls);
	for (int32 Index = 0; Index < FMath::Min(ListedTools, Counts.Num()); ++Index)
	{
		Text += FString::Printf(TEXT("- %s (x%d)\n"), *Counts[Index].Key, Counts[Index].Value);
	}
	return Text + TEXT("\n");
}
} // namespace

FString FCVXContextManager::SummarizeDroppedMessages(const TArray<FCVXMessage>& Dropped, int32 MaxTokens)
{
	FSummaryLists Lists;
	for (const FCVXMessage& Message : Dropped)
	{
		Lists.Add(Message);
	}
	FString Text =
		TEXT("[CONTEXT SUMMARY — Earlier messages were truncated to fit the context window. Key points from the "
			 "truncated portion:]\n\n");
	Text += FormatLast(TEXT("User requests:\n"), Lists.Requests, ListedRequests, TEXT("requests"));
	Text += FormatTools(Lists);
	Text += FormatLast(TEXT("Key assistant actions:\n"), Lists.Actions, ListedActions, nullptr);
	Text += FormatLast(
		TEXT("Files modified (DO NOT re-create or re-edit these):\n"), Lists.Files, ListedFiles, TEXT("operations"));
	Text += FormatLast(
		TEXT("Completed work results (DO NOT repeat this work):\n"), Lists.Results, Lists.Results.Num(), nullptr);
	Text += FString::Printf(TEXT("[End of summary — %d messages were truncated]"), Dropped.Num());
	if (EstimateTokensForString(Text) > MaxTokens)
	{
		Text = Text.Left(MaxTokens * KeptCharsPerToken) + TEXT("\n[Summary truncated]");
	}
	return Text;
}
